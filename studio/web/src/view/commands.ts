// Everything that a key on the keyboard does, listed once: the page obeys it and "?" shows it.

import { keyId, partsOf, type KeyId } from "../document/edits";
import type { Session } from "../document/session";
import { playRange, readable, wholeFilm } from "../document/state";
import { interchangeable } from "../document/edits";
import { valueAt } from "../document/scene";

export interface Command {
  /** As `KeyboardEvent.key`, with "Ctrl+", "Shift+", "Alt+" in front. */
  keys: string[];
  label: string;
  group: "Play" | "Keys" | "Picture" | "Scene";
  run: (session: Session) => void;
}

function step(frames: number) {
  return (session: Session) => session.goTo(session.state.frame + frames);
}

/** Frames that carry a key of any row, ascending. */
function keyFrames(session: Session): number[] {
  const tracks = readable(session.state)?.tracks.values() ?? [];
  const frames = [...tracks].flatMap((track) => track.keys.map((key) => key.frame));
  return [...new Set(frames)].sort((a, b) => a - b);
}

function toKey(direction: 1 | -1) {
  return (session: Session) => {
    const { frame } = session.state;
    const frames = keyFrames(session).filter((each) => (each - frame) * direction > 0);
    const target = direction > 0 ? frames[0] : frames[frames.length - 1];
    if (target !== undefined) session.goTo(target);
  };
}

function playBy(direction: 1 | -1) {
  return (session: Session) => {
    const { playing } = session.state;
    const faster = playing * direction > 0 ? Math.min(8, Math.abs(playing) * 2) : 1;
    session.film.play(faster * direction);
  };
}

function allKeys(session: Session): Set<KeyId> {
  const tracks = readable(session.state)?.tracks ?? new Map();
  const ids = new Set<KeyId>();
  tracks.forEach((track) =>
    track.keys.forEach((key: { frame: number }) => ids.add(keyId(track.row.id, key.frame))),
  );
  return ids;
}

export function deleteSelection(session: Session): void {
  const { selection } = session.state;
  if (selection.size === 0) return;
  session.changeKeys(
    selection.size === 1 ? "delete a key" : "delete keys",
    session.edit().removeKeys(selection),
  );
}

export function copy(session: Session): void {
  const { selection, activeRow, frame, table } = session.state;
  if (selection.size > 0) {
    return session.update({ copiedKeys: session.edit().copyKeys(selection), copiedValue: null });
  }
  const scene = readable(session.state);
  const row = activeRow === null ? undefined : table.row(activeRow);
  if (!scene || !row) return;
  session.update({
    copiedValue: { row: row.id, value: valueAt(scene, row, frame) },
    copiedKeys: [],
  });
}

export function paste(session: Session): void {
  const { copiedKeys, copiedValue, activeRow, table, frame } = session.state;
  const row = activeRow === null ? undefined : table.row(activeRow);
  if (copiedKeys.length > 0) {
    const onto = session.state.selection.size > 0 ? undefined : row;
    return session.changeKeys("paste keys", session.edit().pasteKeys(copiedKeys, frame, onto));
  }
  const from = copiedValue && table.row(copiedValue.row);
  if (copiedValue && from && row && interchangeable(from, row)) {
    session.setValue(row, copiedValue.value, `paste ${row.label}`);
  }
}

function keyOnActiveRow(session: Session): void {
  const { activeRow, table, frame } = session.state;
  const row = activeRow === null ? undefined : table.row(activeRow);
  if (row) toggleKey(session, row.id, frame);
}

/** A key on the frame, or the one that is there away. */
export function toggleKey(session: Session, id: number, frame: number): void {
  const row = session.state.table.row(id);
  if (!row) return;
  const edit = session.edit();
  const there = edit.keysOf(row).some((key) => key.frame === frame);
  if (there) session.change(`delete key of ${row.label}`, edit.removeKey(row, frame));
  else session.change(`set key of ${row.label}`, edit.addKey(row, frame));
}

function moveSelection(frames: number) {
  return (session: Session) => {
    const { selection } = session.state;
    if (selection.size === 0) return;
    session.changeKeys("move keys", session.edit().moveKeys(selection, frames));
  };
}

