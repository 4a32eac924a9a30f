// Keys with the pointer: moved, grouped, stretched, eased, copied, deleted.

import assert from "node:assert/strict";
import { after, test } from "node:test";
import { axe, violations } from "../support/axe.mjs";
import { closeAll, openStudio } from "../support/studio.mjs";

after(closeAll);

const text = JSON.stringify({
  orbel: 1,
  size: [320, 180],
  frames: [0, 100],
  parameters: {
    Presets: "Basic Star",
    Start: {
      keys: [
        [0, 0],
        [40, 20],
      ],
    },
    End: {
      keys: [
        [20, 50],
        [60, 100],
      ],
    },
  },
});

/** Pixels a frame on the ruler. */
async function frameWidth(studio) {
  const [a, b] = [
    await studio.key("End", 20).boundingBox(),
    await studio.key("End", 60).boundingBox(),
  ];
  return (b.x - a.x) / 40;
}

test("keys are dragged, snapped, grouped and stretched", async () => {
  const studio = await openStudio({ text });
  const { page } = studio;
  const wide = await frameWidth(studio);
  await studio.drag(studio.key("End", 20), wide * 19.6, 0);
  assert.deepEqual((await studio.parameters()).End.keys, [
    [40, 50],
    [60, 100],
  ]);
  await studio.undoIs("move a key");

  await studio.key("Start", 40).click();
  await studio.key("End", 60).click({ modifiers: ["Shift"] });
  await studio.drag(studio.key("End", 60), wide * 10, 0);
  let keys = await studio.parameters();
  assert.deepEqual(
    [keys.Start.keys[1], keys.End.keys[1]],
    [
      [50, 20],
      [70, 100],
    ],
  );

  await page.keyboard.press("Control+a");
  await studio.drag(page.locator(".stretch .grip").last(), wide * 30, 0);
  keys = await studio.parameters();
  assert.deepEqual(keys.Start.keys[0], [0, 0]);
  assert.ok(Math.abs(keys.End.keys[1][0] - 100) <= 1, `stretched to ${keys.End.keys[1][0]}`);

  await page.keyboard.press("Control+z");
  assert.deepEqual((await studio.parameters()).End.keys[1], [70, 100]);
  await studio.close();
});

test("easing, copies, the curve and deleting", async () => {
  const studio = await openStudio({ text });
  const { page } = studio;
  await studio.key("Start", 0).click({ button: "right" });
  await page.getByRole("menuitemradio", { name: "Ease out" }).click();
  assert.deepEqual((await studio.parameters()).Start.keys[0], [0, 0, "ease-out"]);

  await page
    .getByRole("button", { name: "End: select its keys" })
    .or(page.locator(".names .name", { hasText: "End" }))
    .first()
    .click();
  await page.keyboard.press("Control+c");
  await studio.goTo(80);
  await page.keyboard.press("Control+v");
  assert.deepEqual(
    (await studio.parameters()).End.keys.map(([frame]) => frame),
    [20, 60, 80, 120],
  );
  await page.keyboard.press("Delete");
  assert.equal((await studio.parameters()).End.keys.length, 2);

  await studio.key("End", 60).dblclick();
  assert.equal(await page.getByLabel("Current frame").inputValue(), "60");
  await page.locator('[data-lane="End"]').dblclick({ position: { x: 30, y: 12 } });
  assert.equal((await studio.parameters()).End.keys.length, 3);
  await page.keyboard.press("Control+z");

  await page.locator(".names .name", { hasText: "Start" }).click();
  await page.keyboard.press("c");
  await studio.drag(page.locator('.curve .keysign[aria-label^="Start, frame 40"]'), 0, 30);
  const [frame, value] = (await studio.parameters()).Start.keys[1];
  assert.equal(frame, 40);
  assert.ok(value < 20, `value ${value}`);
  await studio.close();
});

test("keys are reached and worked on by keyboard alone", async () => {
  const studio = await openStudio({ text });
  const { page } = studio;
  const focused = () => page.evaluate(() => document.activeElement.getAttribute("aria-label"));
  const press = async (...keys) => {
    for (const key of keys) await page.keyboard.press(key);
  };
  // Tab goes from lane to lane, arrows from key to key and to the nearest one of the next lane.
  await page.locator(".area .lane.summary .keysign").first().focus();
  await press("Tab");
  assert.match(await focused(), /^Start, frame 0/);
  await press("ArrowRight", "ArrowRight");
  assert.match(await focused(), /^Start, frame 40/);
  await press("ArrowDown");
  assert.match(await focused(), /^End, frame (20|60)/);
  await press("ArrowUp", "ArrowUp");
  assert.match(await focused(), /^All keys at frame/);
  await press("ArrowDown", " ", "Enter");
  await page.getByRole("menuitemradio", { name: "Hold" }).waitFor();
  await press("Escape");
  await studio.key("Start", 0).focus();
  await press(" ", "Alt+ArrowRight", "Alt+ArrowRight");
  assert.equal((await studio.parameters()).Start.keys[0][0], 2);
  await studio.key("End", 60).focus();
  await press(" ", "Delete");
  assert.equal((await studio.parameters()).End.keys.length, 1);
  await page.evaluate(axe);
  assert.deepEqual(await violations(page), []);
  await studio.close();
});

test("the playhead by mouse and keyboard, the loop range", async () => {
  const studio = await openStudio({ text });
  const { page } = studio;
  const clock = () => page.getByLabel("Current frame").inputValue();
  await page.keyboard.press("End");
  assert.equal(await clock(), "100");
  await page.keyboard.press("Shift+ArrowLeft");
  await page.keyboard.press("o");
  await page.keyboard.press(",");
  assert.equal(await clock(), "60");
  await page.keyboard.press("i");
  assert.ok(await page.getByRole("button", { name: "Loop 60–90" }).isVisible());
  await page.keyboard.press("j");
  await page.waitForFunction(
    () => Number(document.querySelector('[aria-label="Current frame"]').value) > 60,
  );
  await page.keyboard.press("k");
  const frame = Number(await clock());
  assert.ok(frame >= 60 && frame <= 90, `frame ${frame}`);
  await page.getByRole("button", { name: "Frames", exact: true }).click();
  assert.match(await clock(), /^0:0[23]:\d\d$/);
  await studio.close();
});
