// The demo's film from an empty scene, as a designer makes it who has read no manual: what it takes
// by the keystroke-level model stays under five minutes.

import assert from "node:assert/strict";
import { cp, readFile } from "node:fs/promises";
import { join, resolve } from "node:path";
import { after, test } from "node:test";
import { Person } from "../support/person.mjs";
import { closeAll, openStudio, orbel } from "../support/studio.mjs";

after(closeAll);

const scenes = resolve("../../resources/scenes");

/** What is typed into the fields of rows; `list` is where they scroll. */
class Designer extends Person {
  constructor(studio) {
    super(studio.page);
    this.studio = studio;
    this.list = this.page.locator(".rows");
  }

  field(name) {
    return this.studio.row(name).locator("input");
  }

  /** A value by its row; those that follow stand below it, each a few tabs on. */
  async values(name, ...values) {
    this.think();
    await this.click(this.field(name), { list: this.list });
    await this.type(String(values[0]));
    for (const value of values.slice(1)) {
      this.think();
      await this.press("Tab", "Tab");
      await this.type(String(value));
    }
    await this.press("Enter");
  }

  async entry(name, letters) {
    this.think();
    await this.click(this.studio.row(name).locator("select"), { list: this.list });
    await this.type(letters);
    await this.press("Enter");
  }

  async toggle(name) {
    this.think();
    await this.click(this.studio.row(name).getByRole("switch"), { list: this.list });
  }

  async open(group) {
    this.think();
    await this.click(this.page.locator(".group > h3 button", { hasText: group }), {
      list: this.list,
    });
  }

  async goTo(frame) {
    this.think();
    if (frame === 0) return this.press("Home");
    await this.press("g");
    await this.type(String(frame));
    await this.press("Enter");
  }

  /** The keys of a row: with auto-key a value sets one, where it stays the same its diamond. */
  async keys(name, [first, ...others]) {
    await this.goTo(first[0]);
    if (first[1] !== undefined) await this.values(name, first[1]);
    else {
      this.think();
      await this.click(this.studio.row(name).locator(".key"), { list: this.list });
    }
    if (first[2]) await this.eases(first[2]);
    for (const [frame, value, easing] of others) {
      await this.goTo(frame);
      this.think();
      if (value === undefined) await this.press("s");
      else {
        await this.press("Enter");
        await this.type(String(value));
        await this.press("Enter");
      }
      if (easing) await this.eases(easing);
    }
  }

  /** How the motion goes on from the key at the playhead. */
  async eases(letters) {
    this.think();
    await this.click(this.page.locator(".transport .select"));
    await this.type(letters);
    await this.press("Enter");
  }
}

/** Stated by the demo, and the default. */
const usual = { "Motion Blur/Levels": 8 };

/** What a scene comes to, however it is put. */
function meaning({ parameters, ...scene }) {
  const rows = Object.entries({ ...usual, ...parameters }).map(([name, value]) => {
    if (!Array.isArray(value?.keys)) return [name, value];
    // The last key's easing moves nothing, and nothing moves between two equal values.
    return [
      name,
      value.keys.map(([frame, to, easing], index, all) =>
        index + 1 === all.length || all[index + 1][1] === to ? [frame, to] : [frame, to, easing],
      ),
    ];
  });
  return { ...scene, parameters: Object.fromEntries(rows.sort(([a], [b]) => (a < b ? -1 : 1))) };
}

test("the demo is made from an empty scene in less than five minutes", async (t) => {
  const studio = await openStudio({ width: 1280, height: 720 });
  const { page } = studio;
  await cp(join(scenes, "night.mp4"), join(studio.folder, "night.mp4"));
  await page.getByRole("option", { name: "night.mp4" }).waitFor({ state: "attached" });
  const me = new Designer(studio);
  const shot = async (name) => {
    const folder = process.env.ORBEL_SHOTS;
    if (folder) await page.screenshot({ path: join(folder, `${name}.png`) });
    if (folder) console.log(name, me.actions, Math.round(me.seconds));
  };

  me.think();
  await me.click(page.getByLabel("Input", { exact: true }));
  await me.type("ni");
  await me.press("Enter");
  me.think();
  await me.click(page.getByRole("button", { name: "Take over" }));

  // What does not move, from top to bottom.
  await me.values("ScaleX", 1.35, 1.35);
  await me.values("Color", "1 .72 .35");
  await me.values("Feather", 85);
  await me.open("Taper");
  await me.toggle("Taper/Enable Taper");
  await me.values("Taper/Start Thickness", 4, 60, 80, 94);
  await me.open("Repeater");
  await me.toggle("Repeater/Enable Repeater");
  await me.toggle("Repeater/Symmetric Doubler");
  await me.values("Repeater/Instances", 12, 86);
  await me.open("Advanced");
  await me.values("Advanced/Internal Opacity", 70);
  await me.values("Advanced/Low Alpha Hue Rotation", 75);
  await me.open("Camera");
  await me.values("Camera/Zoom", 700);
  await me.open("Motion Blur");
  await me.entry("Motion Blur/Motion Blur", "on");
  await me.values("Motion Blur/Shutter Angle", 200);
  await me.entry("Transfer Mode", "add");
  await shot("still");

  // What moves, row by row and frame by frame.
  me.think();
  await me.click(page.getByRole("button", { name: "Auto-key" }));
  await me.eases("ease");
  await me.open("Transform");
  await me.keys("Camera/Z Position", [
    [0, -640],
    [179, -760],
  ]);
  await me.keys("Repeater/Scale", [[0], [46, 100], [126, 107]]);
  await me.keys("Repeater/Z Displace", [
    [0, 0],
    [38, 0],
    [106, 30],
  ]);
  await me.keys("Repeater/Z Rotation", [[0], [34], [132, 12]]);
  await me.keys("Transform/X Rotation", [
    [0, 40],
    [104, -10],
    [179, -24],
  ]);
  await me.keys("Transform/Y Rotation", [
    [0, -75, "ease o"],
    [84, 12],
    [179, 48],
  ]);
  await me.keys("Transform/Z Rotation", [
    [0, -46],
    [179, 30],
  ]);
  await me.keys("Thickness", [[0], [58], [104, 8]]);
  await me.keys("Start", [[0], [124, undefined, "ease i"], [174, 100]]);
  await me.keys("End", [
    [4, 0],
    [64, 100],
  ]);
  await shot("moving");

  // A look at it, and the film.
  await me.press("Home", " ");
  await me.watch(6);
  await me.press(" ");
  me.think();
  await me.click(page.getByRole("button", { name: "Export…" }));
  await shot("export");
  me.think();
  await me.click(page.locator(".export button.go"));
  t.diagnostic(`${me.actions} actions, ${Math.round(me.seconds)} seconds`);
  const name = (await page.locator(".scenename b").textContent()) + ".mp4";
  await page.locator(".job.done").waitFor({ timeout: 120_000 });
  await page.getByRole("button", { name: "Show" }).click();
  await page.locator(".result video").waitFor();
  await shot("done");

  studio.file = join(studio.folder, "untitled.json");
  const made = meaning(await studio.saved());
  assert.deepEqual(made, meaning(JSON.parse(await readFile(join(scenes, "demo.json"), "utf8"))));
  await orbel("render", join(scenes, "demo.json"), "-o", join(studio.folder, "demo.mp4"));
  const [film, demo] = await Promise.all(
    [name, "demo.mp4"].map((each) => readFile(join(studio.folder, each))),
  );
  assert.ok(film.equals(demo), "the film is not the demo's");
  assert.ok(me.seconds < 300, `${me.actions} actions take ${me.seconds} seconds`);
  await studio.close();
});
