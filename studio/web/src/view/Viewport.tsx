import { useEffect, useRef, useState } from "preact/hooks";
import type { PathAnswer, PixelAnswer } from "../link/api";
import { Newest } from "../link/newest";
import { filmSize, readable, type State } from "../document/state";
import { zoomEvents } from "./commands";
import { drag, useSession, useSize } from "./hooks";
import { Overlay } from "./Overlay";
import { Screen } from "./Screen";
import { Strip, type Pointed } from "./Strip";

/** Where the picture stands on the board, in CSS pixels; `scale` is CSS pixels a picture pixel. */
export interface Placing {
  left: number;
  top: number;
  scaleX: number;
  scaleY: number;
  width: number;
  height: number;
}

/** Device pixels a picture pixel and the picture's middle on the board; null fits the board. */
interface Zoom {
  scale: number;
  x: number;
  y: number;
}

const gap = 28;

export function Viewport({ state }: { state: State }) {
  const session = useSession();
  const [board, room] = useSize<HTMLDivElement>();
  const [zoom, setZoom] = useState<Zoom | null>(null);
  const [pointed, setPointed] = useState<Pointed | null>(null);
  const size = filmSize(state);
  const aspect = readable(state)?.pixelAspect ?? 1;
  const fitted = Math.min((room.width - gap) / (size[0] * aspect), (room.height - gap) / size[1]);
  const dpr = window.devicePixelRatio || 1;
  const scale = zoom?.scale ?? Math.max(0.01, fitted * dpr);
  const placing = place(room, size, aspect, scale / dpr, zoom);
  const shown: [number, number] = [placing.width * dpr, placing.height * dpr];
  session.film.shown = shown;

  useWantedPicture(state, size, shown, room.width > 0);
  const path = usePath(state);
  const pixel = usePixel(state, pointed);

  const zoomAt = (factor: number, x: number, y: number) => {
    const next = Math.min(32, Math.max(0.02, scale * factor));
    const centre = { x: placing.left + placing.width / 2, y: placing.top + placing.height / 2 };
    const grown = next / scale;
    setZoom({ scale: next, x: x - (x - centre.x) * grown, y: y - (y - centre.y) * grown });
  };
  useZoomKeys(
    () => setZoom(null),
    () => setZoom({ scale: 1, x: room.width / 2, y: room.height / 2 }),
    (factor) => zoomAt(factor, room.width / 2, room.height / 2),
  );

  const wheel = (event: WheelEvent & { currentTarget: HTMLElement }): void => {
    event.preventDefault();
    const box = event.currentTarget.getBoundingClientRect();
    zoomAt(Math.exp(-event.deltaY * 0.0015), event.clientX - box.left, event.clientY - box.top);
  };
  const pan = (event: PointerEvent): void => {
    if (event.button > 1) return;
    event.preventDefault();
    const from = { x: placing.left + placing.width / 2, y: placing.top + placing.height / 2 };
    drag(event, {
      threshold: 3,
      move: (dx, dy) => setZoom({ scale, x: from.x + dx, y: from.y + dy }),
    });
  };
  const point = (event: PointerEvent & { currentTarget: HTMLElement }): void => {
    const box = event.currentTarget.getBoundingClientRect();
    const x = Math.floor((event.clientX - box.left - placing.left) / placing.scaleX);
    const y = Math.floor((event.clientY - box.top - placing.top) / placing.scaleY);
    const inside = x >= 0 && y >= 0 && x < size[0] && y < size[1];
    setPointed(inside ? { x, y } : null);
  };

  return (
    <section class="view" aria-label="Picture">
      <div
        class="board"
        ref={board}
        onWheel={wheel}
        onPointerDown={pan}
        onPointerMove={point}
        onPointerLeave={() => setPointed(null)}
      >
        {room.width > 0 && <Screen state={state} placing={placing} scale={scale} />}
        {room.width > 0 && <Overlay state={state} placing={placing} path={path} room={room} />}
        {state.before && <span class="badge">Before</span>}
      </div>
      <Strip
        state={state}
        scale={scale}
        fits={zoom === null}
        pointed={pointed}
        pixel={pixel}
        setZoom={(kind) => zoomEvents.dispatchEvent(new Event(kind))}
      />
    </section>
  );
}

