// Measures the page in a real browser: node bench/speed.mjs. ORBEL names the program.
// Every figure stands beside the one of the same page over an empty frame: what is left is the
// drawing. `--minutes 5` drags and plays for so long and looks at the memory of page and server;
// `--export` makes films meanwhile, with and without a hand at a slider.

import { readFile, writeFile } from "node:fs/promises";
import { join } from "node:path";
import { gzipSync } from "node:zlib";
import {
  closeAll,
  makeFolder,
  openBrowser,
  startProgram,
  Studio,
} from "../test/support/studio.mjs";

const asked = process.argv.indexOf("--minutes");
const minutes = asked < 0 ? 0 : Number(process.argv[asked + 1]);

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

/** In the page: times of presses, of pictures that arrived, and how many were put on the canvas. */
function watch() {
  const times = { moves: [], pictures: [], painted: 0 };
  window.speed = times;
  addEventListener("pointermove", () => times.moves.push(performance.now()), true);
  const read = Response.prototype.arrayBuffer;
  // Of an empty frame nothing changes, so nothing is painted: its arrival is what counts.
  Response.prototype.arrayBuffer = async function () {
    const bytes = await read.call(this);
    if (this.url.endsWith("/api/frame"))
      times.pictures.push([performance.now(), Number(this.headers.get("X-Orbel-Width"))]);
    return bytes;
  };
  const put = CanvasRenderingContext2D.prototype.putImageData;
  CanvasRenderingContext2D.prototype.putImageData = function (...what) {
    put.apply(this, what);
    times.painted++;
  };
}

async function open(file) {
  const server = await startProgram(file);
  const context = await (
    await openBrowser()
  ).newContext({ viewport: { width: 1580, height: 950 } });
  const page = await context.newPage();
  await page.addInitScript(watch);
  const began = performance.now();
  await page.goto(server.address);
  const studio = new Studio(page, { server, context, faults: [] });
  await page.locator(".row").first().waitFor();
  studio.usable = performance.now() - began;
  studio.tools = await context.newCDPSession(page);
  await studio.tools.send("Performance.enable");
  await studio.settled();
  return studio;
}

async function close(studio) {
  await studio.context.close();
  await studio.server.end();
}

/** Milliseconds of the processor so far: the page's own thread, and the server. */
async function spent(studio) {
  const { metrics } = await studio.tools.send("Performance.getMetrics");
  const seconds = metrics.find(({ name }) => name === "TaskDuration").value;
  const stat = await readFile(`/proc/${studio.server.pid}/stat`, "utf8");
  const [user, system] = stat.slice(stat.lastIndexOf(")")).split(" ").slice(12, 14).map(Number);
  return { page: seconds * 1000, server: (user + system) * 10 };
}

/** The work of page and server on one picture. */
async function work(studio, before, pictures) {
  const after = await spent(studio);
  const each = (part) => round((after[part] - before[part]) / Math.max(1, pictures));
  return `page ${each("page")} ms, server ${each("server")} ms of work a picture`;
}

/** From each move to the next picture, and from the last move to the exact one. */
async function dragged(studio, rest = 600) {
  const { page } = studio;
  const box = await studio.row("ScaleX").locator(".slider").boundingBox();
  await page.mouse.move(box.x + 8, box.y + 10);
  await page.mouse.down();
  await page.evaluate(() => (window.speed.moves.length = window.speed.pictures.length = 0));
  const before = await spent(studio);
  for (let step = 0; step < 60; step++) {
    await page.mouse.move(box.x + 8 + (step % 40), box.y + 10);
    await page.waitForTimeout(25);
  }
  await page.waitForTimeout(rest);
  await page.mouse.up();
  const { moves, pictures } = await page.evaluate(() => window.speed);
  const follow = moves.flatMap((move) =>
    pictures
      .filter(([time]) => time > move)
      .slice(0, 1)
      .map(([time]) => time - move),
  );
  const last = moves[moves.length - 1];
  const exact = pictures
    .filter(([time, width]) => time > last && width === 1920)
    .map(([time]) => time - last);
  return {
    follow: round(median(follow)),
    exact: round(exact[exact.length - 1] ?? NaN),
    pictures: pictures.length,
    work: await work(studio, before, pictures.length),
  };
}

async function played(studio, seconds) {
  const { page } = studio;
  await page.keyboard.press("Home");
  await page.evaluate(() => (window.speed.painted = 0));
  const before = await spent(studio);
  await page.keyboard.press(" ");
  await page.waitForTimeout(seconds * 1000);
  const dropped = parseInt((await page.locator(".strip .dropped").textContent()) ?? "0", 10) || 0;
  const shown = await page.evaluate(() => window.speed.painted);
  const spentOn = await work(studio, before, shown);
  await page.keyboard.press(" ");
  return { share: dropped / (dropped + shown), dropped, shown, work: spentOn };
}

let missed = 0;
function judge(what, value, limit, unit) {
  const good = value <= limit;
  missed += good ? 0 : 1;
  console.log(`${good ? "ok    " : "MISSED"} ${what}: ${round(value)} ${unit}, at most ${limit}`);
}

async function pageBytes() {
  const files = ["index.html", "studio.js", "studio.css", "icon.svg"];
  const texts = await Promise.all(files.map((file) => readFile(join("dist", file))));
  return texts.reduce((sum, text) => sum + gzipSync(text).length, 0);
}

