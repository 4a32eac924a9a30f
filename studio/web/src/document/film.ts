// Playing and exporting: everything in which frames follow each other.

import type { ExportOrder, Job } from "../link/api";
import { LinkError } from "../link/client";
import type { Session } from "./session";
import { filmRate, filmSize, playRange } from "./state";
import { shownSize } from "./picture";

/** How long a change may still go on before the film is played anew, in milliseconds. */
const restartPause = 120;

export class Film {
  #stop: AbortController | null = null;
  #again: ReturnType<typeof setTimeout> | undefined;
  #heard = 0;

  constructor(private readonly session: Session) {}

  /** Device pixels in which the picture stands on the screen; the viewport keeps it right. */
  shown: readonly [number, number] = [1280, 720];

  get playing(): boolean {
    return this.session.state.playing !== 0;
  }

  toggle(): void {
    if (this.playing) this.stop();
    else this.play(1);
  }

  stop(): void {
    clearTimeout(this.#again);
    this.#stop?.abort();
    this.#stop = null;
    if (this.playing) this.session.update({ playing: 0 });
  }

  /** What plays has changed: it goes on with the new scene when the hand rests. */
  changed(): void {
    clearTimeout(this.#again);
    if (this.session.state.playing === 1)
      this.#again = setTimeout(() => this.play(1), restartPause);
  }

  /** Plays at a rate in films' seconds a second: 1 forward, -1 backward, 2 twice as fast. */
  play(rate: number): void {
    this.stop();
    const [first, last] = playRange(this.session.state);
    if (first >= last) return;
    const stop = new AbortController();
    this.#stop = stop;
    this.session.update({ playing: rate, dropped: 0 });
    const run = rate === 1 ? this.stream(stop) : this.chase(rate, stop);
    run
      .catch((reason: unknown) => {
        if (!stop.signal.aborted) this.session.fail("play", reason);
      })
      .finally(() => {
        if (this.#stop === stop) this.stop();
      });
  }

  /** The server's own pace: frames it cannot draw in time are left out and counted here. */
  private async stream(stop: AbortController): Promise<void> {
    const { session } = this;
    const [first, last] = playRange(session.state);
    const start = this.startFrame(first, last, 1);
    let before = start - 1;
    const orders = this.order();
    const show = (frame: number) => {
      const skipped = frame > before ? frame - before - 1 : last - before + frame - first;
      before = frame;
      const dropped = session.state.dropped + Math.max(0, skipped);
      session.showFrame(frame, dropped);
      if (frame >= last && !session.state.settings.loop) stop.abort();
    };
    // From the playhead to the end once, and then round and round.
    for (let from = start; !stop.signal.aborted; from = first) {
      const loop = session.state.settings.loop && from === first;
      await session.frames.play({ ...orders, from, to: last, loop }, stop.signal, (pixels) => {
        if (stop.signal.aborted) return;
        session.picture.screen?.flash(pixels);
        show(pixels.frame);
      });
      if (!session.state.settings.loop) return;
      before = first - 1;
    }
  }

  private order() {
    const { state, text } = this.session;
    const size = filmSize(state);
    const [width, height] = shownSize({ size, shown: this.shown });
    return { text, width, height, ground: state.settings.ground };
  }

  private startFrame(first: number, last: number, rate: number): number {
    const { frame } = this.session.state;
    if (frame < first || frame > last) return rate > 0 ? first : last;
    if (rate > 0 && frame >= last) return first;
    return rate < 0 && frame <= first ? last : frame;
  }

  /** Backward and at other speeds: the playhead follows the clock, the picture follows it. */
  private async chase(rate: number, stop: AbortController): Promise<void> {
    const { session } = this;
    const [first, last] = playRange(session.state);
    const length = last - first + 1;
    const start = this.startFrame(first, last, rate);
    const since = performance.now();
    const fps = filmRate(session.state);
    for (let before = start; !stop.signal.aborted; ) {
      await nextDisplayFrame();
      if (!session.picture.idle || stop.signal.aborted) continue;
      const gone =
        Math.floor(((performance.now() - since) / 1000) * fps * Math.abs(rate)) * Math.sign(rate);
      const frame = first + ((((start - first + gone) % length) + length) % length);
      if (frame === before) continue;
      const moved = ((((frame - before) * Math.sign(rate)) % length) + length) % length;
      before = frame;
      const skipped = Math.max(0, moved - Math.max(1, Math.abs(rate)));
      session.showFrame(frame, session.state.dropped + skipped);
    }
  }

  // ---- Export

  async export(order: Omit<ExportOrder, "text">): Promise<void> {
    const { session } = this;
    try {
      await session.api.export({ ...order, text: session.text });
      session.dismiss("export");
      await this.readJobs();
    } catch (reason) {
      if (!(reason instanceof LinkError) || reason.status !== 409)
        return session.fail("export", reason);
      session.tell("export", reason.failure.error, reason.failure.remedy, [
        { label: "Write over it", run: () => void this.export({ ...order, overwrite: true }) },
      ]);
    }
  }

  async cancel(job: Job["job"]): Promise<void> {
    try {
      await this.session.api.cancel(job);
      await this.readJobs();
    } catch (reason) {
      this.session.fail("export", reason);
    }
  }

  /** What the server tells of its own accord. */
  heardJobs(jobs: readonly Job[]): void {
    this.#heard++;
    this.session.update({ jobs });
  }

  async readJobs(): Promise<void> {
    const heard = this.#heard;
    try {
      const { jobs } = await this.session.api.jobs();
      // What was heard while the answer was on its way is newer, and may have been the last word.
      if (heard === this.#heard) this.session.update({ jobs });
    } catch (reason) {
      this.session.fail("export", reason);
    }
  }

  /** A place where the finished film can be seen. */
  async result(job: Job["job"]): Promise<string | null> {
    try {
      const { ticket } = await this.session.api.ticket(job);
      return `/result/${ticket}`;
    } catch (reason) {
      this.session.fail("export", reason);
      return null;
    }
  }
}

function nextDisplayFrame(): Promise<void> {
  return new Promise((resolve) => requestAnimationFrame(() => resolve()));
}
