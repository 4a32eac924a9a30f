// What a person does to a scene: each edit takes the text and gives the new text.

import { member, setMember } from "./jsonText";
import { readScene, valueAt, type Easing, type Key, type Scene } from "./scene";
import { defaultOf, isContinuous, sameValue, type Row, type Table, type Value } from "./table";
import { removeRow, tidy, writeConstant, writeHeader, writeKeys } from "./writing";

/** A key in the selection: the row's identifier and the key's frame. */
export type KeyId = `${number}@${number}`;

export function keyId(row: number, frame: number): KeyId {
  return `${row}@${frame}`;
}

export function partsOf(id: KeyId): { row: number; frame: number } {
  const at = id.indexOf("@");
  return { row: Number(id.slice(0, at)), frame: Number(id.slice(at + 1)) };
}

export interface KeyEdit {
  text: string;
  selection: Set<KeyId>;
}

/** One edit of a scene's text. A text that is no scene comes back as it was. */
export class Editor {
  readonly scene: Scene | null;

  /** `newEasing` is that of keys that go on from no other. */
  constructor(
    readonly text: string,
    readonly table: Table,
    private readonly newEasing: Easing = "linear",
  ) {
    const read = readScene(text, table);
    this.scene = read.fault ? null : read;
  }

  /** The row takes the value at the frame: as a key where it has keys or `asKey` says so. */
  setValue(row: Row, frame: number, value: Value, asKey: boolean): string {
    if (!this.scene) return this.text;
    if (row.kind === "shape") return this.setShape(String(value));
    const keys = this.keysOf(row);
    if (keys.length === 0 && !asKey) return writeConstant(this.text, this.scene, row, value);
    return writeKeys(this.text, this.scene, row, withKey(keys, frame, value, this.newEasing));
  }

  keysOf(row: Row): readonly Key[] {
    return this.scene?.tracks.get(row.id)?.keys ?? [];
  }

  /** A key at the frame with the value that the row has there anyhow. */
  addKey(row: Row, frame: number): string {
    if (!this.scene) return this.text;
    const value = valueAt(this.scene, row, frame);
    const shown = typeof value === "number" ? tidy(value) : value;
    return this.setValue(row, frame, shown, true);
  }

  /** Takes the key away; the last one leaves its value behind as a constant. */
  removeKey(row: Row, frame: number): string {
    return this.removeKeys(new Set([keyId(row.id, frame)])).text;
  }

  /** Keys away, the value at the frame stays. */
  removeAllKeys(row: Row, frame: number): string {
    if (!this.scene) return this.text;
    const value = valueAt(this.scene, row, frame);
    return writeConstant(this.text, this.scene, row, value);
  }

  /** Back to the default. A row with keys keeps them and takes the default at the frame. */
  reset(row: Row, frame: number): string {
    if (!this.scene) return this.text;
    if (row.kind === "shape") return this.setShape("");
    if (this.keysOf(row).length > 0) return this.setValue(row, frame, defaultOf(row), true);
    return removeRow(this.text, this.scene, row);
  }

  /** A drawing converted when the scene is read, with the importer's own choices. */
  importShape(file: string): string {
    return this.writeShape({ file, import: {} });
  }

  /** A text as shape; font and what else was stated of a text stay. */
  writeText(text: string): string {
    return this.scene?.shape.kind === "text"
      ? this.setShapeOption("text", text)
      : this.writeShape({ text });
  }

  /** What is stated of the conversion of the drawing or the text; null takes it out. */
  setShapeOption(key: string, value: unknown): string {
    const shape = member(this.scene?.root, "shape")?.value;
    const place = this.scene?.shape.kind === "import" ? member(shape, "import")?.value : shape;
    if (place?.type !== "object") return this.text;
    return setMember(this.text, place, key, value === null ? null : spellHeader(value));
  }

  setShape(file: string): string {
    return this.writeShape(file || null);
  }

  private writeShape(shape: string | object | null): string {
    const text = this.setHeader("shape", shape);
    if (shape === null) return text;
    // A built-in shape would win over it.
    const next = new Editor(text, this.table);
    const presets = this.table.find("Presets");
    return next.scene && presets ? removeRow(text, next.scene, presets) : text;
  }

  setHeader(key: string, value: unknown): string {
    if (!this.scene) return this.text;
    const written = value === null ? null : spellHeader(value);
    return writeHeader(this.text, this.scene, key, written);
  }

  removeKeys(ids: ReadonlySet<KeyId>): KeyEdit {
    const text = this.eachRow(ids, (row, keys) => {
      const left = keys.filter((key) => !ids.has(keyId(row.id, key.frame)));
      return left.length > 0 ? left : null;
    });
    return { text, selection: new Set() };
  }

  moveKeys(ids: ReadonlySet<KeyId>, delta: number): KeyEdit {
    return this.placeKeys(ids, (frame) => tidy(frame + delta));
  }

  /** Stretches in time about a frame that stays. */
  stretchKeys(ids: ReadonlySet<KeyId>, pivot: number, factor: number): KeyEdit {
    return this.placeKeys(ids, (frame) => Math.round(pivot + (frame - pivot) * factor));
  }

