// The studio as a whole: holds the state, applies what a person does, and keeps the server told.

import { Api, type SceneAnswer } from "../link/api";
import { Client, failureOf, LinkError } from "../link/client";
import { listen, type ServerEvent } from "../link/events";
import { FrameLink } from "../link/frames";
import { Newest } from "../link/newest";
import { Editor, type KeyEdit, type KeyId } from "./edits";
import { Film } from "./film";
import { record, redo, redoName, startHistory, undo, undoName, type History } from "./history";
import { Keeper } from "./keeper";
import { PictureSource } from "./picture";
import { readScene, valueAt } from "./scene";
import {
  filmRange,
  groupsInUse,
  wholeFilm,
  keepSettings,
  loadSettings,
  type Notice,
  type NoticeAction,
  type Settings,
  type State,
} from "./state";
import { isContinuous, sameValue, Table, type Row, type Value } from "./table";
import { revealing, type TimeView } from "./timescale";

/** Where a tab keeps the name of its scene, for when it is loaded again. */
const scenePlace = "orbel-scene";

/** How long nothing may change before the server checks the scene, in milliseconds. */
const checkPause = 80;

export class Session {
  readonly client = new Client();
  readonly api = new Api(this.client, () => this.state.file.name);
  readonly frames = new FrameLink(this.client, () => this.state.file.name);
  readonly picture = new PictureSource(
    this.frames,
    (pixels) => {
      const { milliseconds, exact, frame } = pixels;
      const busy = !this.picture.settles(pixels);
      this.update({ picture: { milliseconds, exact, frame, busy, failure: null } });
    },
    (failure, lost) => {
      if (lost) this.lost();
      this.update({ picture: { ...this.state.picture, busy: false, failure } });
    },
    () => this.update({ picture: { ...this.state.picture, busy: true } }),
  );
  readonly film = new Film(this);
  readonly keeper = new Keeper(this);
  state: State;
  #listeners = new Set<() => void>();
  #checkPause: ReturnType<typeof setTimeout> | undefined;
  #gestures = 0;
  #gesture: number | null = null;
  readonly #checks = new Newest(
    (text: string) => this.api.check(text),
    (check) => this.update({ check }),
    () => undefined,
  );

  constructor() {
    this.state = emptyState();
  }

  subscribe(listener: () => void): () => void {
    this.#listeners.add(listener);
    return () => this.#listeners.delete(listener);
  }

  update(part: Partial<State>): void {
    this.state = { ...this.state, ...part };
    this.#listeners.forEach((listener) => listener());
  }

  setSettings(part: Partial<Settings>): void {
    const settings = { ...this.state.settings, ...part };
    keepSettings(settings);
    this.update({ settings });
  }

  // ---- Opening

  /** Opens with the key of the address, or with the token that this tab kept. */
  async start(key: string | null): Promise<void> {
    try {
      if (key) await this.client.open(key);
      const kept = key ? null : sessionStorage.getItem(scenePlace);
      const [table, scene] = await Promise.all([
        this.api.table(),
        kept ? this.api.openScene(kept).catch(() => this.api.scene()) : this.api.scene(),
      ]);
      this.update({ table: new Table(table) });
      this.load(scene);
      void listen(
        this.client,
        (event) => this.hear(event),
        (up, reason) => this.line(up, reason),
      );
    } catch (reason) {
      this.update({ phase: "locked" });
      this.tell("locked", failureOf(reason).error, failureOf(reason).remedy);
    }
  }

  /** A new key while the page is open: the server was started again. The work stays. */
  async reopen(key: string): Promise<void> {
    if (this.state.phase !== "ready") return this.start(key);
    try {
      await this.client.open(key);
      this.line(true);
    } catch (reason) {
      this.fail("link", reason);
    }
  }

  /** Shows a scene that the server sent. */
  load(answer: SceneAnswer): void {
    const { name, folder, revision, exists, files, text, journal } = answer;
    this.film.stop();
    this.picture.stale();
    this.update({
      phase: "ready",
      file: { name, folder, revision, exists, files, savedText: text },
      selection: new Set(),
      loopRange: null,
      check: null,
      lastScene: null,
      panel: null,
      losses: null,
    });
    this.keepName();
    this.setHistory(startHistory(text));
    this.update({ usedGroups: groupsInUse(this.state.scene) });
    this.update({ frame: filmRange(this.state)[0], time: wholeFilm(this.state) });
    this.keeper.offerJournal(text, journal);
  }

  /** A tab that is loaded again goes on with the same scene. */
  keepName(): void {
    sessionStorage.setItem(scenePlace, this.state.file.name);
  }

  // ---- Changing the text

  get text(): string {
    return this.state.history.text;
  }

  edit(): Editor {
    return this.editOf(this.text);
  }

  editOf(text: string): Editor {
    return new Editor(text, this.state.table, this.state.settings.newEasing);
  }

  private setHistory(history: History): void {
    const scene = readScene(history.text, this.state.table);
    const lastScene = scene.fault ? this.state.lastScene : scene;
    const whole = wholeFilm(this.state);
    this.update({ history, scene, lastScene });
    this.keepWhole(whole);
    clearTimeout(this.#checkPause);
    this.#checkPause = setTimeout(() => this.#checks.request(this.text), checkPause);
    this.keeper.changed();
    this.film.changed();
  }

  /** A timeline that shows all of the film goes on to do so when the film gets longer. */
  private keepWhole(before: TimeView): void {
    const { time } = this.state;
    const after = wholeFilm(this.state);
    const shown = time.from === before.from && time.to === before.to;
    if (shown && (after.from !== before.from || after.to !== before.to))
      this.update({ time: after });
  }

  /** One step of the undo list, or a part of the gesture that is under way. */
  change(name: string, text: string): void {
    const next = record(this.state.history, name, text, this.#gesture);
    if (next === this.state.history) return;
    this.setHistory(next);
  }

  beginGesture(): void {
    this.#gesture = ++this.#gestures;
  }

  endGesture(): void {
    this.#gesture = null;
  }

  /** What a hand does until it lets go is one step. */
  readonly gesture = { begin: () => this.beginGesture(), end: () => this.endGesture() };

  /** The same, and the row is the one in hand. */
  gestureOn(row: Row): { begin: () => void; end: () => void } {
    return {
      begin: () => {
        this.update({ activeRow: row.id });
        this.beginGesture();
      },
      end: () => this.endGesture(),
    };
  }

  changeKeys(name: string, edit: KeyEdit): void {
    this.change(name, edit.text);
    this.update({ selection: edit.selection });
  }

  setValue(row: Row, value: Value, name = `change ${row.label}`): void {
    // Switches and menus get keys by hand alone: a step in time is seldom meant.
    const asKey = this.state.settings.autoKey && row.animatable && isContinuous(row);
    const { frame } = this.state;
    const edit = this.edit();
    const moves = asKey || edit.keysOf(row).length > 0;
    if (!moves && edit.scene && sameValue(valueAt(edit.scene, row, frame), value)) return;
    this.change(name, edit.setValue(row, frame, value, asKey));
  }

  /** A top-level key of the scene takes a value; null takes the key out. */
  setHeader(name: string, key: string, value: unknown): void {
    this.change(name, this.edit().setHeader(key, value));
  }

  select(selection: ReadonlySet<KeyId>): void {
    this.update({ selection });
  }

  undo(): void {
    const name = undoName(this.state.history);
    if (name) this.setHistory(undo(this.state.history));
  }

  redo(): void {
    const name = redoName(this.state.history);
    if (name) this.setHistory(redo(this.state.history));
  }

  /** Rows whose names hold these words; none for all of them. */
  search(search: string): void {
    this.update({ filter: { ...this.state.filter, search } });
  }

  // ---- Time

  /** The playhead to a frame of the film; playing ends. */
  goTo(frame: number): void {
    this.film.stop();
    const [first, last] = filmRange(this.state);
    const held = Math.min(last, Math.max(first, Math.round(frame)));
    if (held !== this.state.frame) this.showFrame(held, 0);
  }

  /** The playhead at a frame, where the timeline can see it. */
  showFrame(frame: number, dropped: number): void {
    this.update({ frame, dropped, time: revealing(this.state.time, frame) });
  }

  // ---- Telling

  tell(
    id: string,
    text: string,
    remedy = "",
    actions: NoticeAction[] = [],
    tone: Notice["tone"] = "warn",
  ): void {
    const others = this.state.notices.filter((notice) => notice.id !== id);
    this.update({ notices: [...others, { id, tone, text, remedy, actions }] });
  }

  fail(id: string, reason: unknown): void {
    if (reason instanceof LinkError && reason.lost) return this.lost();
    const { error, remedy } = failureOf(reason);
    this.tell(id, error, remedy);
  }

  dismiss(id: string): void {
    this.update({ notices: this.state.notices.filter((notice) => notice.id !== id) });
  }

  // ---- The server's line

  private hear(event: ServerEvent): void {
    switch (event.event) {
      case "disk":
        this.keeper.diskChanged(event.name, event.revision);
        break;
      case "jobs":
        this.film.heardJobs(event.jobs);
        break;
      case "files":
        void this.readFiles(event.changed);
        break;
      case "ending":
        void this.keeper.ending();
        break;
      case "alive":
        break;
    }
  }

  /** `changed`: what is on show may be another picture now. */
  async readFiles(changed = false): Promise<void> {
    try {
      const { files } = await this.api.files();
      if (changed) this.picture.stale();
      this.update({ file: { ...this.state.file, files } });
      if (changed) this.#checks.request(this.text);
    } catch (reason) {
      this.fail("files", reason);
    }
  }

  async readLetters(): Promise<void> {
    if (this.state.letters) return;
    try {
      this.update({ letters: await this.api.letters() });
    } catch (reason) {
      this.fail("letters", reason);
    }
  }

  private line(connected: boolean, reason?: unknown): void {
    if (!connected) {
      const refused = reason instanceof LinkError && reason.status === 403;
      return this.lost(refused);
    }
    this.dismiss("link");
    void this.keeper.compare();
    void this.film.readJobs();
    if (this.state.connected) return;
    this.update({ connected: true });
    this.picture.stale();
    this.#checks.request(this.text);
    this.keeper.returned();
  }

  /** The server is away, or was started anew and wants its own key. */
  lost(refused = false): void {
    this.film.stop();
    this.keeper.keepHere();
    if (this.state.connected) this.update({ connected: false });
    const remedy = refused
      ? "Open the address that orbel studio printed in this tab; what you did stays."
      : "What you did stays in this page; start orbel studio again and open its address in this tab.";
    this.tell(
      "link",
      refused ? "The studio was started anew." : "The studio's server does not answer.",
      remedy,
    );
  }
}

function emptyState(): State {
  const table = new Table({
    version: "",
    rows: [],
    groups: [],
    rules: [],
    shapes: [],
    formats: [],
    easings: [],
    endings: [],
  });
  return {
    phase: "opening",
    table,
    file: { name: "", folder: "", revision: "", savedText: "", exists: false, files: [] },
    history: startHistory("{}"),
    scene: readScene("{}", table),
    lastScene: null,
    check: null,
    frame: 0,
    selection: new Set(),
    copiedKeys: [],
    copiedValue: null,
    activeRow: null,
    filter: { search: "", changed: false, animated: false },
    usedGroups: new Set(),
    time: { from: 0, to: 1 },
    loopRange: null,
    playing: 0,
    dropped: 0,
    before: false,
    picture: { milliseconds: 0, exact: true, busy: true, failure: null, frame: 0 },
    panel: null,
    notices: [],
    jobs: [],
    losses: null,
    letters: null,
    connected: true,
    saving: false,
    settings: loadSettings(),
  };
}
