// The inspector: every kind of row, and what all of them share.

import assert from "node:assert/strict";
import { readFile, rename } from "node:fs/promises";
import { join } from "node:path";
import { after, test } from "node:test";
import { closeAll, openStudio, orbel } from "../support/studio.mjs";

after(closeAll);

const text = `{
  "orbel": 1,
  "size": [320, 180],
  "frames": [0, 49],
  "parameters": {
    "Presets": "Basic Star",
    "Transfer Mode": "Normal",
    "Offset": {"keys": [[0, 0], [20, 50.0]]}
  }
}
`;

test("every kind of row writes what it shows, one gesture a step", async () => {
  const studio = await openStudio({ text });
  const { page } = studio;
  const row = (name) => studio.row(name);
  const open = async (group) => {
    const button = page.locator(".group > h3 button", { hasText: group });
    if ((await button.getAttribute("aria-expanded")) === "false") await button.click();
  };
  for (const group of ["Taper", "Transform", "Repeater", "Motion Blur"]) await open(group);

  // Slider, number with arithmetic, label.
  await studio.drag(row("Feather").locator(".slider"), 20, 0);
  await studio.undoIs("change Feather");
  const feather = (await studio.parameters()).Feather;
  assert.ok(feather > 50 && feather < 100, `feather ${feather}`);
  await studio.type("Thickness", "3*12");
  await studio.type("Thickness", "+5");
  await studio.type("Thickness", "two");
  await row("Thickness").locator("input").fill("99");
  await page.keyboard.press("Escape");
  await studio.drag(row("ScaleX").locator(".label"), 30, 0, ["Shift"]);
  // Switch and the rows that it enables, menu, shape, point, dial.
  assert.equal(await row("Repeater/Instances").locator("input").isDisabled(), true);
  await row("Repeater/Enable Repeater").getByRole("switch").click();
  await row("Transfer Mode").locator("select").selectOption({ label: "Screen" });
  await studio.type("Transform/XY Position", "0.25", "XY Position x");
  await studio.type("Transform/Z Rotation", "1x30");
  await studio.drag(row("Transform/Y Rotation").locator(".dial"), 0, 0);
  await row("Transform/Y Rotation").locator(".dial").focus();
  await page.keyboard.press("Control+ArrowRight");
  // Colour by picker and by hex.
  await row("Color").locator(".swatch").click();
  await studio.drag(page.locator(".picker .field"), 150, -120);
  await page.keyboard.press("Escape");
  const picked = (await studio.parameters()).Color;
  assert.ok(picked[0] === 1 && picked[1] < 0.05, `picked ${picked}`);
  await studio.type("Color", "#3366ff");

  const parameters = await studio.parameters();
  assert.equal(parameters.Thickness, 41);
  assert.ok(parameters.ScaleX > 1 && parameters.ScaleX < 2, `scale ${parameters.ScaleX}`);
  assert.equal(parameters["Repeater/Enable Repeater"], true);
  assert.equal(await row("Repeater/Instances").locator("input").isDisabled(), false);
  assert.equal(parameters["Transfer Mode"], "Screen");
  assert.deepEqual(parameters["Transform/XY Position"], [0.25, 0.5]);
  assert.equal(parameters["Transform/Z Rotation"], 390);
  await studio.shows("Transform/Z Rotation", "1× 30°");
  assert.equal(parameters["Transform/Y Rotation"], 15);
  assert.deepEqual(parameters.Color, [0.2, 0.4, 1]);

  // Undo goes back over every gesture to the text as it was.
  for (let i = 0; i < 13; i++) await page.keyboard.press("Control+z");
  await studio.undoIs("");
  await studio.saved();
  assert.equal(await readFile(studio.file, "utf8"), text);
  await page.keyboard.press("Control+y");
  await studio.undoIs("change Feather");
  await studio.close();
});

test("keys, reset, copies, search and the menu of a row", async () => {
  const studio = await openStudio({ text });
  const { page } = studio;
  await studio.goTo(10);
  const offset = studio.row("Offset");
  await studio.shows("Offset", "25 %");
  await offset.getByLabel("Key of Offset here").click();
  await offset.getByLabel("Next key of Offset").click();
  assert.equal(await page.getByLabel("Current frame").inputValue(), "20");
  await offset.getByLabel("Reset Offset").click();
  assert.deepEqual((await studio.parameters()).Offset.keys, [
    [0, 0],
    [10, 25],
    [20, 0],
  ]);

  await studio.goTo(10);
  // Left with its text marked, a field must not keep the copy for itself.
  await page.getByLabel("Current frame").selectText();
  await page.keyboard.press("Enter");
  await offset.locator(".label").click();
  await page.keyboard.press("Control+c");
  await studio.row("Thickness").locator(".label").click();
  await page.keyboard.press("Control+v");
  assert.equal((await studio.parameters()).Thickness, 25);

  await page.keyboard.press("a");
  await studio.type("Feather", "30");
  assert.deepEqual((await studio.parameters()).Feather, { keys: [[10, 30]] });
  await studio.row("Feather").click({ button: "right", position: { x: 30, y: 10 } });
  await page.getByRole("menuitem", { name: "Remove all keys" }).click();
  assert.equal((await studio.parameters()).Feather, 30);

  await page.keyboard.press("/");
  await page.keyboard.type("rot cam");
  assert.equal(await page.locator(".row").count(), 3);
  await page.keyboard.press("Escape");
  await page.getByRole("button", { name: "Animated" }).click();
  assert.equal(await page.locator(".row").count(), 1);
  await studio.close();
});

