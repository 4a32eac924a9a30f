// The room for everybody: axe finds nothing, in the room and in every panel.

import assert from "node:assert/strict";
import { after, test } from "node:test";
import { axe, violations } from "../support/axe.mjs";
import { closeAll, openStudio } from "../support/studio.mjs";

after(closeAll);

const text = JSON.stringify({
  orbel: 1,
  size: [320, 180],
  frames: [0, 30],
  parameters: {
    Presets: "Basic Star",
    End: {
      keys: [
        [0, 0, "ease"],
        [30, 100],
      ],
    },
    "Repeater/Instances": 3,
  },
});

test("axe finds no fault", async () => {
  const studio = await openStudio({ text });
  const { page } = studio;
  await page.evaluate(axe);
  const examine = async (what) => assert.deepEqual(await violations(page), [], what);
  await examine("the room");
  await page.keyboard.press("?");
  await examine("the shortcuts");
  await page.keyboard.press("Escape");
  await page.keyboard.press("Control+e");
  await examine("export");
  await page.keyboard.press("Escape");
  await studio.row("Color").locator(".swatch").click();
  await examine("the colour picker");
  await page.keyboard.press("Escape");
  await studio.key("End", 0).click({ button: "right" });
  await examine("the menu of a key");
  await page.keyboard.press("Escape");
  await page.keyboard.press("c");
  await page.locator(".scenename button").first().click();
  await examine("curve and scenes");
  await page.getByLabel("Text as shape").fill("Hello");
  await page.getByLabel("Text as shape").press("Enter");
  await page.getByLabel("Font").waitFor();
  await page.getByRole("button", { name: "Pixels" }).click();
  await examine("a text, and the form of pixels");
  await studio.close();
});
