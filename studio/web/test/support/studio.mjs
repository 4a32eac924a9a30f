// Starts the program and a browser as a person would, and reads what both of them show.
// ORBEL names the program; without it the one of the release build is taken.

import { execFile, spawn } from "node:child_process";
import { mkdtemp, readFile, rm, writeFile } from "node:fs/promises";
import { tmpdir } from "node:os";
import { join, resolve } from "node:path";
import { promisify } from "node:util";
import { chromium } from "playwright-core";

const program = resolve(process.env.ORBEL ?? "../../out/release/app/orbel");
const browserFlags = [
  "--headless",
  "--no-sandbox",
  "--disable-gpu",
  "--disable-quic",
  "--no-first-run",
  "--disable-background-networking",
  "--disable-component-update",
  "--disable-sync",
];

/** Runs the program to its end. */
export async function orbel(...words) {
  return promisify(execFile)(program, words);
}

/** A folder of its own for one test. */
export async function makeFolder() {
  return mkdtemp(join(tmpdir(), "orbel-studio-"));
}

/** The studio's program; `address` opens it once. */
export async function startProgram(scene, ...options) {
  const child = spawn(program, ["studio", scene, "--no-open", ...options], {
    stdio: ["ignore", "pipe", "pipe"],
  });
  let said = "";
  const address = await new Promise((done, failed) => {
    const listen = (data) => {
      said += data;
      const found = /http:\/\/\S+/.exec(said);
      if (found) done(found[0]);
    };
    child.stdout.on("data", listen);
    child.stderr.on("data", listen);
    child.on("exit", (code) => failed(new Error(`orbel studio ended with ${code}: ${said}`)));
  });
  running.add(child);
  const ended = new Promise((done) => child.on("exit", done));
  void ended.then(() => running.delete(child));
  const end = async (signal = "SIGINT") => {
    child.kill(signal);
    return ended;
  };
  return { address, end, pid: child.pid };
}

let browser;
const running = new Set();

/** One browser for all the tests of a file. */
export async function openBrowser() {
  browser ??= await chromium.launch({
    executablePath: process.env.CHROMIUM ?? "/usr/bin/chromium",
    args: browserFlags,
  });
  return browser;
}

/** Ends the browser and every program that a failed test left behind. */
export async function closeAll() {
  await browser?.close();
  browser = undefined;
  running.forEach((child) => child.kill("SIGKILL"));
}

/** A room with the page open on a scene. `text` is written to the scene's file first. */
export async function openStudio({ text, name = "scene.json", width = 1440, height = 900 } = {}) {
  const folder = await makeFolder();
  const file = join(folder, name);
  if (text !== undefined) await writeFile(file, text);
  const server = await startProgram(text === undefined ? folder : file);
  const context = await (await openBrowser()).newContext({ viewport: { width, height } });
  const page = await context.newPage();
  const faults = [];
  page.on("pageerror", (error) => faults.push(error.message));
  await page.goto(server.address);
  const studio = new Studio(page, { folder, file, server, context, faults });
  await studio.settled();
  return studio;
}

export class Studio {
  constructor(page, parts) {
    this.page = page;
    Object.assign(this, parts);
  }

  async close() {
    await this.context.close();
    await this.server.end();
    await rm(this.folder, { recursive: true, force: true });
    if (this.faults.length > 0) throw new Error(`the page failed: ${this.faults.join("; ")}`);
  }

  row(name) {
    return this.page.locator(`[data-row="${name}"]`);
  }

  key(name, frame) {
    return this.page.locator(
      `[data-lane="${name}"] .keysign[aria-label^="${name}, frame ${frame}:"]`,
    );
  }

  /** Waits for the exact picture of what is set. */
  async settled(page = this.page) {
    await page.locator('.screen[aria-busy="false"]').waitFor({ timeout: 60_000 });
  }

  /** Waits until a row's number field reads so. */
  async shows(name, text) {
    const field = this.row(name).locator("input").first();
    await field.waitFor();
    const element = await field.elementHandle();
    await this.page
      .waitForFunction(([input, wanted]) => input.value === wanted, [element, text], {
        timeout: 30_000,
      })
      .catch(async () => {
        throw new Error(`${name} shows ${await field.inputValue()}, not ${text}`);
      });
  }

  /** Types into the number field of a row and takes it. */
  async type(name, text, label) {
    const field = label
      ? this.row(name).getByLabel(label)
      : this.row(name).locator("input.number").first();
    await field.click();
    await field.fill(text);
    await field.press("Enter");
  }

  /** Types into the field of this name and takes it. */
  async fill(label, text) {
    const field = this.page.getByLabel(label, { exact: true }).and(this.page.locator("input"));
    await field.click();
    await field.fill(text);
    await field.press("Enter");
  }

  goTo(frame) {
    return this.fill("Current frame", String(frame));
  }

  /** Presses at the middle of an element, moves by so many pixels and lets go. */
  async drag(element, dx, dy, keys = []) {
    await element.scrollIntoViewIfNeeded();
    const box = await element.boundingBox();
    const [x, y] = [box.x + box.width / 2, box.y + box.height / 2];
    for (const key of keys) await this.page.keyboard.down(key);
    await this.page.mouse.move(x, y);
    await this.page.mouse.down();
    await this.page.mouse.move(x + dx / 2, y + dy / 2, { steps: 3 });
    await this.page.mouse.move(x + dx, y + dy, { steps: 3 });
    await this.page.mouse.up();
    for (const key of keys) await this.page.keyboard.up(key);
  }

  /** Saves and reads the scene as it then stands on disk. */
  async saved() {
    await this.page.keyboard.press("Control+s");
    await this.page
      .locator(".bar button", { hasText: "Save" })
      .and(this.page.locator(":disabled"))
      .waitFor();
    return JSON.parse(await readFile(this.file, "utf8"));
  }

  async parameters() {
    return (await this.saved()).parameters;
  }

  /** An address that opens this studio once more. */
  async addressForAnotherTab() {
    const key = await this.page.evaluate(async () => {
      const headers = {
        "X-Orbel-Token": sessionStorage.getItem("orbel-token"),
        "X-Orbel-Tab": "test",
        "Content-Type": "application/json",
      };
      const answer = await fetch("/api/key", { method: "POST", headers, body: "{}" });
      return (await answer.json()).key;
    });
    return `${new URL(this.server.address).origin}/#open=${key}`;
  }

  /** Waits until the newest step is called so; without a name, until there is none. */
  async undoIs(name) {
    await this.page.locator(`.bar button[aria-label="Undo${name ? `: ${name}` : ""}"]`).waitFor();
  }

  notice(id) {
    return this.page.locator(`[data-notice="${id}"]`);
  }

  /** The canvas as it is, rows top-down, four bytes a pixel. */
  async pixels() {
    const { width, height, base64 } = await this.page.locator(".screen").evaluate((canvas) => {
      const data = canvas.getContext("2d").getImageData(0, 0, canvas.width, canvas.height).data;
      let text = "";
      for (let at = 0; at < data.length; at += 0x8000)
        text += String.fromCharCode(...data.subarray(at, at + 0x8000));
      return { width: canvas.width, height: canvas.height, base64: btoa(text) };
    });
    return { width, height, bytes: Buffer.from(base64, "base64") };
  }
}
