// What a scene's text says, read leniently: what cannot be understood is left alone and told by the
// server's check.

import { items, member, members, parseText, plain, type Node, type TextFault } from "./jsonText";
import { canonical, defaultOf, type Row, type Table, type Value } from "./table";

export type Easing = "linear" | "hold" | "ease" | "ease-in" | "ease-out";

/** One key of a track. `node` is where it stands in the text; absent for a key just made. */
export interface Key {
  frame: number;
  value: Value;
  easing: Easing | null;
  node?: Node;
}

/** What a scene states for one parameter: a constant, or keys with ascending frames. */
export interface Track {
  row: Row;
  /** The key under which it stands in "parameters". */
  name: string;
  node: Node;
  constant: Value | null;
  keys: readonly Key[];
}

export type SceneInput =
  | { kind: "none" }
  | { kind: "color"; rgba: readonly number[] }
  | { kind: "raw"; file: string }
  /** `numbered`: a sequence, `first` the number of its first file where the scene states it. */
  | { kind: "file"; file: string; numbered: boolean; first: number | null };

/** What a scene states about a conversion; what it leaves out is absent. */
export type ShapeOptions = Readonly<Record<string, unknown>>;

export type SceneShape =
  | { kind: "none" }
  | { kind: "file"; file: string }
  | { kind: "import"; file: string; options: ShapeOptions }
  | { kind: "text"; text: string; options: ShapeOptions };

export interface Scene {
  root: Node;
  fault: null;
  size: readonly [number, number] | null;
  fps: number | null;
  frames: readonly [number, number] | null;
  format: string;
  pixelAspect: number;
  renderScale: readonly [number, number];
  input: SceneInput;
  shape: SceneShape;
  tracks: ReadonlyMap<number, Track>;
}

export interface BrokenScene {
  fault: TextFault;
}

export function readScene(text: string, table: Table): Scene | BrokenScene {
  const { root, fault } = parseText(text);
  if (fault) return { fault };
  if (root.type !== "object") {
    return { fault: { message: "a scene is one object in braces", line: 1, column: 1 } };
  }
  const aspect = valueOf(root, "pixelAspect");
  const format = valueOf(root, "format");
  return {
    root,
    fault: null,
    size: pair(valueOf(root, "size")),
    fps: positive(valueOf(root, "fps")),
    frames: pair(valueOf(root, "frames")),
    format: typeof format === "string" ? format : "rgba8",
    pixelAspect: positive(aspect) ?? 1,
    renderScale: pair(valueOf(root, "renderScale")) ?? [1, 1],
    input: readInput(valueOf(root, "input")),
    shape: readShape(valueOf(root, "shape")),
    tracks: readTracks(root, table),
  };
}

function valueOf(root: Node, key: string): unknown {
  const found = member(root, key);
  return found ? plain(found.value) : undefined;
}

function positive(value: unknown): number | null {
  return typeof value === "number" && value > 0 ? value : null;
}

function pair(value: unknown): readonly [number, number] | null {
  if (!Array.isArray(value) || value.length !== 2) return null;
  const [a, b] = value as unknown[];
  return typeof a === "number" && typeof b === "number" ? [a, b] : null;
}

function readInput(value: unknown): SceneInput {
  if (typeof value !== "object" || value === null) return { kind: "none" };
  const { color, raw, file, first } = value as Record<string, unknown>;
  if (Array.isArray(color)) return { kind: "color", rgba: color as number[] };
  if (typeof raw === "string") return { kind: "raw", file: raw };
  if (typeof file !== "string") return { kind: "none" };
  const numbered = /%\d*d/.test(file.replaceAll("%%", ""));
  return { kind: "file", file, numbered, first: typeof first === "number" ? first : null };
}