function place(
  room: { width: number; height: number },
  size: readonly [number, number],
  aspect: number,
  scale: number,
  zoom: Zoom | null,
): Placing {
  const width = size[0] * aspect * scale;
  const height = size[1] * scale;
  const x = zoom?.x ?? room.width / 2;
  const y = zoom?.y ?? room.height / 2;
  // Whole pixels, so that 100 % shows every pixel as it is.
  const left = Math.round(x - width / 2);
  const top = Math.round(y - height / 2);
  return { left, top, width, height, scaleX: aspect * scale, scaleY: scale };
}

function useZoomKeys(fit: () => void, full: () => void, by: (factor: number) => void): void {
  const latest = useRef({ fit, full, by });
  latest.current = { fit, full, by };
  useEffect(() => {
    const run = (event: Event) => {
      const { fit: toFit, full: toFull, by: zoomBy } = latest.current;
      if (event.type === "fit") toFit();
      else if (event.type === "full") toFull();
      else zoomBy(event.type === "in" ? Math.SQRT2 : Math.SQRT1_2);
    };
    const kinds = ["fit", "full", "in", "out"];
    kinds.forEach((kind) => zoomEvents.addEventListener(kind, run));
    return () => kinds.forEach((kind) => zoomEvents.removeEventListener(kind, run));
  }, []);
}

/** Tells the picture source what to show. While the server streams, it shows what comes. */
function useWantedPicture(
  state: State,
  size: readonly [number, number],
  shown: readonly [number, number],
  ready: boolean,
): void {
  const session = useSession();
  const { frame, before, settings, playing, history } = state;
  const streaming = playing === 1;
  const wasStreaming = useRef(false);
  useEffect(() => {
    if (!ready || state.phase !== "ready" || streaming || !state.connected) {
      wasStreaming.current = wasStreaming.current || streaming;
      return;
    }
    if (wasStreaming.current) session.picture.stale();
    wasStreaming.current = false;
    if (state.scene.fault) return;
    session.picture.want({
      text: history.text,
      frame,
      ground: settings.ground,
      before,
      size,
      shown,
    });
  });
}

/** The outline on the picture, as the server measures it. */
function usePath(state: State): PathAnswer | null {
  const session = useSession();
  const [path, setPath] = useState<PathAnswer | null>(null);
  const [asker] = useState(
    () =>
      new Newest<{ text: string; frame: number }, PathAnswer>(
        ({ text, frame }) => session.api.path(text, frame),
        setPath,
        () => undefined,
      ),
  );
  const { settings, playing, frame, history, connected, phase } = state;
  const visible =
    (settings.path || settings.handles) && playing === 0 && connected && phase === "ready";
  const wanted = visible && !state.scene.fault;
  useEffect(() => {
    if (wanted) asker.request({ text: history.text, frame });
  }, [wanted, history.text, frame]);
  return wanted ? path : null;
}

/** What the pixel under the pointer holds in the scene's own format. */
function usePixel(state: State, pointed: Pointed | null): PixelAnswer | null {
  const session = useSession();
  const [pixel, setPixel] = useState<PixelAnswer | null>(null);
  const [asker] = useState(
    () =>
      new Newest<Pointed & { text: string; frame: number }, PixelAnswer>(
        ({ text, frame, x, y }) => session.api.pixel(text, frame, x, y),
        setPixel,
        () => setPixel(null),
      ),
  );
  const { frame, history, playing } = state;
  useEffect(() => {
    if (pointed && playing === 0) asker.request({ ...pointed, text: history.text, frame });
  }, [pointed?.x, pointed?.y, history.text, frame, playing]);
  return pointed ? pixel : null;
}
