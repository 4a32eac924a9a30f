import { partsOf } from "../document/edits";
import { numberText } from "../document/display";
import { valueAt, type Key, type Scene } from "../document/scene";
import { readable, type State } from "../document/state";
import { clampToRow, isContinuous, type Row, type Value } from "../document/table";
import { frameAt, xOf } from "../document/timescale";
import { keyId } from "../document/edits";
import { tidy } from "../document/writing";
import { classes, hold, useSession } from "./hooks";
import { snapping } from "./keyGestures";

interface Props {
  state: State;
  width: number;
  height: number;
}

/** The row whose curve is of interest: that of the selection, or the one last used. */
function curveRow(state: State, scene: Scene): Row | undefined {
  const first = [...state.selection][0];
  const id = first ? partsOf(first).row : state.activeRow;
  const animated = (each: number | null) =>
    each !== null && (scene.tracks.get(each)?.keys.length ?? 0) > 0;
  const chosen = animated(id) ? id : [...scene.tracks.keys()].find((each) => animated(each));
  return chosen === undefined || chosen === null ? undefined : state.table.row(chosen);
}

function partsOfValue(value: Value): readonly number[] {
  return typeof value === "object" ? value : [Number(value)];
}

/** A row's value over time, keys as points that move in both directions. */
export function Curve({ state, width, height }: Props) {
  const scene = readable(state);
  const row = scene ? curveRow(state, scene) : undefined;
  if (!scene || !row) return <p class="hint">No parameter has keys.</p>;
  const keys = scene.tracks.get(row.id)?.keys ?? [];
  const lines = sample(scene, row, state, width);
  const all = [
    ...lines.flatMap((line) => line.map(([, value]) => value)),
    ...keys.flatMap((key) => partsOfValue(key.value)),
  ];
  const low = Math.min(...all);
  const high = Math.max(...all);
  const room = (high - low || 1) * 0.12;
  const scale: Scale = { low: low - room, high: high + room, height };
  return (
    <div class="curve">
      <svg width={width} height={height}>
        <Levels scale={scale} width={width} />
        {lines.map((line, part) => (
          <path
            key={part}
            class={`graph part${part}`}
            d={line
              .map(
                ([x, value], index) => `${index ? "L" : "M"}${x} ${yOf(scale, value).toFixed(1)}`,
              )
              .join("")}
          />
        ))}
        {keys.flatMap((key) =>
          partsOfValue(key.value).map((value, part) => (
            <Point
              key={`${key.frame}/${part}`}
              {...{ state, row, keyAt: key, part, value, scale, width }}
            />
          )),
        )}
      </svg>
      <span class="curvename">{row.name}</span>
    </div>
  );
}

interface Scale {
  low: number;
  high: number;
  height: number;
}

function yOf({ low, high, height }: Scale, value: number): number {
  return height - ((value - low) / (high - low)) * height;
}

/** Points of each component's line, three pixels apart and at every key. */
function sample(scene: Scene, row: Row, state: State, width: number): [number, number][][] {
  const { time } = state;
  const frames = Array.from({ length: Math.ceil(width / 3) }, (_, index) =>
    frameAt(time, width, index * 3),
  );
  for (const key of scene.tracks.get(row.id)?.keys ?? []) {
    // Just before a key as well, so that a held value falls upright.
    frames.push(key.frame - 1e-6, key.frame);
  }
  frames.sort((a, b) => a - b);
  const lines: [number, number][][] = [];
  for (const frame of frames) {
    partsOfValue(valueAt(scene, row, frame)).forEach((value, part) => {
      (lines[part] ??= []).push([tidy(xOf(time, width, frame), 1), value]);
    });
  }
  return lines;
}

function Levels({ scale, width }: { scale: Scale; width: number }) {
  const span = scale.high - scale.low;
  const rough = 10 ** Math.floor(Math.log10(span / 2));
  const step = span / rough > 8 ? rough * 5 : span / rough > 4 ? rough * 2 : rough;
  const levels: number[] = [];
  for (let level = Math.ceil(scale.low / step) * step; level < scale.high; level += step)
    levels.push(level);
  return (
    <g class="levels" aria-hidden="true">
      {levels.map((level) => (
        <g key={level} transform={`translate(0 ${yOf(scale, level)})`}>
          <path d={`M0 0H${width}`} />
          <text x="4" y="-3">
            {numberText(tidy(level))}
          </text>
        </g>
      ))}
    </g>
  );
}

interface PointProps {
  state: State;
  row: Row;
  keyAt: Key;
  part: number;
  value: number;
  scale: Scale;
  width: number;
}

function Point({ state, row, keyAt, part, value, scale, width }: PointProps) {
  const session = useSession();
  const id = keyId(row.id, keyAt.frame);
  const press = (event: PointerEvent): void => {
    event.stopPropagation();
    event.preventDefault();
    if (event.button === 0) session.update({ selection: new Set([id]), activeRow: row.id });
    const base = session.edit();
    const perPixel = (scale.high - scale.low) / scale.height;
    const stop = snapping(session, new Set([id]), width);
    hold(event, session.gesture, {
      threshold: 3,
      move: (dx, dy, next) => {
        const fine = next.shiftKey ? 0.1 : 1;
        const valued = isContinuous(row)
          ? withPart(row, keyAt.value, part, value - dy * perPixel * fine)
          : keyAt.value;
        const frame = Math.max(0, stop(keyAt.frame, dx));
        const moved = base.moveKeys(new Set([id]), frame - keyAt.frame);
        const text = session.editOf(moved.text).setKeyValue(row, frame, valued);
        session.changeKeys(`shape ${row.label}`, { text, selection: moved.selection });
      },
    });
  };
  const step = (event: KeyboardEvent): void => {
    const direction = { ArrowUp: 1, ArrowDown: -1 }[event.key] ?? 0;
    if (event.altKey || event.ctrlKey || (direction === 0 && event.key !== " ")) return;
    event.preventDefault();
    event.stopPropagation();
    session.update({ selection: new Set([id]), activeRow: row.id });
    if (direction === 0 || !isContinuous(row)) return;
    const next = value + direction * (row.step || 1) * (event.shiftKey ? 0.1 : 1);
    const valued = withPart(row, keyAt.value, part, next);
    session.change(`shape ${row.label}`, session.edit().setKeyValue(row, keyAt.frame, valued));
  };
  return (
    <g
      class={classes("keysign", state.selection.has(id) && "selected")}
      transform={`translate(${xOf(state.time, width, keyAt.frame)} ${yOf(scale, value)})`}
      role="button"
      aria-label={`${row.name}, frame ${keyAt.frame}: ${numberText(value)}`}
      tabindex={0}
      aria-pressed={state.selection.has(id)}
      onPointerDown={press}
      onKeyDown={step}
    >
      <rect class="grip" x="-9" y="-9" width="18" height="18" />
      <path d="M0-5.500L5.500 0 0 5.500-5.500 0Z" />
    </g>
  );
}

function withPart(row: Row, value: Value, part: number, next: number): Value {
  const held = tidy(clampToRow(row, next), 3);
  return typeof value === "object"
    ? value.map((item, index) => (index === part ? held : item))
    : held;
}