/** Resident memory of the server and the page's own, both in MB, when nothing is left to collect. */
async function memory(studio) {
  const status = await readFile(`/proc/${studio.server.pid}/status`, "utf8");
  await studio.tools.send("HeapProfiler.collectGarbage");
  const { metrics } = await studio.tools.send("Performance.getMetrics");
  const heap = metrics.find(({ name }) => name === "JSHeapUsedSize").value;
  return { server: Number(/VmRSS:\s+(\d+)/.exec(status)[1]) / 1024, page: heap / 2 ** 20 };
}

/** What the server tells and is told, past the page. */
function call(studio, path, body) {
  return studio.page.evaluate(
    async ([address, sent]) => {
      const headers = {
        "X-Orbel-Token": sessionStorage.getItem("orbel-token"),
        "X-Orbel-Tab": "bench",
        "Content-Type": "application/json",
      };
      const request = sent ? { method: "POST", headers, body: JSON.stringify(sent) } : { headers };
      return (await fetch(address, request)).json();
    },
    [path, body],
  );
}

/** Frames a second of a film in the making, while a slider is dragged or nobody touches anything. */
async function exported(file, dragging) {
  const studio = await open(file);
  const text = await readFile(file, "utf8");
  const order = { text, scene: file.split("/").pop(), from: 0, to: 149, overwrite: true };
  const { job } = await call(studio, "/api/export", { ...order, name: "beside.mp4" });
  const began = performance.now();
  let done = 0;
  while (performance.now() - began < 12_000 && done < 150) {
    if (dragging) await dragged(studio, 0);
    else await studio.page.waitForTimeout(200);
    ({ done } = (await call(studio, "/api/jobs")).jobs.find((each) => each.job === job));
  }
  const seconds = (performance.now() - began) / 1000;
  await call(studio, "/api/cancel", { job });
  await close(studio);
  return done / seconds;
}

/** A film gives way to a hand, and gets on. */
async function besideADrag(file) {
  const rates = { alone: [], dragged: [] };
  for (let round = 0; round < 3; round++) {
    rates.alone.push(await exported(file, false));
    rates.dragged.push(await exported(file, true));
  }
  const [alone, beside] = [median(rates.alone), median(rates.dragged)];
  console.log(`export: ${round(alone)} frames/s alone, ${round(beside)} beside a drag`);
  judge("export alone to one beside a drag", alone / beside, 40, "x");
}

async function endured(file) {
  const studio = await open(file);
  const samples = [];
  for (const end = performance.now() + minutes * 60_000; performance.now() < end; ) {
    for (let times = 0; times < 4; times++) await dragged(studio);
    await played(studio, 3);
    const sample = await memory(studio);
    samples.push(sample);
    console.log(`  server ${round(sample.server)} MB, page ${round(sample.page)} MB`);
  }
  await close(studio);
  // What the first rounds took is there to be used again.
  const settled = samples[Math.min(1, samples.length - 1)];
  const end = samples[samples.length - 1];
  judge("server's memory at the end to that after a minute", end.server / settled.server, 1.1, "x");
  judge("page's memory at the end to that after a minute", end.page / settled.page, 1.25, "x");
}

const folder = await makeFolder();
const results = [];
for (const [what, preset] of [
  ["empty frame", "None"],
  ["stroke", "Basic Star"],
]) {
  const file = join(folder, `${preset.replaceAll(" ", "-")}.json`);
  await writeFile(file, JSON.stringify(scene(preset)));
  const studio = await open(file);
  const box = await studio.page.locator(".screen").boundingBox();
  console.log(`${what}, 1920 x 1080 shown at ${Math.round(box.width)} x ${Math.round(box.height)}`);
  const drag = await dragged(studio);
  console.log(`  slider to picture ${drag.follow} ms, to the exact one ${drag.exact} ms`);
  console.log(`  ${drag.pictures} pictures: ${drag.work}`);
  const play = await played(studio, 6);
  console.log(`  playing: ${play.dropped} of ${play.dropped + play.shown} dropped; ${play.work}`);
  results.push({ file, drag, play, usable: studio.usable });
  await close(studio);
}

const demo = await open(join("..", "..", "resources", "scenes", "demo.json"));
const demoPlay = await played(demo, 6);
console.log(`demo scene: ${demoPlay.dropped} dropped, ${demoPlay.shown} shown; ${demoPlay.work}`);
await close(demo);

const [empty, stroke] = results;
judge(
  "slider to picture, beyond the empty page",
  stroke.drag.follow - empty.drag.follow,
  33.3,
  "ms",
);
judge("last move to the exact frame", stroke.drag.exact, 150, "ms");
judge("frames dropped, stroke", stroke.play.share * 100, 10, "%");
judge("frames dropped, demo scene", demoPlay.share * 100, 10, "%");
judge("usable after opening", Math.min(empty.usable, stroke.usable), 1000, "ms");
judge("page, compressed", (await pageBytes()) / 1000, 120, "kB");
if (process.argv.includes("--export")) await besideADrag(stroke.file);
if (minutes > 0) await endured(stroke.file);
await closeAll();
process.exitCode = missed > 0 ? 1 : 0;
