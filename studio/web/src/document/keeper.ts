// Keeps a person's work: saving, the journal, and what others write to the same file.

import type { SceneAnswer } from "../link/api";
import { LinkError } from "../link/client";
import type { Session } from "./session";
import { isUnsaved } from "./state";

const journalPause = 700;
const largestDrop = 64 * 2 ** 20;
const herePlace = "orbel-work";

/** Unsaved work and when it was kept. */
interface Kept {
  text: string;
  savedAt: string;
}

function newerFirst(a: Kept, b: Kept): number {
  return b.savedAt.localeCompare(a.savedAt);
}

export class Keeper {
  #timer: ReturnType<typeof setTimeout> | undefined;
  #journalled = "";

  constructor(private readonly session: Session) {}

  // ---- Saving

  async save(overwrite = false): Promise<boolean> {
    const { session } = this;
    const { file, history } = session.state;
    const text = history.text;
    session.update({ saving: true });
    try {
      const { revision } = await session.api.save(text, file.revision, overwrite);
      if (this.isStill(file.name)) this.saved(text, revision, file.name);
      return true;
    } catch (reason) {
      this.saveFailed(reason);
      return false;
    } finally {
      session.update({ saving: false });
    }
  }

  private saved(text: string, revision: string, name: string): void {
    const { session } = this;
    const file = { ...session.state.file, name, revision, savedText: text, exists: true };
    session.update({ file });
    session.keepName();
    ["save", "disk", "journal"].forEach((id) => session.dismiss(id));
    this.clear();
  }

  private saveFailed(reason: unknown): void {
    const { session } = this;
    if (!(reason instanceof LinkError) || reason.status !== 409)
      return session.fail("save", reason);
    session.tell("save", reason.failure.error, reason.failure.remedy, [
      { label: "Write mine over it", run: () => void this.save(true) },
      { label: "Load theirs", run: () => void this.loadTheirs() },
    ]);
  }

  async saveAs(name: string, overwrite = false): Promise<void> {
    const { session } = this;
    const text = session.text;
    try {
      const answer = await session.api.saveAs(name, text, overwrite);
      if (answer.name !== session.state.file.name) this.clear();
      this.saved(text, answer.revision, answer.name);
      void session.readFiles();
      session.update({ panel: null });
    } catch (reason) {
      if (!(reason instanceof LinkError) || reason.status !== 409)
        return session.fail("save", reason);
      session.tell("save", reason.failure.error, reason.failure.remedy, [
        { label: "Write over it", run: () => void this.saveAs(name, true) },
      ]);
    }
  }

  /** Whether the scene that was open when something was asked still is. */
  private isStill(name: string): boolean {
    return this.session.state.file.name === name;
  }

  /** Opens another scene of the folder; unsaved work stays in this one's journal. */
  async open(name: string): Promise<void> {
    const { session } = this;
    try {
      await this.writeJournal();
      session.load(await session.api.openScene(name));
    } catch (reason) {
      session.fail("open", reason);
    }
  }

  /** A file dropped on the page goes beside the scene; a drawing becomes its shape. */
  async takeFile(file: File): Promise<void> {
    const { session } = this;
    if (file.size > largestDrop) {
      const size = `${Math.ceil(file.size / 2 ** 20)} MiB`;
      return session.tell(
        "drop",
        `${file.name} is too large to be dropped: ${size}.`,
        "Copy it into the scene's folder yourself.",
      );
    }
    try {
      const losses = await session.api.dropFile(file.name, await base64Of(file));
      const { name } = losses;
      await session.readFiles();
      const kind = session.state.file.files.find((each) => each.name === name)?.kind;
      if (kind === "svg") this.chooseDrawing(name);
      else session.change(`choose ${name}`, session.edit().setHeader("input", { file: name }));
      session.update({ losses });
    } catch (reason) {
      session.fail("drop", reason);
    }
  }

  /** A drawing of the folder becomes the shape. What is packed no plain reader can read. */
  chooseDrawing(name: string): void {
    const { session } = this;
    const edit = session.edit();
    const packed = /\.svgz$/i.test(name);
    session.update({ losses: null });
    session.change(`choose ${name}`, packed ? edit.importShape(name) : edit.setShape(name));
  }

  // ---- Another writer

  /** Compares what is shown with the disk, once the server tells of every change from here on. */
  async compare(): Promise<void> {
    const { session } = this;
    const { name, revision } = session.state.file;
    try {
      const now = await session.api.revision(name);
      // What was saved meanwhile is no other writer's.
      if (this.isStill(name) && revision === session.state.file.revision)
        this.diskChanged(name, now.revision);
    } catch (reason) {
      session.fail("disk", reason);
    }
  }