function markLoop(edge: 0 | 1) {
  return (session: Session) => {
    const { frame } = session.state;
    const [first, last] = playRange(session.state);
    const range = edge === 0 ? [frame, Math.max(last, frame)] : [Math.min(first, frame), frame];
    session.update({ loopRange: range as [number, number] });
  };
}

export function fitTime(session: Session): void {
  const { selection } = session.state;
  const whole = wholeFilm(session.state);
  const frames = [...selection].map((id) => partsOf(id).frame);
  const chosen = new Set(frames).size > 1;
  const time = chosen ? { from: Math.min(...frames), to: Math.max(...frames) } : whole;
  session.update({ time });
}

function toggleSetting(
  name: "path" | "handles" | "safe" | "autoKey" | "snap" | "curve" | "loop" | "asTime",
) {
  return (session: Session) => session.setSettings({ [name]: !session.state.settings[name] });
}

/** What the viewport listens to; it alone knows its zoom. */
export const zoomEvents = new EventTarget();

function zoom(kind: string) {
  return () => zoomEvents.dispatchEvent(new Event(kind));
}

function focusSearch(): void {
  const find = document.querySelector<HTMLInputElement>("#find");
  find?.focus();
  find?.select();
}

/** Into the field of a row, or its menu or switch, where it is in sight of the filters. */
export function focusRow(place: Element | null): void {
  place?.querySelector<HTMLElement>("input, select, [role=switch]")?.focus();
}

function escape(session: Session): void {
  if (session.state.panel) session.update({ panel: null });
  else if (session.state.selection.size > 0) session.select(new Set());
  else if (session.state.filter.search) session.search("");
  else if (document.activeElement instanceof HTMLElement) document.activeElement.blur();
}

