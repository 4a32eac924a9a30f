// Takes the pictures of the documentation from a scene of the project: npm run pictures.

import { cp, mkdtemp } from "node:fs/promises";
import { tmpdir } from "node:os";
import { join, resolve } from "node:path";
import { closeAll, openBrowser, startProgram, Studio } from "./support/studio.mjs";

const images = resolve("../../docs/images");
const folder = await mkdtemp(join(tmpdir(), "orbel-pictures-"));
await cp(resolve("../../resources/scenes"), folder, { recursive: true });

async function openAt(width, height) {
  const server = await startProgram(join(folder, "demo.json"));
  const context = await (await openBrowser()).newContext({ viewport: { width, height } });
  const page = await context.newPage();
  await page.goto(server.address);
  const studio = new Studio(page, { context, server, folder, faults: [] });
  await studio.settled();
  return studio;
}

async function take(studio, name, quality, clip) {
  await studio.settled();
  await studio.page.waitForTimeout(300);
  await studio.page.screenshot({
    path: join(images, `${name}.jpg`),
    type: "jpeg",
    quality,
    ...(clip ? { clip } : {}),
  });
}

const close = async (studio) => {
  await studio.context.close();
  await studio.server.end();
};

const room = await openAt(1280, 720);
await room.goTo(96);
await room.key("Transform/X Rotation", 104).click();
await take(room, "studio", 88);
await room.page.locator(".names .name", { hasText: "Y Rotation" }).click();
await room.page.keyboard.press("c");
const timeline = await room.page.locator(".time").boundingBox();
await take(room, "studio-curve", 88, timeline);
await room.page.keyboard.press("c");
await close(room);

const wide = await openAt(2560, 1440);
await wide.goTo(72);
await take(wide, "studio-wide", 82);
await close(wide);

await closeAll();
