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
  await studio.row("End").click({ button: "right", position: { x: 30, y: 10 } });
  await examine("the menu of a row");
  await page.keyboard.press("Escape");
  await page.getByRole("button", { name: "Steps that can be undone" }).click();
  await page.keyboard.press("b");
  await examine("the steps, before the stroke");
  await page.keyboard.press("b");

  // What is done and shown, what failed, what runs and what waits.
  const job = (order, state, more) => ({
    job: order,
    name: `${order}.png`,
    state,
    done: 3,
    total: 9,
    ...more,
  });
  const jobs = [
    job(1, "done", {}),
    job(2, "failed", { error: "the disk is full", remedy: "free some room" }),
    job(3, "running", { secondsLeft: 12 }),
    job(4, "waiting", { secondsLeft: null }),
  ];
  await page.route("**/api/jobs", (route) => route.fulfill({ json: { jobs } }));
  await page.route("**/api/ticket", (route) => route.fulfill({ json: { ticket: "1" } }));
  await page.route("**/api/export", (route) => route.fulfill({ json: { job: 3 } }));
  await page.keyboard.press("Control+e");
  await page.getByRole("button", { name: /^Export scene/ }).click();
  await page.getByRole("button", { name: "Cancel" }).first().waitFor();
  await page.getByRole("button", { name: "Show" }).click();
  await page.locator(".result img").waitFor({ state: "attached" });
  await examine("the queue");
  await studio.close();

  const closed = await openStudio({ text });
  await closed.page.evaluate(() => sessionStorage.clear());
  await closed.page.reload();
  await closed.page.locator(".locked").waitFor();
  await closed.page.evaluate(axe);
  assert.deepEqual(await violations(closed.page), [], "a page without a key");
  await closed.close();
});

/** In the page: parts of the bars that stand in each other or are cut. */
function crowded() {
  return [".bar", ".strip", ".transport"].flatMap((bar) => {
    const parts = [...document.querySelectorAll(`${bar} > *`)].filter(
      (part) => part.offsetWidth > 1 || part instanceof SVGElement,
    );
    return parts.flatMap((part, at) => {
      const next =
        parts[at + 1]?.getBoundingClientRect().left ??
        document.querySelector(bar).getBoundingClientRect().right;
      const over = part.getBoundingClientRect().right > next + 1;
      const spills = part.localName === "span" && part.scrollWidth > part.clientWidth + 1;
      const may = part.classList.contains("drawn"); // the time behind "exact" may give way
      return over || (spills && !may) ? [`${bar}: ${part.className || part.textContent}`] : [];
    });
  });
}

test("nothing is cut or covered, however much there is to show", async () => {
  const wide = JSON.stringify({
    ...JSON.parse(text),
    frames: [0, 8000],
    format: "argb32f",
    input: { color: [0.123, 0.345, 0.678, 0.5] },
  });
  const studio = await openStudio({ text: wide, width: 1280, height: 720 });
  const { page } = studio;
  await page.mouse.move(600, 250);
  await page.locator(".premultiplied").waitFor();
  await studio.goTo(7100);
  await page.keyboard.press("i");
  await studio.goTo(7900);
  await page.keyboard.press("o");
  await page.keyboard.press("Control+a");
  for (const unit of ["Frames", "Time"]) {
    assert.deepEqual(await page.evaluate(crowded), [], unit);
    await page.getByRole("button", { name: unit, exact: true }).click();
  }
  await studio.close();
});
