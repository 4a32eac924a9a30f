// Which frame to ask the server for: a quick one while something moves, the exact one after.

import type { Failure } from "../link/client";
import { failureOf, LinkError } from "../link/client";
import type { FrameLink, FramePixels, FrameQuestion, Ground } from "../link/frames";
import { Newest } from "../link/newest";

export interface Wanted {
  text: string;
  frame: number;
  ground: Ground;
  before: boolean;
  /** The scene's size and the size at which the picture stands on the screen, in device pixels. */
  size: readonly [number, number];
  shown: readonly [number, number];
}

/** Where pixels end up. `serial` is that of the frame it holds, when it has this size. */
export interface Screen {
  paint: (pixels: FramePixels) => void;
  /** Shows pixels that no later ones refer to, as those of a film that plays. */
  flash: (pixels: FramePixels) => void;
  serial: (width: number, height: number) => number;
}

/** How long nothing may change before the exact frame is asked for: longer where moves come slowly. */
const settleMilliseconds = { least: 45, most: 120 };

export class PictureSource {
  screen: Screen | null = null;
  #wanted: Wanted | null = null;
  #wishedAt = 0;
  #settle: ReturnType<typeof setTimeout> | undefined;
  readonly #newest: Newest<FrameQuestion, FramePixels>;

  constructor(
    link: FrameLink,
    shown: (pixels: FramePixels) => void,
    failed: (failure: Failure, lost: boolean) => void,
    private readonly busy: () => void,
  ) {
    this.#newest = new Newest<FrameQuestion, FramePixels>(
      (question, stop) => link.frame(question, this.serialFor(question), stop),
      (pixels) => {
        this.screen?.paint(pixels);
        shown(pixels);
      },
      (reason) => {
        const status = reason instanceof LinkError ? reason.status : 1;
        if (status !== 409) failed(failureOf(reason), status === 0);
      },
      // The hand moves on: nobody waits for the exact picture of what was.
      (next, asked) => asked.exact && !next.exact,
    );
  }

  /** Asks for a picture, unless it is the one already asked for. */
  want(wanted: Wanted): void {
    if (this.#wanted && sameWanted(this.#wanted, wanted)) return;
    this.#wanted = wanted;
    this.busy();
    const pause = this.pause();
    clearTimeout(this.#settle);
    if (isReduced(wanted)) {
      this.#newest.request(question(wanted, false));
      this.#settle = setTimeout(() => this.#newest.request(question(wanted, true)), pause);
    } else {
      this.#newest.request(question(wanted, true));
    }
  }

  /** Forgets what is shown, so that the next wish is asked for whatever it is. */
  stale(): void {
    clearTimeout(this.#settle);
    this.#wanted = null;
  }

  get idle(): boolean {
    return this.#newest.idle;
  }

  /** Whether these are the pixels that the last wish ends with. */
  settles({ exact, frame }: FramePixels): boolean {
    return exact && this.#newest.last && frame === this.#wanted?.frame;
  }

  /** Half as long again as the last two wishes lay apart. */
  private pause(): number {
    const now = performance.now();
    const apart = now - this.#wishedAt;
    this.#wishedAt = now;
    const { least, most } = settleMilliseconds;
    return apart > most ? least : Math.min(most, Math.max(least, apart * 1.5));
  }

  private serialFor({ width, height }: FrameQuestion): number {
    return this.screen?.serial(width, height) ?? 0;
  }
}

function sameWanted(a: Wanted, b: Wanted): boolean {
  return (
    a.text === b.text &&
    a.frame === b.frame &&
    a.ground === b.ground &&
    a.before === b.before &&
    a.size.join() === b.size.join() &&
    shownSize(a).join() === shownSize(b).join()
  );
}

/** The size at which pixels are of use: never above the scene's own. */
export function shownSize({ size, shown }: Pick<Wanted, "size" | "shown">): [number, number] {
  const share = Math.min(1, shown[0] / size[0], shown[1] / size[1]);
  return [Math.max(1, Math.round(size[0] * share)), Math.max(1, Math.round(size[1] * share))];
}

function isReduced(wanted: Wanted): boolean {
  return shownSize(wanted)[0] < wanted.size[0];
}

function question(wanted: Wanted, exact: boolean): FrameQuestion {
  const [width, height] = exact ? wanted.size : shownSize(wanted);
  const { text, frame, ground, before } = wanted;
  return { text, frame, ground, before, width, height, exact };
}
