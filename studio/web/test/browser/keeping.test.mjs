// Nothing that a person did is lost: reload, crash, another writer, a second tab.

import assert from "node:assert/strict";
import { readFile, writeFile } from "node:fs/promises";
import { join } from "node:path";
import { after, test } from "node:test";
import { closeAll, openStudio, startProgram } from "../support/studio.mjs";

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

test("a killed server comes back and the page goes on", async () => {
  const studio = await openStudio({ text });
  const { page } = studio;
  await studio.server.end("SIGKILL");
  await studio.notice("link").waitFor();
  await studio.type("Feather", "55");
  const again = await startProgram(studio.file, "--port", new URL(studio.server.address).port);
  studio.server = again;
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
  await studio.page.route("**/api/events", async (route) => {
    await writeFile(studio.file, text.replace("1.20e1", "33"));
    await new Promise((done) => setTimeout(done, 1500)); // the server has told it, to nobody
    await route.continue();
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

  // A word in its place.
  const word = studio.page.getByLabel("Text as shape");
  await word.fill("Hello");
  await word.press("Enter");
  assert.deepEqual((await studio.saved()).shape, { text: "Hello" });
  assert.equal(await shown(), "“Hello”");
  await studio.settled();
  assert.equal(await studio.notice("scene").count(), 0);
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