function readShape(value: unknown): SceneShape {
  if (typeof value === "string" && value) return { kind: "file", file: value };
  if (typeof value !== "object" || value === null) return { kind: "none" };
  const options = value as ShapeOptions;
  const { file, text, import: choices } = options;
  if (typeof file === "string") {
    const stated = typeof choices === "object" && choices !== null ? choices : {};
    return { kind: "import", file, options: stated as ShapeOptions };
  }
  return typeof text === "string" ? { kind: "text", text, options } : { kind: "none" };
}

/** The shape as a row shows it: a plain file by its name alone. */
function shapeWords(shape: SceneShape): string {
  switch (shape.kind) {
    case "none":
      return "";
    case "file":
      return shape.file;
    case "import":
      return `${shape.file}, imported`;
    case "text":
      return `“${shape.text}”`;
  }
}

function readTracks(root: Node, table: Table): Map<number, Track> {
  const tracks = new Map<number, Track>();
  for (const item of members(member(root, "parameters")?.value)) {
    const row = table.find(item.key);
    if (row && !tracks.has(row.id)) {
      tracks.set(row.id, readTrack(row, item.key, item.value));
    }
  }
  return tracks;
}

function readTrack(row: Row, name: string, node: Node): Track {
  const keys = member(node, "keys")?.value;
  if (keys) {
    const read = items(keys).flatMap((item) => readKey(row, item));
    return { row, name, node, constant: null, keys: read };
  }
  return { row, name, node, constant: canonical(row, plain(node)) ?? null, keys: [] };
}

const easings: readonly string[] = ["linear", "hold", "ease", "ease-in", "ease-out"];

function readKey(row: Row, node: Node): Key[] {
  const [frame, written, easing] = items(node).map(plain);
  const value = canonical(row, written);
  if (typeof frame !== "number" || value === undefined) return [];
  const named = typeof easing === "string" && easings.includes(easing) ? (easing as Easing) : null;
  return [{ frame, value, easing: named, node }];
}

/** The value of a row at a frame: what the keys say, the constant, or the default. */
export function valueAt(scene: Scene, row: Row, frame: number): Value {
  if (row.kind === "shape") return shapeWords(scene.shape);
  const track = scene.tracks.get(row.id);
  if (!track) return defaultOf(row);
  if (track.keys.length > 0) return valueOfKeys(row, track.keys, frame);
  return track.constant ?? defaultOf(row);
}

/** The value between keys: held outside them, moved along the earlier key's easing inside. */
export function valueOfKeys(row: Row, keys: readonly Key[], frame: number): Value {
  let index = 0;
  while (index < keys.length && keys[index]!.frame <= frame) index++;
  const before = keys[index - 1];
  const after = keys[index];
  if (!before) return after?.value ?? defaultOf(row);
  if (!after || before.frame === frame) return before.value;
  if (steps(row)) return before.value;
  const share = (frame - before.frame) / (after.frame - before.frame);
  return mix(before.value, after.value, eased(before.easing, share));
}

/** How far the motion has come at share `s` of the stretch, both 0 to 1. */
export function eased(easing: Easing | null, s: number): number {
  switch (easing) {
    case "hold":
      return 0;
    case "ease":
      return s * s * (3 - 2 * s);
    case "ease-in":
      return s * s;
    case "ease-out":
      return 1 - (1 - s) * (1 - s);
    default:
      return s;
  }
}

function mix(a: Value, b: Value, share: number): Value {
  if (typeof a === "object" && typeof b === "object") {
    return a.map((item, index) => item + ((b[index] ?? item) - item) * share);
  }
  return typeof a === "number" && typeof b === "number" ? a + (b - a) * share : a;
}

/** Menus and switches hold the earlier key: their numbers must not be mixed. */
export function steps(row: Row): boolean {
  return row.kind === "menu" || row.kind === "presets" || row.kind === "toggle";
}

export function isAnimated(scene: Scene, row: Row): boolean {
  return (scene.tracks.get(row.id)?.keys.length ?? 0) > 0;
}

export function isStated(scene: Scene, row: Row): boolean {
  return row.kind === "shape" ? scene.shape.kind !== "none" : scene.tracks.has(row.id);
}