  diskChanged(name: string, revision: string): void {
    const { session } = this;
    const { file, saving } = session.state;
    if (saving || name !== file.name || revision === file.revision) return;
    const words = isUnsaved(session.state)
      ? "Loading it replaces what is not saved here; undo brings that back."
      : "Load it to go on from there.";
    session.tell("disk", `Somebody else changed ${file.name} on disk.`, words, [
      { label: "Load it", run: () => void this.loadTheirs() },
      { label: "Keep mine", run: () => session.dismiss("disk") },
    ]);
  }

  /** Takes the file's text as one step that can be undone. */
  private async loadTheirs(): Promise<void> {
    const { session } = this;
    const { name } = session.state.file;
    try {
      const answer: SceneAnswer = await session.api.openScene(name);
      if (!this.isStill(name)) return;
      session.change("load from disk", answer.text);
      const { revision, exists, text } = answer;
      session.update({ file: { ...session.state.file, revision, exists, savedText: text } });
      ["save", "disk"].forEach((id) => session.dismiss(id));
    } catch (reason) {
      session.fail("disk", reason);
    }
  }

  // ---- The journal

  changed(): void {
    clearTimeout(this.#timer);
    this.#timer = setTimeout(() => void this.writeJournal(), journalPause);
  }

  private async writeJournal(): Promise<void> {
    const { session } = this;
    clearTimeout(this.#timer);
    const { text } = session;
    if (text === session.state.file.savedText || text === this.#journalled) return;
    try {
      await session.api.journal(text);
      this.#journalled = text;
    } catch (reason) {
      this.keepHere();
      session.fail("journal", reason);
    }
  }

  private clear(): void {
    this.#journalled = "";
    clearTimeout(this.#timer);
    localStorage.removeItem(this.place());
    void this.session.api.clearJournal().catch(() => undefined);
  }

  /** The browser's own copy, for when the server is away. */
  keepHere(): void {
    const { state, text } = this.session;
    if (state.phase !== "ready" || text === state.file.savedText) return;
    const kept: Kept = { text, savedAt: new Date().toISOString() };
    localStorage.setItem(this.place(), JSON.stringify(kept));
  }

  private keptHere(): Kept | null {
    try {
      return JSON.parse(localStorage.getItem(this.place()) ?? "null") as Kept | null;
    } catch {
      return null;
    }
  }

  private place(): string {
    const { folder, name } = this.session.state.file;
    return `${herePlace}:${folder}/${name}`;
  }

  /** Offers the work that was not saved the last time. */
  offerJournal(text: string, journal: SceneAnswer["journal"]): void {
    const { session } = this;
    const newest = [journal, this.keptHere()].filter((kept) => kept !== null).sort(newerFirst)[0];
    if (!newest || newest.text === text) return;
    const found = newest.text;
    const when = ` from ${readableTime(newest.savedAt)}`;
    session.tell(
      "journal",
      `There is unsaved work${when}.`,
      "Take it up, or let it go.",
      [
        { label: "Take it up", run: () => this.takeUp(found) },
        { label: "Let it go", run: () => this.letGo() },
      ],
      "info",
    );
  }

  private takeUp(text: string): void {
    const { session } = this;
    session.change("take up unsaved work", text);
    session.dismiss("journal");
  }

  private letGo(): void {
    this.clear();
    this.session.dismiss("journal");
  }

  /** The server is about to end: what is not saved goes to the journal now. */
  async ending(): Promise<void> {
    const { session } = this;
    this.#journalled = "";
    await this.writeJournal();
    this.keepHere();
    await session.api.ended().catch(() => undefined);
    session.tell(
      "link",
      "The studio was ended.",
      "What is not saved will be offered at its next start.",
      [],
      "info",
    );
  }

  /** The server is back: what happened meanwhile is written down. */
  returned(): void {
    this.#journalled = "";
    void this.writeJournal();
  }

  /** The tab is about to close. */
  leaving(): void {
    this.keepHere();
    void this.writeJournal();
  }
}

async function base64Of(file: File): Promise<string> {
  const bytes = new Uint8Array(await file.arrayBuffer());
  let text = "";
  for (let at = 0; at < bytes.length; at += 0x8000) {
    text += String.fromCharCode(...bytes.subarray(at, at + 0x8000));
  }
  return btoa(text);
}

function readableTime(savedAt: string): string {
  const time = new Date(savedAt);
  return Number.isNaN(time.getTime())
    ? savedAt
    : time.toLocaleString([], { timeStyle: "short", dateStyle: "medium" });
}
