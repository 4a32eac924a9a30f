// Measures the page in a real browser: node bench/speed.mjs. ORBEL names the program.
// Every figure stands beside the one of the same page over an empty frame: what is left is the drawing.

import { writeFile } from "node:fs/promises";
import { join } from "node:path";
import {
  closeAll,
  makeFolder,
  openBrowser,
  startProgram,
  Studio,
} from "../test/support/studio.mjs";

const scene = (preset) => ({
  orbel: 1,
  size: [1920, 1080],
  fps: 30,
  frames: [0, 149],
  input: { color: [0.02, 0.03, 0.06, 1] },
  parameters: {
    Presets: preset,
    Color: [1, 0.72, 0.35],
    "Repeater/Enable Repeater": true,
    "Repeater/Instances": 6,
    End: {
      keys: [
        [0, 10],
        [149, 100],
      ],
    },
    "Transfer Mode": "Normal",
  },
});

const median = (values) => [...values].sort((a, b) => a - b)[Math.floor(values.length / 2)] ?? NaN;
const round = (value) => Math.round(value * 10) / 10;

/** In the page: times of presses and of what the canvas got. */
function watch() {
  const times = { moves: [], paints: [] };
  window.speed = times;
  addEventListener("pointermove", () => times.moves.push(performance.now()), true);
  const put = CanvasRenderingContext2D.prototype.putImageData;
  CanvasRenderingContext2D.prototype.putImageData = function (...what) {
    put.apply(this, what);
    times.paints.push([performance.now(), this.canvas.width]);
  };
}

async function open(folder, preset) {
  const file = join(folder, `${preset.replaceAll(" ", "-")}.json`);
  await writeFile(file, JSON.stringify(scene(preset)));
  const server = await startProgram(file);
  const context = await (
    await openBrowser()
  ).newContext({ viewport: { width: 1560, height: 920 } });
  const page = await context.newPage();
  await page.addInitScript(watch);
  const began = performance.now();
  await page.goto(server.address);
  const studio = new Studio(page, { server, context, folder, faults: [] });
  await page.locator(".row").first().waitFor();
  studio.usable = performance.now() - began;
  await studio.settled();
  return studio;
}

/** From each move to the next picture, and from the last move to the exact one. */
async function dragged(studio) {
  const { page } = studio;
  const box = await studio.row("ScaleX").locator(".slider").boundingBox();
  await page.mouse.move(box.x + 8, box.y + 10);
  await page.mouse.down();
  await page.evaluate(() => (window.speed.moves.length = window.speed.paints.length = 0));
  for (let step = 0; step < 60; step++) {
    await page.mouse.move(box.x + 8 + (step % 40), box.y + 10);
    await page.waitForTimeout(25);
  }
  await page.waitForTimeout(600);
  await page.mouse.up();
  const { moves, paints } = await page.evaluate(() => window.speed);
  const follow = moves.flatMap((move) =>
    paints
      .filter(([time]) => time > move)
      .slice(0, 1)
      .map(([time]) => time - move),
  );
  const last = moves[moves.length - 1];
  const exact = paints
    .filter(([time, width]) => time > last && width === 1920)
    .map(([time]) => time - last);
  return {
    follow: round(median(follow)),
    exact: round(exact[exact.length - 1] ?? NaN),
    pictures: paints.length,
  };
}

async function played(studio) {
  const { page } = studio;
  await page.keyboard.press("Home");
  await page.keyboard.press(" ");
  await page.waitForTimeout(6000);
  const dropped = parseInt((await page.locator(".strip .dropped").textContent()) ?? "0", 10);
  await page.keyboard.press(" ");
  return { dropped, of: 180 };
}

const folder = await makeFolder();
for (const [what, preset] of [
  ["empty frame", "None"],
  ["stroke", "Basic Star"],
]) {
  const studio = await open(folder, preset);
  const box = await studio.page.locator(".screen").boundingBox();
  console.log(`${what}, 1920 x 1080 shown at ${Math.round(box.width)} x ${Math.round(box.height)}`);
  console.log(`  usable after ${round(studio.usable)} ms`);
  const { follow, exact, pictures } = await dragged(studio);
  console.log(
    `  slider to picture ${follow} ms, exact picture ${exact} ms after the last move, ${pictures} pictures`,
  );
  const { dropped, of } = await played(studio);
  console.log(`  playing: ${dropped} of ${of} frames dropped`);
  await studio.context.close();
  await studio.server.end();
}
await closeAll();
