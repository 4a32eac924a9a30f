// The server's calls and the shapes of their answers.

import type { TableData } from "../document/table";
import type { Client, Failure } from "./client";

export interface FolderFile {
  /** Of a sequence: its pattern, "shot-%04d.png". */
  name: string;
  kind: "svg" | "picture" | "sequence" | "clip" | "raw" | "scene";
  /** Of a sequence: the number of its first file, and how many follow each other. */
  first?: number;
  count?: number;
}

export interface SceneAnswer {
  name: string;
  path: string;
  folder: string;
  text: string;
  revision: string;
  exists: boolean;
  journal: { text: string; savedAt: string } | null;
  files: FolderFile[];
}

export interface SceneProblem {
  message: string;
  pointer: string;
  line: number;
  column: number;
  remedy: string;
}

export interface Plan {
  size: [number, number];
  fps: number;
  frames: [number, number];
  format: string;
  input: {
    kind: string;
    size?: [number, number] | null;
    fps?: number | null;
    frames?: number | null;
  };
}

export interface CheckAnswer {
  problems: SceneProblem[];
  plan: Plan | null;
}

export interface PixelAnswer {
  straight: number[];
  premultiplied: number[];
  format: string;
}

export interface PathAnswer {
  paths: number[][];
  fractions?: number[][] | null;
  start: [number, number] | null;
  end: [number, number] | null;
  position: [number, number] | null;
  /** Picture pixels that the position moves for a whole unit of its x and of its y. */
  positionAxes?: [[number, number], [number, number]] | null;
  camera: [number, number] | null;
}

export interface Job {
  job: number | string;
  name: string;
  state: "waiting" | "running" | "done" | "failed" | "cancelled";
  done: number;
  total: number;
  secondsLeft: number | null;
  error: string;
  remedy: string;
}

export interface Loss {
  line: number;
  message: string;
  count: number;
}

/** Outlines as SVG paths in a box of 100 by 100; the longer side goes from 25 to 75. */
export interface Outlines {
  paths: string[];
}

export interface ShapeAnswer {
  /** A drawing as the plain reader would take it. */
  before?: Outlines;
  /** What it is converted to, and what is left out. */
  after?: (Outlines & { notes: string[] }) | Failure;
}

export interface DropAnswer extends ShapeAnswer {
  name: string;
  losses: Loss[];
}

/** What texts can be written with. */
export interface Letters {
  families: string[];
  hands: string[];
}

export interface ExportOrder {
  text: string;
  name: string;
  from: number;
  to: number;
  /** Absent: the scene's own size. */
  width?: number | undefined;
  height?: number | undefined;
  overwrite: boolean;
}

export class Api {
  /** `scene` names the scene that calls are about: a server that was restarted does not know. */
  constructor(
    readonly client: Client,
    private readonly sceneName: () => string,
  ) {}

  table = () => this.client.get<TableData>("/api/table");
  scene = () => this.client.get<SceneAnswer>("/api/scene");
  files = () => this.client.get<{ files: FolderFile[] }>("/api/files");
  jobs = () => this.client.get<{ jobs: Job[] }>("/api/jobs");

  letters = () => this.client.get<Letters>("/api/letters");

  openScene = (name: string) => this.client.post<SceneAnswer>("/api/open-scene", { name });
  /** What the scene's file is on disk. */
  revision = (name: string) => this.client.post<{ revision: string }>("/api/revision", { name });
  /** What becomes of the scene's drawing or text. */
  shape = (text: string) => this.about<ShapeAnswer>("/api/shape", { text });
  check = (text: string) => this.about<CheckAnswer>("/api/check", { text });
  save = (text: string, revision: string, overwrite: boolean) =>
    this.about<{ revision: string }>("/api/save", { text, revision, overwrite });
  saveAs = (name: string, text: string, overwrite: boolean) =>
    this.client.post<{ name: string; revision: string }>("/api/save-as", { name, text, overwrite });
  journal = (text: string) => this.about<object>("/api/journal", { text });
  /** The journal is written: the server may end. */
  ended = () => this.client.post<object>("/api/ended", {});
  clearJournal = () => this.about<object>("/api/journal", { clear: true });
  pixel = (text: string, frame: number, x: number, y: number) =>
    this.about<PixelAnswer>("/api/pixel", { text, frame, x, y });
  path = (text: string, frame: number) => this.about<PathAnswer>("/api/path", { text, frame });
  dropFile = (name: string, base64: string) =>
    this.client.post<DropAnswer>("/api/drop", { name, base64 });
  export = (order: ExportOrder) =>
    this.client.post<{ job: Job["job"] }>("/api/export", { ...order, scene: this.sceneName() });
  cancel = (job: Job["job"]) => this.client.post<object>("/api/cancel", { job });
  ticket = (job: Job["job"]) => this.client.post<{ ticket: string }>("/api/ticket", { job });

  private about<T>(path: string, body: object): Promise<T> {
    return this.client.post<T>(path, { ...body, name: this.sceneName() });
  }
}