  /** Selected keys at new frames; one that lands on another key takes its place. */
  placeKeys(ids: ReadonlySet<KeyId>, place: (frame: number) => number): KeyEdit {
    const selection = new Set<KeyId>();
    const text = this.eachRow(ids, (row, keys) => {
      const moved = new Map<number, Key>();
      for (const key of keys.filter((each) => ids.has(keyId(row.id, each.frame)))) {
        moved.set(place(key.frame), { ...key, frame: place(key.frame) });
      }
      moved.forEach((_, frame) => selection.add(keyId(row.id, frame)));
      const rest = keys.filter(
        (key) => !ids.has(keyId(row.id, key.frame)) && !moved.has(key.frame),
      );
      return [...rest, ...moved.values()];
    });
    return { text, selection };
  }

  setEasing(ids: ReadonlySet<KeyId>, easing: Easing): string {
    const named = easing === "linear" ? null : easing;
    return this.eachRow(ids, (row, keys) =>
      keys.map((key) => (ids.has(keyId(row.id, key.frame)) ? { ...key, easing: named } : key)),
    );
  }

  setKeyValue(row: Row, frame: number, value: Value): string {
    if (!this.scene) return this.text;
    const keys = withKey(this.keysOf(row), frame, value, this.newEasing);
    return writeKeys(this.text, this.scene, row, keys);
  }

  copyKeys(ids: ReadonlySet<KeyId>): CopiedKey[] {
    const first = Math.min(...[...ids].map((id) => partsOf(id).frame));
    return [...ids].flatMap((id) => {
      const { row, frame } = partsOf(id);
      const found = this.scene?.tracks.get(row)?.keys.find((key) => key.frame === frame);
      return found
        ? [{ row, offset: frame - first, value: found.value, easing: found.easing }]
        : [];
    });
  }

  /** Copied keys again, their first at the frame. With `onto`, one row's keys go to that row. */
  pasteKeys(copied: readonly CopiedKey[], frame: number, onto?: Row): KeyEdit {
    const selection = new Set<KeyId>();
    const rows = new Set(copied.map((key) => key.row));
    const single = rows.size === 1 ? onto : undefined;
    let text = this.text;
    for (const id of rows) {
      const source = this.table.row(id);
      const row = single ?? source;
      if (!source || !row || !interchangeable(source, row)) continue;
      const next = new Editor(text, this.table);
      const fresh = copied.filter((key) => key.row === id).map((key) => pasted(key, frame));
      fresh.forEach((key) => selection.add(keyId(row.id, key.frame)));
      const kept = next.keysOf(row).filter((key) => !fresh.some((one) => one.frame === key.frame));
      if (next.scene) text = writeKeys(text, next.scene, row, [...kept, ...fresh]);
    }
    return { text, selection };
  }

  /** Rewrites the keys of every row that the selection touches; null leaves a constant. */
  private eachRow(
    ids: ReadonlySet<KeyId>,
    change: (row: Row, keys: readonly Key[]) => readonly Key[] | null,
  ): string {
    let text = this.text;
    for (const id of new Set([...ids].map((each) => partsOf(each).row))) {
      const editor = new Editor(text, this.table);
      const row = this.table.row(id);
      if (!row || !editor.scene) continue;
      const keys = editor.keysOf(row);
      if (keys.length === 0) continue;
      const changed = change(row, keys);
      text = changed
        ? writeKeys(text, editor.scene, row, changed)
        : writeConstant(text, editor.scene, row, keys[0]!.value);
    }
    return text;
  }
}

export interface CopiedKey {
  row: number;
  offset: number;
  value: Value;
  easing: Easing | null;
}

function pasted(key: CopiedKey, frame: number): Key {
  return { frame: tidy(frame + key.offset), value: key.value, easing: key.easing };
}

function withKey(keys: readonly Key[], frame: number, value: Value, fresh: Easing): Key[] {
  const found = keys.find((key) => key.frame === frame);
  if (found) return keys.map((key) => (key === found ? { ...key, value } : key));
  const before = [...keys].reverse().find((key) => key.frame < frame);
  // A key set inside a stretch goes on as the stretch did.
  const inside = before && before !== keys[keys.length - 1];
  const easing = inside ? before.easing : fresh;
  return [...keys, { frame, value, easing: easing === "linear" ? null : easing }];
}

function spellHeader(value: unknown): string {
  if (Array.isArray(value)) return `[${value.map(spellHeader).join(", ")}]`;
  if (typeof value === "object" && value !== null) {
    const entries = Object.entries(value).map(
      ([key, item]) => `${JSON.stringify(key)}: ${spellHeader(item)}`,
    );
    return `{${entries.join(", ")}}`;
  }
  return JSON.stringify(value);
}

/** Whether a value of one row means something in the other. */
export function interchangeable(from: Row, to: Row): boolean {
  const numeric = (row: Row) => row.kind === "float" || row.kind === "angle";
  if (numeric(from) && numeric(to)) return true;
  if (from.kind !== to.kind || from.kind === "shape") return false;
  return isContinuous(from) || from.id === to.id || from.kind === "toggle";
}

/** Whether the row's value at the frame is its default. */
export function isDefault(scene: Scene, row: Row, frame: number): boolean {
  return sameValue(valueAt(scene, row, frame), defaultOf(row));
}
