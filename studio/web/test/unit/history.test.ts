import assert from "node:assert/strict";
import { test } from "node:test";
import { record, redo, redoName, startHistory, undo, undoName } from "../../src/document/history";

test("every step comes back, and a gesture is one", () => {
  let history = startHistory("aaaa");
  history = record(history, "first", "abaa");
  for (const text of ["abab", "abaabb", "abxxxx"]) history = record(history, "drag", text, 7);
  history = record(history, "last", "");
  assert.equal(history.done.length, 3);
  const seen = [history.text];
  while (undoName(history)) seen.push((history = undo(history)).text);
  assert.deepEqual(seen, ["", "abxxxx", "abaa", "aaaa"]);
  assert.equal(redoName(history), "first");
  while (redoName(history)) history = redo(history);
  assert.equal(history.text, "");
});

test("no change is no step, nor is a gesture that ends where it began", () => {
  const start = startHistory("one");
  assert.equal(record(start, "nothing", "one"), start);
  const there = record(start, "drag", "two", 1);
  assert.equal(record(there, "drag", "one", 1).done.length, 0);
});

test("a step after undo forgets what was undone; a later gesture does not join an undone one", () => {
  let history = record(startHistory("a"), "drag", "b", 1);
  history = redo(undo(history));
  history = record(history, "drag", "c", 1);
  assert.equal(history.done.length, 2);
  assert.equal(record(undo(history), "other", "d").undone.length, 0);
});
