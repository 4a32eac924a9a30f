import {
  alongAxes,
  outline,
  pointAt,
  shareNear,
  unwound,
  type Axes,
  type Outline,
  type Place,
} from "../document/outline";
import { valueAt, type Scene } from "../document/scene";
import { filmSize, readable, type State } from "../document/state";
import { clampToRow, type Row } from "../document/table";
import { tidy } from "../document/writing";
import type { PathAnswer } from "../link/api";
import { arrowDirection, hold, useSession } from "./hooks";
import type { Placing } from "./Viewport";

interface Props {
  state: State;
  placing: Placing;
  path: PathAnswer | null;
  room: { width: number; height: number };
}

/** Path, handles and safe areas over the picture. */
export function Overlay({ state, placing, path, room }: Props) {
  const scene = readable(state);
  const { settings } = state;
  return (
    <svg class="overlay" width={room.width} height={room.height}>
      {settings.safe && <SafeAreas placing={placing} />}
      {path && settings.path && <Path path={path} placing={placing} />}
      {path && scene && settings.handles && (
        <Handles state={state} scene={scene} path={path} placing={placing} />
      )}
    </svg>
  );
}

function SafeAreas({ placing }: { placing: Placing }) {
  return (
    <g class="safe" aria-hidden="true">
      {[0.9, 0.8].map((share) => (
        <rect
          key={share}
          x={placing.left + (placing.width * (1 - share)) / 2}
          y={placing.top + (placing.height * (1 - share)) / 2}
          width={placing.width * share}
          height={placing.height * share}
        />
      ))}
    </g>
  );
}

function onBoard(placing: Placing, [x, y]: Place): [number, number] {
  return [placing.left + x * placing.scaleX, placing.top + y * placing.scaleY];
}

function Path({ path, placing }: { path: PathAnswer; placing: Placing }) {
  const lines = path.paths.map((points) => {
    const places: string[] = [];
    for (let i = 0; i + 1 < points.length; i += 2) {
      const [x, y] = onBoard(placing, [points[i]!, points[i + 1]!]);
      places.push(`${x.toFixed(1)} ${y.toFixed(1)}`);
    }
    return places.length > 0 ? `M${places.join("L")}` : "";
  });
  return (
    <g aria-hidden="true">
      <path class="outline under" d={lines.join("")} />
      <path class="outline" d={lines.join("")} />
    </g>
  );
}

interface HandlesProps {
  state: State;
  scene: Scene;
  path: PathAnswer;
  placing: Placing;
}

function Handles({ state, scene, path, placing }: HandlesProps) {
  const { table, frame } = state;
  const lines = path.paths.map((points, index) => outline(points, path.fractions?.[index]));
  const first = lines[0];
  const row = (name: string) => table.find(name);
  const position = row("Transform/XY Position");
  const camera = row("Camera/XY Position");
  const [wide, high] = filmSize(state);
  const plainAxes: Axes = [
    [wide, 0],
    [0, high],
  ];
  const start = row("Start");
  const end = row("End");
  const offset = row("Offset");
  const number = (each: Row | undefined) => (each ? Number(valueAt(scene, each, frame)) : 0);
  const shift = number(offset);
  const origin = first && pointAt(first, shift / 100);
  const startAt = path.start ?? (first && pointAt(first, (number(start) + shift) / 100));
  const endAt = path.end ?? (first && pointAt(first, (number(end) + shift) / 100));
  return (
    <g>
      {camera && path.camera && (
        <PointHandle
          row={camera}
          at={path.camera}
          placing={placing}
          scene={scene}
          frame={frame}
          axes={plainAxes}
          kind="camera"
        />
      )}
      {position && path.position && (
        <PointHandle
          row={position}
          at={path.position}
          placing={placing}
          scene={scene}
          frame={frame}
          axes={path.positionAxes ?? plainAxes}
          kind="position"
        />
      )}
      {offset && origin && (
        <Bead
          row={offset}
          at={origin}
          lines={lines}
          shift={0}
          placing={placing}
          value={shift}
          kind="offset"
        />
      )}
      {end && endAt && (
        <Bead
          row={end}
          at={endAt}
          lines={lines}
          shift={shift}
          placing={placing}
          value={number(end)}
          kind="end"
        />
      )}
      {start && startAt && (
        <Bead
          row={start}
          at={startAt}
          lines={lines}
          shift={shift}
          placing={placing}
          value={number(start)}
          kind="start"
        />
      )}
    </g>
  );
}

