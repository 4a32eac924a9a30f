import { clockText } from "../document/display";
import { filmRange, filmRate, type State } from "../document/state";
import { frameAt, ticks, xOf } from "../document/timescale";
import { drag, useSession } from "./hooks";

/** Frames or time, the film's extent and the loop; pressing it moves the playhead. */
export function Ruler({ state, width }: { state: State; width: number }) {
  const session = useSession();
  const { time, settings } = state;
  const rate = filmRate(state);
  const [first, last] = filmRange(state);
  const x = (frame: number) => xOf(time, width, frame);
  const frameUnder = (event: PointerEvent, box: DOMRect) =>
    Math.round(frameAt(time, width, event.clientX - box.left));

  const press = (event: PointerEvent & { currentTarget: HTMLElement | SVGElement }): void => {
    if (event.button !== 0) return;
    event.preventDefault();
    const box = event.currentTarget.getBoundingClientRect();
    const start = frameUnder(event, box);
    if (event.shiftKey) {
      drag(event, { move: (_dx, _dy, next) => setLoop(start, frameUnder(next, box)) });
      return;
    }
    session.goTo(start);
    drag(event, { move: (_dx, _dy, next) => session.goTo(frameUnder(next, box)) });
  };
  const setLoop = (a: number, b: number) => {
    const hold = (frame: number) => Math.min(last, Math.max(first, frame));
    const range = [hold(Math.min(a, b)), hold(Math.max(a, b))] as const;
    if (range[0] < range[1]) session.update({ loopRange: range });
  };

  const loop = state.loopRange;
  return (
    <div
      class="ruler"
      onPointerDown={press}
      title="Drag: playhead. Shift and drag: loop. Wheel: zoom."
    >
      <svg width={width} height="22" aria-hidden="true">
        {ticks(time, width, rate, settings.asTime).map(({ frame, labelled }) => (
          <g key={frame} transform={`translate(${x(frame)} 0)`}>
            <path class="tick" d={labelled ? "M0 12V22" : "M0 17V22"} />
            {labelled && (
              <text x="4" y="12">
                {settings.asTime ? clockText(frame, rate) : frame}
              </text>
            )}
          </g>
        ))}
        <rect class="outside" x="0" y="0" width={Math.max(0, x(first) - 1)} height="22" />
        <rect
          class="outside"
          x={x(last) + 1}
          y="0"
          width={Math.max(0, width - x(last))}
          height="22"
        />
      </svg>
      {loop && <LoopBar loop={loop} x={x} width={width} state={state} setLoop={setLoop} />}
      <i class="head" style={{ transform: `translateX(${x(state.frame)}px)` }} />
    </div>
  );
}

interface LoopProps {
  loop: readonly [number, number];
  x: (frame: number) => number;
  width: number;
  state: State;
  setLoop: (a: number, b: number) => void;
}

function LoopBar({ loop, x, width, state, setLoop }: LoopProps) {
  const [from, to] = loop;
  const perPixel = (state.time.to - state.time.from) / width;
  const press = (move: (frames: number) => readonly [number, number]) => (event: PointerEvent) => {
    event.stopPropagation();
    event.preventDefault();
    drag(event, { move: (dx) => setLoop(...move(Math.round(dx * perPixel))) });
  };
  return (
    <div
      class="loopbar"
      style={{ left: `${x(from)}px`, width: `${x(to) - x(from)}px` }}
      title="Loop range"
      onPointerDown={press((by) => [from + by, to + by])}
    >
      <i onPointerDown={press((by) => [Math.min(from + by, to - 1), to])} />
      <i onPointerDown={press((by) => [from, Math.max(to + by, from + 1)])} />
    </div>
  );
}
