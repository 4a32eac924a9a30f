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

function screenOn(canvas: HTMLCanvasElement) {
  // Without alpha and in the browser's own colours, so that every byte arrives as it was sent.
  const context = canvas.getContext("2d", { alpha: false, colorSpace: "srgb" });
  let serial = 0;
  return {
    serial: (width: number, height: number) =>
      canvas.width === width && canvas.height === height ? serial : 0,
    paint: ({ width, height, rect, pixels, serial: its }: FramePixels) => {
      if (canvas.width !== width || canvas.height !== height) {
        canvas.width = width;
        canvas.height = height;
      }
      serial = its;
      if (!context || rect.width === 0 || rect.height === 0) return;
      context.putImageData(new ImageData(pixels, rect.width, rect.height), rect.x, rect.y);
    },
  };
}
