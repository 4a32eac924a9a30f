// Which rows mean anything at the moment: the enabling rules, and what search and filters leave.

import { isAnimated, isStated, valueAt, type Scene } from "./scene";
import type { Row, Table } from "./table";

/** Identifiers of the rows that a rule switches off at the frame. */
export function disabledRows(scene: Scene, table: Table, frame: number): Set<number> {
  const off = new Set<number>();
  for (const rule of table.data.rules) {
    const master = table.row(rule.parameter);
    if (!master) continue;
    const value = Number(valueAt(scene, master, frame));
    if (!rule.values.includes(value)) rule.rows.forEach((id) => off.add(id));
  }
  return off;
}

export interface Filter {
  search: string;
  changed: boolean;
  animated: boolean;
}

/** Whether the inspector shows the row: every word of the search occurs in its name. */
export function passes(filter: Filter, scene: Scene, row: Row): boolean {
  if (filter.animated && !isAnimated(scene, row)) return false;
  if (filter.changed && !isStated(scene, row)) return false;
  const name = `${row.group} ${row.label}`.toLowerCase();
  return filter.search
    .toLowerCase()
    .split(/[\s/]+/)
    .every((word) => name.includes(word));
}

export function isFiltering(filter: Filter): boolean {
  return filter.search.trim() !== "" || filter.changed || filter.animated;
}
