// Nothing that a person did is lost: reload, crash, another writer, a second tab.

import assert from "node:assert/strict";
import { readFile, writeFile } from "node:fs/promises";
import { join } from "node:path";
import { after, test } from "node:test";
import { closeAll, openBrowser, openStudio, startProgram } from "../support/studio.mjs";

after(closeAll);

const text = `{
  "orbel": 1, "size": [320, 180],
  "parameters": {"Presets": "Basic Star", "Thickness": 1.20e1}
}
`;

const journalled = (studio) =>
  studio.page.waitForResponse((answer) => answer.url().endsWith("/api/journal") && answer.ok());

test("unsaved work survives a reload", async () => {
  const studio = await openStudio({ text });
  const kept = journalled(studio);
  await studio.type("Feather", "40");
  await kept;
  await studio.page.reload();
  await studio.settled();
  await studio.notice("journal").getByRole("button", { name: "Take it up" }).click();
  await studio.shows("Feather", "40 %");
  assert.equal((await studio.parameters()).Feather, 40);
  assert.match(await readFile(studio.file, "utf8"), /1\.20e1/);
  await studio.page.reload();
  await studio.settled();
  assert.equal(await studio.notice("journal").count(), 0);
  await studio.close();
});

test("unsaved work survives a browser that is killed", async () => {
  const studio = await openStudio({ text });
  const kept = journalled(studio);
  await studio.type("Feather", "40");
  await kept;
  const address = await studio.addressForAnotherTab();
  await studio.context.close();
  studio.context = await (await openBrowser()).newContext();
  studio.page = await studio.context.newPage();
  await studio.page.goto(address);
  await studio.notice("journal").getByRole("button", { name: "Take it up" }).click();
  await studio.shows("Feather", "40 %");
  await studio.close();
});

test("a killed server comes back and the page goes on", async () => {
  const studio = await openStudio({ text });
  const { page } = studio;
  await studio.server.end("SIGKILL");
  await studio.notice("link").waitFor();
  await studio.type("Feather", "55");
  const again = await startProgram(studio.file, "--port", new URL(studio.server.address).port);
  studio.server = again;
  await studio.notice("link").getByText("The studio was started anew.").waitFor(); // a stale tab
  await page.goto(again.address);
  await studio.notice("link").waitFor({ state: "detached" });
  await studio.settled();
  await studio.shows("Feather", "55 %");
  assert.equal((await studio.parameters()).Feather, 55);
  await studio.close();
});

test("what somebody else wrote is offered, never lost", async () => {
  const studio = await openStudio({ text });
  await studio.type("Feather", "40");
  const theirs = text.replace("1.20e1", "33");
  await writeFile(studio.file, theirs);
  await studio.notice("disk").waitFor();
  await studio.page.keyboard.press("Control+s");
  await studio.notice("save").waitFor();
  assert.equal(await readFile(studio.file, "utf8"), theirs);
  await studio.notice("disk").getByRole("button", { name: "Load it" }).click();
  await studio.shows("Thickness", "33 px");
  await studio.page.keyboard.press("Control+z");
  await studio.shows("Feather", "40 %");
  await studio.close();
});

test("what somebody wrote before the page listened is noticed", async () => {
  const studio = await openStudio({ text });
  await studio.page.routeWebSocket("**/api/events", async (socket) => {
    await writeFile(studio.file, text.replace("1.20e1", "33"));
    await new Promise((done) => setTimeout(done, 1500)); // the server has told it, to nobody
    socket.connectToServer();
  });
  await studio.page.reload();
  await studio.notice("disk").getByRole("button", { name: "Load it" }).click();
  await studio.shows("Thickness", "33 px");
  await studio.close();
});

test("a broken scene and a wrong value are told in place", async () => {
  const studio = await openStudio({ text });
  await writeFile(studio.file, text.replace("1.20e1", "-4"));
  await studio.notice("disk").getByRole("button", { name: "Load it" }).click();
  assert.match(await studio.notice("scene").textContent(), /parameters\/Thickness/);
  await studio.type("Thickness", "8");
  await studio.notice("scene").waitFor({ state: "detached" });
  await studio.settled();
  await studio.close();
});

test("a drawing dropped on the page becomes the shape, plain or imported, and a word does", async () => {
  const studio = await openStudio({ text });
  const svg = `<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 100 100"><path d="M10 10L90 90"/><circle cx="50" cy="50" r="20" transform="rotate(45)"/></svg>`;
  await studio.page
    .locator('input[type="file"]')
    .setInputFiles({ name: "line.svg", mimeType: "image/svg+xml", buffer: Buffer.from(svg) });
  const losses = studio.page.locator(".losses");
  await losses.waitFor();
  const scene = await studio.saved();
  assert.equal(scene.shape, "line.svg");
  assert.equal(scene.parameters.Presets, undefined);
  assert.equal(await readFile(join(studio.folder, "line.svg"), "utf8"), svg);

  // Both ways are shown, and one press imports it.
  const [before, after] = await losses
    .locator("figure path")
    .evaluateAll((paths) => paths.map((path) => path.getAttribute("d")));
  assert.match(before, /^M/);
  assert.match(after, /^M/);
  assert.notEqual(before, after);
  await losses.getByRole("button", { name: "Import it" }).click();
  await studio.settled();
  assert.deepEqual((await studio.saved()).shape, { file: "line.svg", import: {} });
  const shown = () => studio.row("Shape").locator("option:checked").textContent();
  assert.equal(await shown(), "line.svg, imported");

  // What the importer leaves out stands below its options.
  const option = (name) => studio.page.getByLabel(name, { exact: true });
  await option("Take").selectOption("strokes");
  await studio.fill("Smallest", "80");
  assert.deepEqual((await studio.saved()).shape.import, { take: "strokes", smallest: 80 });
  await studio.page.locator(".card", { hasText: "nothing in the drawing" }).waitFor();
  await studio.fill("Smallest", "0.2");
  assert.deepEqual((await studio.saved()).shape.import, { take: "strokes" });

  // A word in its place, in two lines with a font, and then with a pen.
  const word = option("Text as shape");
  await word.fill("Hello");
  await word.press("Enter");
  assert.deepEqual((await studio.saved()).shape, { text: "Hello" });
  assert.equal(await shown(), "“Hello”");
  await word.focus();
  await word.press("End");
  await word.press("Shift+Enter");
  await word.pressSequentially("you \u2603");
  await word.press("Enter");
  await option("Font").selectOption("serif");
  await option("Bold").click();
  await option("Align").selectOption("center");
  assert.deepEqual((await studio.saved()).shape, {
    text: "Hello\nyou \u2603",
    font: "serif:bold",
    align: "center",
  });
  await option("Single stroke").click();
  await option("Hand").selectOption("futural");
  assert.equal((await studio.saved()).shape.hand, "futural");
  await studio.page.locator(".notes", { hasText: "U+2603" }).waitFor();
  await studio.settled();
  assert.equal(await studio.notice("scene").count(), 0);
  await studio.close();
});

