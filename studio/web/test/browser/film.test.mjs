// From nothing to a film, with pointer and keyboard.

import assert from "node:assert/strict";
import { readFile } from "node:fs/promises";
import { join } from "node:path";
import { after, test } from "node:test";
import { closeAll, openStudio, orbel } from "../support/studio.mjs";

after(closeAll);

const scene = JSON.stringify({
  orbel: 1,
  size: [320, 180],
  frames: [0, 30],
  parameters: {
    Presets: "Basic Star",
    End: {
      keys: [
        [0, 10],
        [30, 100],
      ],
    },
  },
});

test("the page lets go of what it no longer shows", async () => {
  const studio = await openStudio({ text: scene });
  const { page } = studio;
  const tools = await studio.context.newCDPSession(page);
  await tools.send("Performance.enable");
  const kept = async () => {
    await tools.send("HeapProfiler.collectGarbage");
    const { metrics } = await tools.send("Performance.getMetrics");
    return metrics.find(({ name }) => name === "Nodes").value;
  };
  const round = async () => {
    await studio.drag(studio.row("ScaleX").locator(".slider"), 20, 0);
    await page.keyboard.press(" ");
    await page.waitForFunction(
      () => Number(document.querySelector('[aria-label="Current frame"]').value) > 3,
    );
    await page.keyboard.press(" ");
    await page.keyboard.press("Home");
    await page.locator(".bead.end").waitFor();
    await studio.settled();
  };
  for (let count = 0; count < 3; count++) await round();
  const before = await kept();
  for (let count = 0; count < 4; count++) await round();
  assert.ok((await kept()) < before + 20, `${await kept()} nodes after ${before}`);
  await studio.close();
});

test("an empty scene becomes a film, the one that orbel render makes", async () => {
  const studio = await openStudio();
  const { page } = studio;
  await page.getByRole("button", { name: "Petals", exact: true }).click();
  await studio.fill("Width", "320");
  await studio.fill("Height", "180");
  await studio.fill("Last frame", "24");
  await page.keyboard.press("Shift+F");

  await studio.goTo(0);
  await studio.type("End", "0");
  await studio.row("End").getByLabel("Key of End here").click();
  await page.keyboard.press("End");
  await studio.type("End", "25*4");
  await studio.key("End", 0).click();
  await page.getByLabel("Easing of the selected keys").selectOption("ease");
  await studio.drag(studio.row("Thickness").locator(".label"), 40, 0);
  await studio.type("Color", "#ffb84f");

  await page.keyboard.press("Home");
  await page.keyboard.press(" ");
  await page.waitForFunction(
    () => Number(document.querySelector('[aria-label="Current frame"]').value) > 5,
  );
  await page.keyboard.press(" ");
  await studio.settled();

  await page.keyboard.press("Control+s");
  await page.locator(".unsaved").waitFor({ state: "detached" });
  await page.keyboard.press("Control+e");
  await page.getByRole("textbox", { name: "Name" }).fill("petals");
  // The list of films may arrive when the last word about them has been heard already.
  await page.route("**/api/jobs", async (route) => {
    const response = await route.fetch();
    await new Promise((done) => setTimeout(done, 2000));
    await route.fulfill({ response });
  });
  await page.getByRole("button", { name: "Export petals.mp4" }).click();
  await page.locator(".job.done").waitFor({ timeout: 120_000 });
  await page.unrouteAll({ behavior: "wait" });
  await page.locator(".job.done").waitFor();

  await page.getByRole("button", { name: "Export petals.mp4" }).click();
  await studio.notice("export").waitFor();

  const name = await page.locator(".scenename b").textContent();
  const scene = join(studio.folder, `${name}.json`);
  const { parameters } = JSON.parse(await readFile(scene, "utf8"));
  assert.deepEqual(parameters.End, {
    keys: [
      [0, 0, "ease"],
      [24, 100],
    ],
  });
  await orbel("render", scene, "-o", join(studio.folder, "again.mp4"));
  const [film, again] = await Promise.all(
    ["petals.mp4", "again.mp4"].map((each) => readFile(join(studio.folder, each))),
  );
  assert.ok(film.equals(again), "the export differs from orbel render");
  await studio.close();
});
