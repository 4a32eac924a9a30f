import assert from "node:assert/strict";
import { test } from "node:test";
import { evaluate } from "../../src/document/arithmetic";
import {
  angleText,
  clockText,
  colourOf,
  hexOf,
  hsvOf,
  rgbOf,
  sliderValue,
} from "../../src/document/display";
import { alongAxes, outline, pointAt, shareNear, unwound } from "../../src/document/outline";
import { frameAt, snapped, ticks, xOf, zoomed } from "../../src/document/timescale";
import { table } from "./sample";

test("number fields reckon", () => {
  const cases: [string, number | null][] = [
    ["3*12", 36],
    ["+5", 15],
    ["*2", 20],
    ["/4", 2.5],
    ["-5", -5],
    ["2*(3+4)-1", 13],
    [" 1,5 % ", 1.5],
    ["2x30", 750],
    ["-1× 90°", -450],
    ["1x", 360],
    ["1e3", 1000],
    ["", null],
    ["1/0", null],
    ["3**2", null],
    ["alert(1)", null],
    ["((((1", null],
  ];
  for (const [text, value] of cases) assert.equal(evaluate(text, 10), value, text);
});

test("an angle reads as it can be typed", () => {
  for (const degrees of [0, 12.5, 372, -45, -372, -800, 3600]) {
    assert.equal(evaluate(angleText(degrees), 0), degrees, angleText(degrees));
  }
});

test("colours survive hex and the picker", () => {
  assert.deepEqual(colourOf("#f80"), [1, 0.5333, 0]);
  assert.equal(colourOf("12345"), null);
  for (const hex of ["#ffb84f", "#000000", "#0a64ff", "#808080", "#ff00aa"]) {
    assert.equal(hexOf(colourOf(hex)!), hex);
    assert.equal(hexOf(rgbOf(hsvOf(colourOf(hex)!))), hex);
  }
});

test("a slider gives round numbers inside its range", () => {
  const row = table.named("Thickness");
  assert.equal(sliderValue(row, 0, false), 1);
  assert.equal(sliderValue(row, 2, false), 50);
  assert.equal(sliderValue(row, 0.3333, false), 17.3);
});

test("time: places and frames agree, zoom keeps its frame, snapping reaches", () => {
  const view = { from: 0, to: 100 };
  assert.equal(frameAt(view, 500, xOf(view, 500, 37)), 37);
  const near = zoomed(view, 25, 0.5);
  assert.equal(xOf(near, 500, 25), xOf(view, 500, 25));
  assert.equal(snapped(29.2, [30.5], 2), 30.5);
  assert.equal(snapped(29.2, [40], 2), 29);
  for (const to of [1, 7, 180, 100_000]) {
    const labels = ticks({ from: 0, to }, 800, 30, to > 100).filter((tick) => tick.labelled);
    assert.ok(labels.length > 0 && labels.length < 20, String(to));
  }
  assert.equal(clockText(95, 30), "0:03:05");
});

test("beads stand on the outline and go round it", () => {
  const square = outline([0, 0, 10, 0, 10, 10, 0, 10, 0, 0]);
  assert.deepEqual(pointAt(square, 0.375), [10, 5]);
  assert.deepEqual(pointAt(square, 1.375), [10, 5]);
  assert.equal(shareNear([square], [12, 5]), 0.375);
  assert.equal(unwound(0.05, 0.98), 1.05);
  const given = outline([0, 0, 10, 0], [0, 0.5]);
  assert.equal(shareNear([given], [5, 3]), 0.25);
  assert.equal(pointAt(outline([]), 0.5), null);
  assert.deepEqual(
    alongAxes(
      [
        [100, 50],
        [0, 200],
      ],
      [50, 125],
    ),
    [0.5, 0.5],
  );
  assert.equal(
    alongAxes(
      [
        [100, 0],
        [50, 0],
      ],
      [1, 1],
    ),
    null,
  );
});
