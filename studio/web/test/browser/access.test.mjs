// The room for everybody: axe finds nothing, in the room and in every panel.

import assert from "node:assert/strict";
import { readFile } from "node:fs/promises";
import { createRequire } from "node:module";
import { after, test } from "node:test";
import { closeAll, openStudio } from "../support/studio.mjs";

after(closeAll);

const axe = await readFile(createRequire(import.meta.url).resolve("axe-core/axe.min.js"), "utf8");

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
  const examine = async (what) => {
    const violations = await page.evaluate(async () => {
      const found = await window.axe.run(document, {
        runOnly: ["wcag2a", "wcag2aa", "wcag21a", "wcag21aa", "best-practice"],
      });
      return found.violations.map(
        ({ id, nodes }) =>
          `${id}: ${nodes
            .slice(0, 3)
            .map((node) => node.html.slice(0, 160))
            .join(" | ")}`,
      );
    });
    assert.deepEqual(violations, [], what);
  };
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
  await studio.close();
});
