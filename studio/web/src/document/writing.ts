// How values and keys are written into a scene's text.

import {
  addMember,
  items,
  member,
  members,
  plain,
  removeMember,
  replaceNode,
  setMember,
  sourceOf,
  type Node,
} from "./jsonText";
import type { Key, Scene } from "./scene";
import type { Row, Value } from "./table";

/** A number without the dust of binary fractions. */
export function tidy(value: number, digits = 4): number {
  return Number(value.toFixed(digits));
}

/** The value as a scene writes it. `old` is what stood there: its untouched numbers stay as written. */
export function spell(row: Row, value: Value, text: string, old?: Node): string {
  if (typeof value === "object") {
    const written = value.map((item, index) => spellNumber(item, text, items(old)[index]));
    return old?.type === "array" && items(old).length === value.length
      ? replaceItems(text, old, written)
      : `[${written.join(", ")}]`;
  }
  if (row.kind === "menu" || row.kind === "presets") return spellEntry(row, Number(value), old);
  return typeof value === "number" ? spellNumber(value, text, old) : JSON.stringify(value);
}

function spellNumber(value: number, text: string, old?: Node): string {
  return old && plain(old) === value ? sourceOf(text, old) : String(value);
}

function spellEntry(row: Row, index: number, old?: Node): string {
  const entry = row.entries?.[index];
  return entry === undefined || old?.type === "number" ? String(index) : JSON.stringify(entry);
}

/** The array's text with other items, its spacing kept. */
function replaceItems(text: string, array: Node, written: readonly string[]): string {
  let result = "";
  let at = array.offset;
  items(array).forEach((item, index) => {
    result += text.slice(at, item.offset) + (written[index] ?? "");
    at = item.offset + item.length;
  });
  return result + text.slice(at, array.offset + array.length);
}

function parametersOf(scene: Scene): Node | undefined {
  return member(scene.root, "parameters")?.value;
}

/** Puts a value, or keys, in place of whatever the row has; null takes the row out. */
function writeRow(text: string, scene: Scene, row: Row, valueText: string | null): string {
  const track = scene.tracks.get(row.id);
  const parameters = parametersOf(scene);
  if (track && parameters) {
    if (valueText !== null) return replaceNode(text, track.node, valueText);
    const item = members(parameters).find((each) => each.value === track.node);
    return item ? removeMember(text, parameters, item) : text;
  }
  if (valueText === null) return text;
  if (parameters?.type === "object") return addMember(text, parameters, row.name, valueText);
  const fresh = `{\n    ${JSON.stringify(row.name)}: ${valueText}\n  }`;
  return setMember(text, scene.root, "parameters", fresh);
}

export function writeConstant(text: string, scene: Scene, row: Row, value: Value): string {
  const track = scene.tracks.get(row.id);
  const old = track && track.keys.length === 0 ? track.node : undefined;
  return writeRow(text, scene, row, spell(row, value, text, old));
}

export function removeRow(text: string, scene: Scene, row: Row): string {
  return writeRow(text, scene, row, null);
}

/** Writes the row's keys, sorted; those that were read and are unchanged keep their text. */
export function writeKeys(text: string, scene: Scene, row: Row, keys: readonly Key[]): string {
  if (keys.length === 0) return removeRow(text, scene, row);
  const sorted = [...keys].sort((a, b) => a.frame - b.frame);
  const track = scene.tracks.get(row.id);
  const array = member(track?.node, "keys")?.value;
  const written = sorted.map((key) => spellKey(row, key, text));
  if (!track || !array || items(array).length === 0) {
    return writeRow(text, scene, row, `{"keys": [${written.join(", ")}]}`);
  }
  return replaceNode(text, array, joinLike(text, array, written));
}

function spellKey(row: Row, key: Key, text: string): string {
  const [frame, value, easing] = items(key.node);
  if (!key.node || !frame || !value) {
    const tail = key.easing ? `, ${JSON.stringify(key.easing)}` : "";
    return `[${key.frame}, ${spell(row, key.value, text)}${tail}]`;
  }
  const written = [spellNumber(key.frame, text, frame), spell(row, key.value, text, value)];
  const same = (easing ? String(easing.value) : null) === key.easing;
  if (same && easing) written.push(sourceOf(text, easing));
  if (same) return replaceItems(text, key.node, written);
  if (key.easing) written.push(JSON.stringify(key.easing));
  return `[${written.join(", ")}]`;
}

/** Joins items as the array's own are joined. */
function joinLike(text: string, array: Node, written: readonly string[]): string {
  const old = items(array);
  const first = old[0]!;
  const last = old[old.length - 1]!;
  const head = text.slice(array.offset, first.offset);
  const tail = text.slice(last.offset + last.length, array.offset + array.length);
  const second = old[1];
  const gap = second ? text.slice(first.offset + first.length, second.offset) : ", ";
  return head + written.join(gap) + tail;
}

/** A top-level key of the scene; null takes it out. */
export function writeHeader(
  text: string,
  scene: Scene,
  key: string,
  valueText: string | null,
): string {
  const old = member(scene.root, key);
  if (old || valueText === null || key === "parameters") {
    return setMember(text, scene.root, key, valueText);
  }
  return insertBeforeParameters(text, scene, key, valueText);
}

/** Headers stand in front of the parameters, where a reader looks for them. */
function insertBeforeParameters(
  text: string,
  scene: Scene,
  key: string,
  valueText: string,
): string {
  const written = members(scene.root);
  const parameters = written.findIndex((item) => item.key === "parameters");
  const previous = written[parameters - 1];
  if (parameters < 1 || !previous) return setMember(text, scene.root, key, valueText);
  const end = previous.node.offset + previous.node.length;
  const gap = text.slice(end, written[parameters]!.node.offset);
  const entry = `${JSON.stringify(key)}: ${valueText}`;
  return text.slice(0, end) + gap + entry + text.slice(end);
}
