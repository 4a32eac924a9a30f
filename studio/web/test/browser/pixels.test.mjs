// What the viewport shows at 100 % is what the program renders, byte for byte.

import assert from "node:assert/strict";
import { readFile } from "node:fs/promises";
import { join } from "node:path";
import { after, test } from "node:test";
import { closeAll, openStudio, orbel } from "../support/studio.mjs";

after(closeAll);

const scene = (format, more, rest) =>
  JSON.stringify({
    orbel: 1,
    ...rest,
    size: [160, 90],
    fps: 25,
    frames: [0, 9],
    format,
    parameters: {
      Presets: "Petals",
      Color: [1, 0.5, 0.2],
      Feather: 60,
      ScaleX: 0.5,
      ScaleY: 0.5,
      End: {
        keys: [
          [0, 20],
          [9, 100],
        ],
      },
      "Transfer Mode": "Normal",
      ...more,
    },
  });

/** One component of a raw frame brought to 8 bits, by format. */
const readers = {
  8: (raw, at) => raw[at],
  16: (raw, at) => Math.min(255, Math.round((raw.readUInt16LE(at * 2) * 255) / 65535)),
  32: (raw, at) => Math.min(255, Math.max(0, Math.round(raw.readFloatLE(at * 4) * 255))),
};

/** A premultiplied raw frame laid on a ground, as opaque RGBA. */
function composited(raw, format, width, height, ground) {
  const read = readers[/\d+/.exec(format)[0]];
  const order = format.startsWith("argb") ? [1, 2, 3, 0] : [0, 1, 2, 3];
  const bytes = Buffer.alloc(width * height * 4, 255);
  for (let pixel = 0; pixel < width * height; pixel++) {
    const [r, g, b, a] = order.map((part) => read(raw, pixel * 4 + part));
    const under = ground(pixel % width, Math.floor(pixel / width));
    [r, g, b].forEach((value, part) => {
      bytes[pixel * 4 + part] = Math.min(255, value + Math.floor((under * (255 - a) + 127) / 255));
    });
  }
  return bytes;
}

const grounds = {
  grid: (x, y) => (((x >> 3) + (y >> 3)) % 2 === 0 ? 44 : 54),
  black: () => 0,
  white: () => 255,
};

for (const [format, ground, more, rest] of [
  ["rgba8", "grid", {}],
  ["argb8", "white", { "Repeater/Enable Repeater": true, "Repeater/Instances": 3 }],
  ["rgba16", "black", { "Motion Blur/Motion Blur": "On" }],
  ["argb32f", "grid", { "Transfer Mode": "None", "Taper/Enable Taper": true }],
  ["argb16", "grid", { Presets: "None" }, { shape: { text: "ab", singleStroke: true } }],
  [
    "rgba32f",
    "white",
    { "Transfer Mode": "Screen" },
    { input: { color: [0.2, 0.1, 0.6, 0.5] }, pixelAspect: 1.2, renderScale: [0.5, 0.5] },
  ],
]) {
  test(`${format} on ${ground}`, async () => {
    const studio = await openStudio({ text: scene(format, more, rest) });
    await studio.page.getByLabel("What lies under the picture").selectOption(ground);
    await studio.page.keyboard.press("1");
    for (const frame of [0, 7]) {
      await studio.goTo(frame);
      await studio.settled();
      const { width, height, bytes } = await studio.pixels();
      assert.deepEqual([width, height], [160, 90]);
      const raw = join(studio.folder, "raw");
      await orbel("render", studio.file, "--frames", String(frame), "--raw", raw);
      const expected = await readFile(join(raw, `frame-${String(frame).padStart(6, "0")}.raw`));
      assert.ok(
        bytes.equals(composited(expected, format, width, height, grounds[ground])),
        `frame ${frame} differs`,
      );
    }
    await studio.close();
  });
}