test("whatever a scene can say of its frame and input is at hand", async () => {
  const studio = await openStudio({ text });
  const { page } = studio;
  const field = (name) => page.getByLabel(name, { exact: true });
  const type = (name, value) => studio.fill(name, value);
  await page.getByRole("button", { name: "Pixels" }).click();
  await type("Pixel aspect ratio", "16/15");
  await type("Render scale x", "0.5");
  await type("Render scale y", "0.25");
  await field("Pixel format").selectOption("rgba16");
  await type("Frames per second", "29.97");
  await studio.settled();
  const width = await page.locator(".screen").evaluate((canvas) => canvas.clientWidth);
  const height = await page.locator(".screen").evaluate((canvas) => canvas.clientHeight);
  assert.ok(Math.abs(width / height - (320 / 180) * (16 / 15)) < 0.01, `${width} x ${height}`);
  const { pixelAspect, renderScale, format, fps } = await studio.saved();
  assert.deepEqual([pixelAspect, renderScale, format, fps], [1.0667, [0.5, 0.25], "rgba16", 29.97]);
  await type("Pixel aspect ratio", "1");
  await type("Render scale x", "1");
  await type("Render scale y", "1");
  const plain = await studio.saved();
  assert.ok(!("pixelAspect" in plain) && !("renderScale" in plain));

  // A sequence, a raw frame, a colour: each as the file says it.
  await field("Pixel format").selectOption("rgba8");
  await field("Input").selectOption("color");
  await studio.saved();
  for (const frame of [4, 5]) {
    const name = `shot-0${frame}.png`;
    await orbel("render", studio.file, "--frames", `${frame}`, "-o", join(studio.folder, name));
  }
  await orbel("render", studio.file, "--frames", "4", "--raw", join(studio.folder, "raw"));
  await rename(join(studio.folder, "raw", "frame-000004.raw"), join(studio.folder, "one.raw"));
  await page.getByRole("option", { name: "shot-%02d.png (2)" }).waitFor({ state: "attached" });
  await field("Input").selectOption("file:shot-%02d.png");
  await studio.settled();
  assert.deepEqual((await studio.saved()).input, { file: "shot-%02d.png", first: 4 });
  await type("Number of the first file", "5");
  await studio.notice("scene").waitFor();
  await type("Number of the first file", "4");
  await studio.notice("scene").waitFor({ state: "detached" });
  await page.getByRole("option", { name: "one.raw" }).waitFor({ state: "attached" });
  await field("Input").selectOption("file:one.raw");
  await studio.settled();
  assert.deepEqual((await studio.saved()).input, { raw: "one.raw" });
  assert.equal(await studio.notice("scene").count(), 0);
  await studio.close();
});

test("handles on the picture move what they stand for", async () => {
  const studio = await openStudio({ text });
  const { page } = studio;
  const scale = await page.locator(".screen").evaluate((canvas) => canvas.clientWidth);
  await studio.drag(page.locator(".handle.position > circle").last(), scale / 10, 0);
  const [x, y] = (await studio.parameters())["Transform/XY Position"];
  assert.ok(Math.abs(x - 0.6) < 0.01 && y === 0.5, `position ${x} ${y}`);
  await studio.undoIs("move Transform/XY Position");
  await page.locator(".bead.end").focus();
  await page.keyboard.press("ArrowLeft");
  assert.equal((await studio.parameters()).End, 99);
  // The bead goes where the server says, some time after the picture.
  const measured = page.waitForResponse(
    (answer) =>
      answer.url().endsWith("/api/path") &&
      answer.request().postDataJSON().text.includes('"End": 60'),
  );
  await studio.type("End", "60");
  await measured;
  await page.evaluate(() => new Promise((done) => setTimeout(done, 100)));
  await studio.drag(page.locator(".bead.end > circle").last(), 60, 0);
  await studio.undoIs("drag End");
  const { End } = await studio.parameters();
  assert.ok(End > 40 && End < 60, `end ${End}`);
  await studio.close();
});