test("nine tabs of one studio live side by side", async () => {
  const studio = await openStudio({ text });
  const others = [];
  for (let count = 0; count < 8; count++) {
    const page = await studio.context.newPage();
    await page.goto(await studio.addressForAnotherTab());
    await studio.settled(page);
    others.push(page);
  }
  await studio.type("Feather", "40");
  await studio.saved();
  for (const page of others) await page.locator('[data-notice="disk"]').waitFor();
  await studio.close();
});

test("a full disk and a drop that is too large are told, and nothing is lost", async () => {
  const studio = await openStudio({ text });
  const { page } = studio;
  await page.route("**/api/save", (route) =>
    route.fulfill({
      status: 507,
      json: { error: "scene.json cannot be written", remedy: "free some room" },
    }),
  );
  await studio.type("Feather", "40");
  await page.keyboard.press("Control+s");
  await studio.notice("save").getByText("free some room").waitFor();
  assert.equal(await readFile(studio.file, "utf8"), text);
  await page.unrouteAll();
  assert.equal((await studio.parameters()).Feather, 40);
  assert.equal(await studio.notice("save").count(), 0);

  // A browser hands over what is dropped by its name and size; its bytes are not even read.
  await page.evaluate(() => {
    const file = new File([], "film.mov");
    Object.defineProperty(file, "size", { value: 4 * 2 ** 30 });
    Object.defineProperty(file, "arrayBuffer", { value: () => Promise.reject(new Error("read")) });
    const event = new DragEvent("drop", { cancelable: true });
    Object.defineProperty(event, "dataTransfer", { value: { files: [file] } });
    window.dispatchEvent(event);
  });
  await studio.notice("drop").getByText("4096 MiB").waitFor();
  await studio.close();
});

test("a scene that was opened stays open over a reload, and others answer for themselves", async () => {
  const studio = await openStudio({ text });
  const { page } = studio;
  await writeFile(join(studio.folder, "other.json"), text.replace("1.20e1", "5"));
  await page.reload();
  await studio.settled();
  await page.locator(".scenename button").first().click();
  await page.getByRole("button", { name: "other" }).click();
  await studio.shows("Thickness", "5 px");
  await page.reload();
  await studio.settled();
  await studio.shows("Thickness", "5 px");

  // Theirs of one scene comes when another one is open already.
  await writeFile(join(studio.folder, "other.json"), text.replace("1.20e1", "7"));
  await studio.notice("disk").waitFor();
  let answer;
  await page.route("**/api/open-scene", async (route) => {
    if (!answer && route.request().postDataJSON().name === "other.json") {
      await new Promise((done) => (answer = done));
    }
    await route.continue();
  });
  await studio.notice("disk").getByRole("button", { name: "Load it" }).click();
  await page.locator(".scenename button").first().click();
  await page.getByRole("button", { name: "scene.json", exact: true }).click();
  await studio.shows("Thickness", "12 px");
  answer();
  await page.waitForTimeout(300);
  await studio.shows("Thickness", "12 px");
  await studio.undoIs("");
  await studio.close();
});

test("two tabs: the one that comes second is asked, not overwritten", async () => {
  const studio = await openStudio({ text });
  const other = await studio.context.newPage();
  await other.goto(await studio.addressForAnotherTab());
  await studio.settled(other);
  await studio.type("Feather", "40");
  await studio.saved();
  await other.locator('[data-notice="disk"]').waitFor();
  await other.bringToFront();
  await other.keyboard.press("a");
  await other.locator('[data-row="Offset"] .slider').focus();
  await other.keyboard.press("ArrowRight");
  await other.keyboard.press("Control+s");
  await other.locator('[data-notice="save"]').waitFor();
  assert.equal(JSON.parse(await readFile(studio.file, "utf8")).parameters.Feather, 40);
  await studio.close();
});

test("Ctrl-C ends the program when the page has written what is not saved", async () => {
  const studio = await openStudio({ text });
  await studio.page.waitForTimeout(1000); // it listens a moment after it shows
  await studio.type("Feather", "40");
  await studio.server.end();
  await studio.notice("link").waitFor();
  const journal = await readFile(join(studio.folder, ".scene.json.orbel-journal"), "utf8");
  assert.match(journal, /Feather/);
  studio.server = await startProgram(studio.file);
  await studio.page.goto(studio.server.address);
  await studio.notice("journal").waitFor();
  await studio.close();
});
