// Frames from the server: one at a time on request, or a stream while playing.

import type { Client } from "./client";

/** What lies under a frame that has alpha. */
export type Ground = "grid" | "black" | "white" | `#${string}`;

export interface FrameQuestion {
  text: string;
  frame: number;
  width: number;
  height: number;
  ground: Ground;
  before: boolean;
  exact: boolean;
}

/** Opaque pixels of a rectangle of a frame, rows top-down. */
export interface FramePixels {
  frame: number;
  width: number;
  height: number;
  rect: { x: number; y: number; width: number; height: number };
  pixels: Uint8ClampedArray<ArrayBuffer>;
  milliseconds: number;
  serial: number;
  exact: boolean;
}

export class FrameLink {
  #serial = Date.now() % 1_000_000_000;

  constructor(
    private readonly client: Client,
    private readonly sceneName: () => string,
  ) {}

  nextSerial(): number {
    return ++this.#serial;
  }

  /** A frame. `since` is the serial of the frame that is still shown, 0 for none. */
  async frame(question: FrameQuestion, since: number, stop?: AbortSignal): Promise<FramePixels> {
    const serial = this.nextSerial();
    const body = { ...question, serial, since: since || -1, name: this.sceneName() };
    const answer = await this.client.send("/api/frame", body, stop);
    const width = headerNumber(answer, "X-Orbel-Width");
    const height = headerNumber(answer, "X-Orbel-Height");
    const [x = 0, y = 0, w = width, h = height] = (answer.headers.get("X-Orbel-Rect") ?? "")
      .split(" ")
      .filter((part) => part !== "")
      .map(Number);
    return {
      frame: question.frame,
      width,
      height,
      rect: { x, y, width: w, height: h },
      pixels: new Uint8ClampedArray(await answer.arrayBuffer()),
      milliseconds: headerNumber(answer, "X-Orbel-Milliseconds"),
      serial,
      exact: headerNumber(answer, "X-Orbel-Exact") === 1,
    };
  }

  /** Plays until `signal` ends it or the server closes; `show` gets every frame that arrives. */
  async play(
    order: Omit<FrameQuestion, "frame" | "before" | "exact"> & {
      from: number;
      to: number;
      loop: boolean;
    },
    signal: AbortSignal,
    show: (frame: FramePixels) => void,
  ): Promise<void> {
    const serial = this.nextSerial();
    const answer = await this.client.send(
      "/api/play",
      { ...order, serial, name: this.sceneName() },
      signal,
    );
    const reader = answer.body?.getReader();
    if (!reader) return;
    const cutter = new StreamCutter((head, pixels) => show({ ...head, pixels, serial }));
    for (;;) {
      const { done, value } = await reader.read();
      if (done) return;
      cutter.take(value);
    }
  }
}

function headerNumber(answer: Response, name: string): number {
  return Number(answer.headers.get(name) ?? 0);
}

type StreamedHead = Omit<FramePixels, "pixels" | "serial">;

const headBytes = 16;

/** Cuts a stream into frames: a head of four little-endian numbers, then the pixels. */
export class StreamCutter {
  readonly #head = new Uint8Array(headBytes);
  #pixels: Uint8ClampedArray<ArrayBuffer> | null = null;
  #filled = 0;

  constructor(
    private readonly done: (head: StreamedHead, pixels: Uint8ClampedArray<ArrayBuffer>) => void,
  ) {}

  take(bytes: Uint8Array): void {
    for (let at = 0; at < bytes.length; ) {
      at += this.fill(bytes.subarray(at));
    }
  }

  private fill(bytes: Uint8Array): number {
    const target: Uint8Array | Uint8ClampedArray = this.#pixels ?? this.#head;
    const count = Math.min(bytes.length, target.length - this.#filled);
    target.set(bytes.subarray(0, count), this.#filled);
    this.#filled += count;
    if (this.#filled === target.length) this.finish();
    return count;
  }

  private finish(): void {
    const numbers = new DataView(this.#head.buffer);
    const [frame, width, height, size] = [0, 4, 8, 12].map((at) => numbers.getUint32(at, true));
    this.#filled = 0;
    if (this.#pixels === null && size! > 0) {
      this.#pixels = new Uint8ClampedArray(size!);
      return;
    }
    const pixels = this.#pixels;
    this.#pixels = null;
    if (!pixels) return;
    const rect = { x: 0, y: 0, width: width!, height: height! };
    const head = { frame: frame!, width: width!, height: height!, rect };
    this.done({ ...head, milliseconds: 0, exact: false }, pixels);
  }
}
