import { useEffect, useRef } from "preact/hooks";
import type { FramePixels } from "../link/frames";
import type { State } from "../document/state";
import { classes, useSession } from "./hooks";
import type { Placing } from "./Viewport";

/** The canvas: opaque pixels put as they come, stretched by the browser where it is zoomed. */
export function Screen({
  state,
  placing,
  scale,
}: {
  state: State;
  placing: Placing;
  scale: number;
}) {
  const session = useSession();
  const canvas = useRef<HTMLCanvasElement>(null);
  useEffect(() => {
    if (!canvas.current) return;
    session.picture.screen = screenOn(canvas.current);
    session.picture.stale();
    session.update({});
  }, []);
  const { failure } = state.picture;
  const box = {
    left: `${placing.left}px`,
    top: `${placing.top}px`,
    width: `${placing.width}px`,
    height: `${placing.height}px`,
  };
  return (
    <>
      <canvas
        ref={canvas}
        class={classes("screen", scale >= 2 && "sharp", failure && "stale")}
        style={box}
        role="img"
        aria-label={`Frame ${state.picture.frame}`}
        aria-busy={state.picture.busy || state.picture.frame !== state.frame}
      />
      {failure && (
        <p class="fault" role="status">
          {failure.error} <span>{failure.remedy}</span>
        </p>
      )}
    </>
  );
}

/** A picture as it was sent last in one size, to which later ones only say what has changed. */
interface Sheet {
  serial: number;
  pixels: ImageData;
}

const keptSheets = 2;

function screenOn(canvas: HTMLCanvasElement) {
  // Without alpha and in the browser's own colours, so that every byte arrives as it was sent.
  const context = canvas.getContext("2d", { alpha: false, colorSpace: "srgb" });
  let sheets: Sheet[] = [];
  let shown: Sheet | null = null;
  const sheetOf = (width: number, height: number) =>
    sheets.find(({ pixels }) => pixels.width === width && pixels.height === height);
  const resize = (width: number, height: number): void => {
    if (canvas.width === width && canvas.height === height) return;
    canvas.width = width;
    canvas.height = height;
  };
  return {
    serial: (width: number, height: number) => sheetOf(width, height)?.serial ?? 0,
    paint: ({ width, height, rect, pixels, serial }: FramePixels) => {
      const whole = rect.width === width && rect.height === height;
      const old = sheetOf(width, height);
      const sheet = whole ? { serial, pixels: new ImageData(pixels, width, height) } : old;
      if (!sheet) return;
      if (!whole) copyRows(pixels, rect, sheet.pixels);
      sheet.serial = serial;
      sheets = [sheet, ...sheets.filter((each) => each !== old)].slice(0, keptSheets);
      resize(width, height);
      if (shown !== sheet) context?.putImageData(sheet.pixels, 0, 0);
      else if (rect.width > 0 && rect.height > 0)
        context?.putImageData(sheet.pixels, 0, 0, rect.x, rect.y, rect.width, rect.height);
      shown = sheet;
    },
    /** A picture that no later one refers to. */
    flash: ({ width, height, pixels }: FramePixels) => {
      resize(width, height);
      context?.putImageData(new ImageData(pixels, width, height), 0, 0);
      shown = null;
    },
  };
}

function copyRows(from: Uint8ClampedArray, rect: FramePixels["rect"], to: ImageData): void {
  const row = rect.width * 4;
  for (let y = 0; y < rect.height; y++) {
    const start = ((rect.y + y) * to.width + rect.x) * 4;
    to.data.set(from.subarray(y * row, (y + 1) * row), start);
  }
}
