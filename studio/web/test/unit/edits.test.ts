import assert from "node:assert/strict";
import { test } from "node:test";
import { Editor, interchangeable, keyId, type KeyId } from "../../src/document/edits";
import { disabledRows, passes } from "../../src/document/rules";
import { valueAt, type Scene } from "../../src/document/scene";
import type { Value } from "../../src/document/table";
import { editor, scene, table } from "./sample";

const named = (name: string) => table.named(name);
const ids = (name: string, ...frames: number[]): Set<KeyId> =>
  new Set(frames.map((frame) => keyId(named(name).id, frame)));

/** The scene's text with one passage replaced: what an edit may change, and nothing else. */
const changed = (from: string, to: string): string => {
  assert.ok(scene.includes(from), from);
  return scene.replace(from, to);
};

const at = (text: string, name: string, frame = 0): Value =>
  valueAt(editor(text).scene as Scene, named(name), frame);

test("a shape's options change where they stand", () => {
  const drawing = `{"shape": {"file": "a.svg", "import": {"smallest": 2.50e1}}}`;
  const take = editor(drawing).setShapeOption("take", "fills");
  assert.equal(JSON.parse(take).shape.import.take, "fills");
  assert.ok(take.includes(`"smallest": 2.50e1`));
  assert.equal(editor(take).setShapeOption("take", null), drawing);
  const word = `{"shape": {"text": "a", "lineHeight": 1.50}}`;
  assert.equal(editor(word).writeText("b\nc"), word.replace('"a"', '"b\\nc"'));
  assert.ok(editor(word).setShapeOption("font", "serif").includes("1.50"));
  assert.equal(editor(`{"shape": "a.svg"}`).setShapeOption("take", "fills"), `{"shape": "a.svg"}`);
});

test("an edit changes its own value and no other byte", () => {
  const cases: [string, string, string, string][] = [
    ["identifier as name", editor().setValue(named("Thickness"), 0, 9, false), "1.40e1", "9"],
    ["one component", editor().setValue(named("Color"), 0, [1, 0.5, 0.35], false), "0.72", "0.5"],
    ["lone name", editor().setValue(named("Camera/Zoom"), 0, 250.5, false), "500", "250.5"],
    ["menu by index", editor().setValue(named("Transfer Mode"), 0, 1, false), "2\n", "1\n"],
    ["key's value", editor().setValue(named("End"), 45, 90, false), "1e2", "90"],
    [
      "key added",
      editor().setValue(named("End"), 20, 30, false),
      "], [45.0",
      '], [20, 30, "ease"], [45.0',
    ],
    ["easing", editor().setEasing(ids("End", 45), "hold"), "[45.0, 1e2]", '[45.0, 1e2, "hold"]'],
    ["easing away", editor().setEasing(ids("End", 0), "linear"), '[0, 0.0, "ease"]', "[0, 0.0]"],
    [
      "member added",
      editor().setValue(named("Transform/Z Rotation"), 0, 12, false),
      'Mode": 2',
      'Mode": 2,\n    "Transform/Z Rotation": 12',
    ],
    [
      "member removed",
      editor().reset(named("Color"), 0),
      '\n    "Color": [1.0, 0.72,  0.350],',
      "",
    ],
    ["header added", editor().setHeader("fps", 25), "720],", '720],\n  "fps": 25,'],
  ];
  for (const [what, text, from, to] of cases) assert.equal(text, changed(from, to), what);
});

test("scenes without parameters, or with none in them, get their first", () => {
  for (const text of ["{}", '{"orbel": 1}', '{\n\t"orbel": 1,\n\t"parameters": {}\n}']) {
    const after = editor(text).setValue(named("Presets"), 0, 2, false);
    assert.deepEqual(
      (JSON.parse(after) as { parameters: object }).parameters,
      { Presets: "Basic Star" },
      text,
    );
  }
});

test("moved keys keep their text, and one that lands on another takes its place", () => {
  const moved = editor().moveKeys(ids("End", 0), 10);
  assert.equal(moved.text, changed("[0, 0.0", "[10, 0.0"));
  assert.deepEqual([...moved.selection], ["38@10"]);
  const landed = editor().moveKeys(ids("End", 0), 45);
  assert.equal(landed.text, changed('[0, 0.0, "ease"], [45.0, 1e2]', '[45, 0.0, "ease"]'));
});

