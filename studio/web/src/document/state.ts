// Everything that the page shows, as one plain value.

import type { CheckAnswer, DropAnswer, FolderFile, Job, Letters } from "../link/api";
import type { Failure } from "../link/client";
import type { Ground } from "../link/frames";
import type { CopiedKey, KeyId } from "./edits";
import type { History } from "./history";
import type { Filter } from "./rules";
import type { BrokenScene, Easing, Scene } from "./scene";
import type { Table, Value } from "./table";
import type { TimeView } from "./timescale";

/** A sentence at the top of the room, with what can be done about it. It never blocks. */
export interface Notice {
  id: string;
  tone: "info" | "warn";
  text: string;
  remedy: string;
  actions: NoticeAction[];
}

export interface NoticeAction {
  label: string;
  run: () => void;
}

export interface FileState {
  name: string;
  folder: string;
  revision: string;
  /** The text as it was saved or loaded last. */
  savedText: string;
  exists: boolean;
  files: FolderFile[];
}

export interface PictureState {
  milliseconds: number;
  exact: boolean;
  /** A better picture is on its way. */
  busy: boolean;
  failure: Failure | null;
  /** The frame that is shown, which may lag behind the playhead. */
  frame: number;
}

export type Panel = "export" | "help" | "undo" | "scenes" | null;

export interface Settings {
  /** In CSS pixels; 0 until a person chose one. */
  timelineHeight: number;
  asTime: boolean;
  snap: boolean;
  curve: boolean;
  ground: Ground;
  path: boolean;
  handles: boolean;
  safe: boolean;
  autoKey: boolean;
  loop: boolean;
  /** Of keys that are set anew and follow no other. */
  newEasing: Easing;
  folded: Record<string, boolean>;
}

export interface State {
  phase: "opening" | "ready" | "locked";
  table: Table;
  file: FileState;
  history: History;
  scene: Scene | BrokenScene;
  /** The last scene that could be read, shown while the text is broken. */
  lastScene: Scene | null;
  check: CheckAnswer | null;
  frame: number;
  selection: ReadonlySet<KeyId>;
  copiedKeys: readonly CopiedKey[];
  copiedValue: { row: number; value: Value } | null;
  /** The row whose curve is shown and that takes pasted values. */
  activeRow: number | null;
  filter: Filter;
  /** Groups that are open unless a person folded them: those that the scene uses. */
  usedGroups: ReadonlySet<string>;
  time: TimeView;
  loopRange: readonly [number, number] | null;
  playing: number;
  dropped: number;
  before: boolean;
  picture: PictureState;
  panel: Panel;
  notices: readonly Notice[];
  jobs: readonly Job[];
  /** The file that was dropped last, and what the plain reader would lose of it. */
  losses: DropAnswer | null;
  /** Fonts and hands, once they were asked for. */
  letters: Letters | null;
  connected: boolean;
  saving: boolean;
  settings: Settings;
}

export const defaultSettings: Settings = {
  timelineHeight: 0,
  asTime: false,
  snap: true,
  curve: false,
  ground: "grid",
  path: true,
  handles: true,
  safe: false,
  autoKey: false,
  loop: true,
  newEasing: "linear",
  folded: {},
};

const settingsPlace = "orbel-studio-settings";

export function loadSettings(): Settings {
  try {
    const kept = JSON.parse(localStorage.getItem(settingsPlace) ?? "{}") as Partial<Settings>;
    return { ...defaultSettings, ...kept };
  } catch {
    return defaultSettings;
  }
}

export function keepSettings(settings: Settings): void {
  localStorage.setItem(settingsPlace, JSON.stringify(settings));
}

/** The frames of the film: what the scene states, what its input has, or the first frame alone. */
export function filmRange(state: State): readonly [number, number] {
  const stated = readable(state)?.frames;
  return stated ?? state.check?.plan?.frames ?? [0, 0];
}

/** The stretch of time that shows all of the film. */
export function wholeFilm(state: State): TimeView {
  const [from, last] = filmRange(state);
  return { from, to: Math.max(last, from + 1) };
}

export function filmRate(state: State): number {
  return readable(state)?.fps ?? state.check?.plan?.fps ?? 30;
}

export function filmSize(state: State): readonly [number, number] {
  return readable(state)?.size ?? state.check?.plan?.size ?? [1280, 720];
}

/** What playback goes round in. */
export function playRange(state: State): readonly [number, number] {
  return state.loopRange ?? filmRange(state);
}

export function readable(state: State): Scene | null {
  return state.scene.fault ? state.lastScene : state.scene;
}

export function isUnsaved(state: State): boolean {
  return state.history.text !== state.file.savedText || !state.file.exists;
}

/** The picture that stands on the screen is not the exact one. */
export function isReducedPicture(state: State): boolean {
  return !state.picture.exact || state.picture.failure !== null;
}

/** The height of the timeline: a person's choice, else a share of the window. */
export function timelineHeight(state: State): number {
  const usual = Math.round(Math.min(440, Math.max(216, window.innerHeight * 0.31)));
  return state.settings.timelineHeight || usual;
}

/** The groups of which the scene states something. */
export function groupsInUse(scene: Scene | BrokenScene): Set<string> {
  return new Set(scene.fault ? [] : [...scene.tracks.values()].map((track) => track.row.group));
}