interface PointHandleProps {
  row: Row;
  at: Place;
  placing: Placing;
  scene: Scene;
  frame: number;
  axes: Axes;
  kind: "position" | "camera";
}

function PointHandle({ row, at, placing, scene, frame, axes, kind }: PointHandleProps) {
  const session = useSession();
  const [x, y] = onBoard(placing, at);
  const value = valueAt(scene, row, frame) as readonly number[];
  const set = (px: number, py: number) =>
    session.setValue(row, [tidy(px), tidy(py)], `move ${row.name}`);
  const press = (event: PointerEvent): void => {
    event.stopPropagation();
    event.preventDefault();
    hold(event, session.gestureOn(row), {
      move: (dx, dy, next) => {
        const free = next.shiftKey ? Math.abs(dx) > Math.abs(dy) : null;
        const onX = free === false ? 0 : dx / placing.scaleX;
        const onY = free === true ? 0 : dy / placing.scaleY;
        const moved = alongAxes(axes, [onX, onY]);
        if (moved) set(value[0]! + moved[0], value[1]! + moved[1]);
      },
    });
  };
  const nudge = (event: KeyboardEvent): void => {
    const size = event.shiftKey ? 0.001 : 0.01;
    const step = { ArrowLeft: [-1, 0], ArrowRight: [1, 0], ArrowUp: [0, -1], ArrowDown: [0, 1] }[
      event.key
    ];
    if (!step || event.altKey) return;
    event.preventDefault();
    set(value[0]! + step[0]! * size, value[1]! + step[1]! * size);
  };
  // The camera's ring lies around the position's, so that both can be had where they meet.
  const sign = kind === "position" ? "M0-9V9M-9 0H9" : "M-18 0H-13M13 0H18M0-18V-13M0 13V18";
  const radius = kind === "position" ? 9 : 16;
  return (
    <g
      class={`handle ${kind}`}
      transform={`translate(${x} ${y})`}
      role="button"
      tabindex={0}
      aria-label={`Move ${row.name}`}
      onPointerDown={press}
      onKeyDown={nudge}
    >
      <title>{row.name}</title>
      <circle class="grip" r={radius + 2} />
      <circle r={radius} />
      <path d={sign} />
    </g>
  );
}

interface BeadProps {
  row: Row;
  at: Place;
  lines: readonly Outline[];
  /** Percent by which the outline is shifted under the bead. */
  shift: number;
  placing: Placing;
  value: number;
  kind: "start" | "end" | "offset";
}

/** Percent of the outline past the seam of a closed one at which a bead still waits there. */
const seam = 8;

/** The value in the row's range: held at its ends near the seam, beyond it round by whole turns. */
function heldAtSeam(row: Row, value: number): number {
  const over = value - clampToRow(row, value);
  return clampToRow(row, Math.abs(over) > seam ? value - Math.sign(over) * 100 : value);
}

/** A bead on the outline; it stays on it while it is dragged. */
function Bead({ row, at, lines, shift, placing, value, kind }: BeadProps) {
  const session = useSession();
  const [x, y] = onBoard(placing, at);
  const press = (event: PointerEvent): void => {
    event.stopPropagation();
    event.preventDefault();
    let current = value;
    hold(event, session.gestureOn(row), {
      move: (dx, dy) => {
        const place: Place = [at[0] + dx / placing.scaleX, at[1] + dy / placing.scaleY];
        const share = shareNear(lines, place) - shift / 100;
        current = heldAtSeam(row, tidy(unwound(share, current / 100) * 100, 2));
        session.setValue(row, current, `drag ${row.label}`);
      },
    });
  };
  const nudge = (event: KeyboardEvent): void => {
    const step = arrowDirection(event) * (event.shiftKey ? 0.1 : 1);
    if (step !== 0) session.setValue(row, clampToRow(row, tidy(value + step)));
  };
  return (
    <g
      class={`bead ${kind}`}
      transform={`translate(${x} ${y})`}
      role="slider"
      tabindex={0}
      aria-label={`${row.label} on the path`}
      aria-valuemin={row.min ?? 0}
      aria-valuemax={row.max ?? 100}
      aria-valuenow={value}
      onPointerDown={press}
      onKeyDown={nudge}
    >
      <title>{row.label}</title>
      <circle class="grip" r={kind === "offset" ? 12 : 8} />
      <circle r={kind === "offset" ? 9 : 5} />
    </g>
  );
}