test("a new key eases as is wished, and inside a stretch as the stretch did", () => {
  const easing = (row: string, frame: number) => {
    const hold = new Editor(scene, table, "hold");
    const text = hold.setValue(named(row), frame, 7, true);
    return editor(text)
      .keysOf(named(row))
      .find((key) => key.frame === frame)?.easing;
  };
  assert.equal(easing("Thickness", 5), "hold");
  assert.equal(easing("End", 60), "hold");
  assert.equal(easing("End", 20), "ease");
  assert.equal(easing("End", 0), "ease");
});

test("keys of several rows stretch, copy and paste together", () => {
  const two = editor().setValue(named("Thickness"), 15, 3, true);
  const both = new Set([...ids("End", 0, 45), ...ids("Thickness", 15)]);
  const wide = editor(two).stretchKeys(both, 0, 2);
  assert.deepEqual([...wide.selection].sort(), ["38@0", "38@90", "4@30"]);
  const copied = editor(two).copyKeys(both);
  const pasted = editor(two).pasteKeys(copied, 100);
  assert.deepEqual([...pasted.selection].sort(), ["38@100", "38@145", "4@115"]);
  assert.equal(at(pasted.text, "End", 100), 0);
  const onto = editor(two).pasteKeys(
    editor(two).copyKeys(ids("End", 0, 45)),
    0,
    named("Camera/Zoom"),
  );
  assert.equal(at(onto.text, "Camera/Zoom", 45), 100);
});

test("deleting the last keys leaves their value; a reset keeps keys", () => {
  assert.equal(
    editor().removeKeys(ids("End", 0, 45)).text,
    changed('{"keys": [[0, 0.0, "ease"], [45.0, 1e2]]}', "0"),
  );
  assert.equal(editor().reset(named("End"), 0), changed("0.0", "100"));
  assert.equal(
    editor().removeAllKeys(named("End"), 45),
    changed('{"keys": [[0, 0.0, "ease"], [45.0, 1e2]]}', "100"),
  );
});

test("a file as shape takes the built-in shape away, which would win", () => {
  const star = editor().setValue(named("Presets"), 0, 2, false);
  const file = editor(star).setShape("iris.svg");
  assert.equal(at(file, "Shape"), "iris.svg");
  assert.equal(at(file, "Presets"), 0);
  assert.equal(editor(file).setShape(""), scene);
  const drawing = editor(star).importShape("iris.svg");
  assert.equal(at(drawing, "Shape"), "iris.svg, imported");
  assert.equal(editor(drawing).setShape(""), scene);
});

test("another word keeps what was stated of the text", () => {
  const hello = editor(scene).setHeader("shape", { text: "Hello", font: "serif" });
  const bye = editor(hello).writeText("Bye");
  assert.equal(bye, hello.replace("Hello", "Bye"));
  assert.equal(at(bye, "Shape"), "“Bye”");
});

test("values follow their keys as the program has them", () => {
  const eased = at(scene, "End", 9) as number;
  assert.ok(Math.abs(eased - 100 * (3 * 0.04 - 2 * 0.008)) < 1e-9);
  assert.equal(at(scene, "End", -3), 0);
  assert.equal(at(scene, "End", 99), 100);
  const menu = editor().setValue(named("Transfer Mode"), 0, 0, true);
  const held = editor(menu).setValue(named("Transfer Mode"), 10, 2, true);
  assert.equal(at(held, "Transfer Mode", 9), 0);
  assert.equal(at(held, "Transfer Mode", 10), 2);
});

test("a broken scene is told and left as it is", () => {
  const broken = editor('{"orbel": 1,');
  assert.equal(broken.scene, null);
  assert.equal(broken.setValue(named("End"), 0, 3, true), '{"orbel": 1,');
});

test("rules, search and filters", () => {
  const off = (text: string) => disabledRows(editor(text).scene as Scene, table, 0).has(17);
  assert.equal(off(scene), true);
  assert.equal(off(editor().setValue(named("Repeater/Enable Repeater"), 0, true, false)), false);
  const shown = (filter: { search?: string; changed?: boolean; animated?: boolean }) =>
    table.rows
      .filter((row) =>
        passes(
          { search: "", changed: false, animated: false, ...filter },
          editor().scene as Scene,
          row,
        ),
      )
      .map((row) => row.name);
  assert.deepEqual(shown({ search: "pos cam" }), ["Camera/XY Position"]);
  assert.deepEqual(shown({ animated: true }), ["End"]);
  assert.equal(shown({ changed: true }).length, 5);
  assert.equal(interchangeable(named("End"), named("Transform/Z Rotation")), true);
  assert.equal(interchangeable(named("End"), named("Color")), false);
});