export const commands: Command[] = [
  { keys: [" "], label: "Play, pause", group: "Play", run: (session) => session.film.toggle() },
  { keys: ["j"], label: "Play backward; again: faster", group: "Play", run: playBy(-1) },
  { keys: ["k"], label: "Stop", group: "Play", run: (session) => session.film.stop() },
  { keys: ["l"], label: "Play forward; again: faster", group: "Play", run: playBy(1) },
  { keys: ["ArrowLeft"], label: "One frame back", group: "Play", run: step(-1) },
  { keys: ["ArrowRight"], label: "One frame on", group: "Play", run: step(1) },
  { keys: ["Shift+ArrowLeft"], label: "Ten frames back", group: "Play", run: step(-10) },
  { keys: ["Shift+ArrowRight"], label: "Ten frames on", group: "Play", run: step(10) },
  {
    keys: ["Home"],
    label: "First frame",
    group: "Play",
    run: (session) => session.goTo(playRange(session.state)[0]),
  },
  {
    keys: ["End"],
    label: "Last frame",
    group: "Play",
    run: (session) => session.goTo(playRange(session.state)[1]),
  },
  {
    keys: ["g"],
    label: "Go to a frame",
    group: "Play",
    run: () => document.querySelector<HTMLElement>(".clock input")?.focus(),
  },
  { keys: ["i"], label: "Loop starts here", group: "Play", run: markLoop(0) },
  { keys: ["o"], label: "Loop ends here", group: "Play", run: markLoop(1) },
  { keys: ["Shift+L"], label: "Loop on, off", group: "Play", run: toggleSetting("loop") },
  { keys: [","], label: "Key before", group: "Keys", run: toKey(-1) },
  { keys: ["."], label: "Key after", group: "Keys", run: toKey(1) },
  {
    keys: ["Enter"],
    label: "Type a value for the row last used",
    group: "Keys",
    run: () => focusRow(document.querySelector(".row.active")),
  },
  { keys: ["s"], label: "Key on the row last used", group: "Keys", run: keyOnActiveRow },
  { keys: ["a"], label: "Auto-key on, off", group: "Keys", run: toggleSetting("autoKey") },
  {
    keys: ["Delete", "Backspace"],
    label: "Delete the selected keys",
    group: "Keys",
    run: deleteSelection,
  },
  {
    keys: ["Alt+ArrowLeft"],
    label: "Selected keys one frame back",
    group: "Keys",
    run: moveSelection(-1),
  },
  {
    keys: ["Alt+ArrowRight"],
    label: "Selected keys one frame on",
    group: "Keys",
    run: moveSelection(1),
  },
  {
    keys: ["Ctrl+a"],
    label: "Select every key",
    group: "Keys",
    run: (session) => session.select(allKeys(session)),
  },
  { keys: ["Ctrl+c"], label: "Copy keys, or the row's value", group: "Keys", run: copy },
  { keys: ["Ctrl+v"], label: "Paste at the playhead", group: "Keys", run: paste },
  { keys: ["c"], label: "Keys as a curve", group: "Keys", run: toggleSetting("curve") },
  {
    keys: ["Shift+F"],
    label: "All of the film, or the selection, in the timeline",
    group: "Keys",
    run: fitTime,
  },
  { keys: ["f"], label: "Fit the picture", group: "Picture", run: zoom("fit") },
  { keys: ["1"], label: "Picture at 100 %", group: "Picture", run: zoom("full") },
  { keys: ["+", "="], label: "Zoom in", group: "Picture", run: zoom("in") },
  { keys: ["-"], label: "Zoom out", group: "Picture", run: zoom("out") },
  {
    keys: ["b"],
    label: "Before, after",
    group: "Picture",
    run: (session) => session.update({ before: !session.state.before }),
  },
  { keys: ["p"], label: "Path on, off", group: "Picture", run: toggleSetting("path") },
  { keys: ["h"], label: "Handles on, off", group: "Picture", run: toggleSetting("handles") },
  { keys: ["Shift+S"], label: "Safe areas on, off", group: "Picture", run: toggleSetting("safe") },
  { keys: ["/", "Ctrl+f"], label: "Find a parameter", group: "Scene", run: focusSearch },
  { keys: ["Ctrl+s"], label: "Save", group: "Scene", run: (session) => void session.keeper.save() },
  { keys: ["Ctrl+z"], label: "Undo", group: "Scene", run: (session) => session.undo() },
  {
    keys: ["Ctrl+Shift+Z", "Ctrl+y"],
    label: "Redo",
    group: "Scene",
    run: (session) => session.redo(),
  },
  {
    keys: ["Ctrl+e"],
    label: "Export",
    group: "Scene",
    run: (session) => session.update({ panel: "export" }),
  },
  {
    keys: ["?"],
    label: "These shortcuts",
    group: "Scene",
    run: (session) => session.update({ panel: session.state.panel === "help" ? null : "help" }),
  },
  { keys: ["Escape"], label: "Close, deselect", group: "Scene", run: escape },
];

const byKeys = new Map(commands.flatMap((command) => command.keys.map((keys) => [keys, command])));

/** The name of a press, as in `Command.keys`. */
export function pressName(event: KeyboardEvent): string {
  const ctrl = event.ctrlKey || event.metaKey ? "Ctrl+" : "";
  const alt = event.altKey ? "Alt+" : "";
  const letter = event.key.length > 1 || /[a-z]/i.test(event.key);
  const shift = event.shiftKey && letter ? "Shift+" : "";
  return ctrl + alt + shift + event.key;
}

const typing = "input, textarea, select, [contenteditable]";

/** Obeys a press. Fields keep what they need for typing, sliders their arrows. */
export function obey(session: Session, event: KeyboardEvent): void {
  if (event.defaultPrevented) return;
  const name = pressName(event);
  const target = event.target instanceof Element ? event.target : null;
  const inField = target?.closest(typing) !== null && target !== null;
  if (inField && !["Ctrl+s", "Ctrl+e", "Escape"].includes(name)) return;
  if (target?.closest("button, [role=button], summary, a") && (name === " " || name === "Enter"))
    return;
  // Text that is marked on the page is copied as text. What is left marked in a field that was
  // left counts as collapsed.
  if (name === "Ctrl+c" && getSelection()?.isCollapsed === false) return;
  const command = byKeys.get(name);
  if (!command) return;
  event.preventDefault();
  command.run(session);
}
