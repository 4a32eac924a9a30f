// The parameter table as the server sends it, and how names in a scene find their row.

export type RowKind =
  | "float"
  | "angle"
  | "toggle"
  | "colour"
  | "point"
  | "menu"
  | "shape"
  | "presets";

/** A value in the page's own terms: menus are the index of their entry. */
export type Value = number | boolean | readonly number[] | string;

export interface Row {
  id: number;
  name: string;
  label: string;
  group: string;
  kind: RowKind;
  default: Value;
  min?: number;
  max?: number;
  sliderMin?: number;
  sliderMax?: number;
  step: number;
  unit: string;
  entries?: string[];
  animatable: boolean;
}

export interface Rule {
  parameter: number;
  /** The values at which the rows mean something. */
  values: number[];
  rows: number[];
}

export interface BuiltInShape {
  name: string;
  file: string;
  paths: string[];
  size: [number, number];
}

export interface Ending {
  ending: string;
  label: string;
  film: boolean;
  alpha: boolean;
}

export interface TableData {
  version: string;
  rows: Row[];
  groups: { name: string; open: boolean }[];
  rules: Rule[];
  shapes: BuiltInShape[];
  formats: string[];
  easings: string[];
  endings: Ending[];
}

/** Rows under one heading of the inspector, in the table's order. */
export interface Section {
  title: string;
  open: boolean;
  rows: Row[];
}

export class Table {
  readonly rows: readonly Row[];
  readonly #byId = new Map<number, Row>();
  readonly #byName = new Map<string, Row | null>();

  constructor(readonly data: TableData) {
    this.rows = data.rows;
    for (const row of data.rows) {
      this.#byId.set(row.id, row);
      // A name from a group may stand alone where no other parameter has it.
      this.#byName.set(row.label, this.#byName.has(row.label) ? null : row);
    }
    for (const row of data.rows) {
      this.#byName.set(row.name, row);
    }
  }

  row(id: number): Row | undefined {
    return this.#byId.get(id);
  }

  /** The row that a key of "parameters" names: a full name, a lone one or an identifier. */
  find(name: string): Row | undefined {
    return /^\d+$/.test(name)
      ? this.#byId.get(Number(name))
      : (this.#byName.get(name) ?? undefined);
  }

  named(name: string): Row {
    const row = this.find(name);
    if (!row) throw new Error(`The program knows no parameter ${name}.`);
    return row;
  }

  /** Groups in order; rows that stand in none come under a heading of their own. */
  sections(): Section[] {
    const sections: Section[] = [];
    for (const row of this.rows) {
      const title = row.group || (sections.length === 0 ? "Stroke" : "Compositing");
      let last = sections[sections.length - 1];
      if (!row.group && last && (last.title === "Stroke" || last.title === "Compositing")) {
        last.rows.push(row);
        continue;
      }
      if (!last || last.title !== title) {
        const open = this.data.groups.find((group) => group.name === row.group)?.open ?? true;
        last = { title, open, rows: [] };
        sections.push(last);
      }
      last.rows.push(row);
    }
    return sections;
  }
}

/** What the row's default is in the page's own terms. */
export function defaultOf(row: Row): Value {
  return canonical(row, row.default) ?? (row.kind === "shape" ? "" : 0);
}

/** A value as a scene writes it turned into the page's terms; nothing when it is of another kind. */
export function canonical(row: Row, written: unknown): Value | undefined {
  switch (row.kind) {
    case "float":
    case "angle":
      return typeof written === "number" ? written : undefined;
    case "toggle":
      return typeof written === "boolean" ? written : undefined;
    case "colour":
      return numbers(written, 3);
    case "point":
      return numbers(written, 2);
    case "menu":
    case "presets":
      return entryIndex(row, written);
    case "shape":
      return typeof written === "string" ? written : undefined;
  }
}

function numbers(written: unknown, count: number): readonly number[] | undefined {
  const fits =
    Array.isArray(written) &&
    written.length === count &&
    written.every((item: unknown) => typeof item === "number");
  return fits ? (written as number[]) : undefined;
}

function entryIndex(row: Row, written: unknown): number | undefined {
  if (typeof written === "number") {
    return Number.isInteger(written) && written >= 0 ? written : undefined;
  }
  const index = (row.entries ?? []).indexOf(String(written));
  return typeof written === "string" && index >= 0 ? index : undefined;
}

export function sameValue(a: Value, b: Value): boolean {
  if (typeof a === "object" && typeof b === "object") {
    return a.length === b.length && a.every((item, index) => item === b[index]);
  }
  return a === b;
}

/** The value held inside the row's declared range. */
export function clampToRow(row: Row, value: number): number {
  return Math.min(row.max ?? Infinity, Math.max(row.min ?? -Infinity, value));
}

/** Whether the row may move between keys rather than switch. */
export function isContinuous(row: Row): boolean {
  return (
    row.kind === "float" || row.kind === "angle" || row.kind === "colour" || row.kind === "point"
  );
}
