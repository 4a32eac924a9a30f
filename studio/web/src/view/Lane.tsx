import type { KeyId } from "../document/edits";
import type { Easing } from "../document/scene";
import { xOf, type TimeView } from "../document/timescale";
import { classes } from "./hooks";

export interface LaneKey {
  frame: number;
  /** The keys that this sign stands for. */
  ids: KeyId[];
  selected: boolean;
  label: string;
  easing: Easing | null;
}

interface Props {
  time: TimeView;
  width: number;
  keys: LaneKey[];
  summary?: boolean;
  press: (event: PointerEvent, key: LaneKey) => void;
  walk: (event: KeyboardEvent & { currentTarget: Element }, key: LaneKey) => void;
  /** Opens a menu at a place of the window. */
  open?: (x: number, y: number, key: LaneKey) => void;
}

/** One line of keys. Keys outside the view are not drawn. */
export function Lane({ time, width, keys, summary, press, walk, open }: Props) {
  const first = keys[0];
  const last = keys[keys.length - 1];
  const line = !summary && first && last && keys.length > 1;
  const visible = keys.filter(({ frame }) => {
    const x = xOf(time, width, frame);
    return x >= -8 && x <= width + 8;
  });
  // One stop for Tab in each lane; arrows go on from there.
  const stop = visible.find((key) => key.selected) ?? visible[0];
  const clip = (frame: number) => Math.min(width + 20, Math.max(-20, xOf(time, width, frame)));
  return (
    <svg class="keyline" width={width} height="24">
      {line && <path class="thread" d={`M${clip(first.frame)} 12H${clip(last.frame)}`} />}
      {!summary &&
        keys.map((key, index) => <Held key={key.frame} lane={keys} index={index} clip={clip} />)}
      {visible.map((key) => (
        <g
          key={key.frame}
          class={classes(
            "keysign",
            summary && "summary",
            key.selected && "selected",
            key.easing && "eased",
          )}
          transform={`translate(${xOf(time, width, key.frame)} 12)`}
          data-frame={key.frame}
          role="button"
          tabindex={key === stop ? 0 : -1}
          aria-label={key.label}
          aria-pressed={key.selected}
          onPointerDown={(event) => press(event, key)}
          onKeyDown={(event) => {
            if (event.key !== "Enter") return walk(event, key);
            const box = event.currentTarget.getBoundingClientRect();
            open?.(box.right, box.bottom, key);
          }}
          onContextMenu={(event) => {
            event.preventDefault();
            open?.(event.clientX, event.clientY, key);
          }}
        >
          <title>{key.label}</title>
          <rect class="grip" x="-8" y="-11" width="16" height="22" />
          <path d={signOf(key.easing)} />
        </g>
      ))}
    </svg>
  );
}

/** A held stretch is broken: nothing moves in it. */
function Held({
  lane,
  index,
  clip,
}: {
  lane: LaneKey[];
  index: number;
  clip: (frame: number) => number;
}) {
  const key = lane[index]!;
  const next = lane[index + 1];
  if (key.easing !== "hold" || !next) return null;
  return <path class="held" d={`M${clip(key.frame)} 12H${clip(next.frame)}`} />;
}

/** A diamond; eased keys are round on the side where they are gentle, held ones square. */
function signOf(easing: Easing | null): string {
  switch (easing) {
    case "hold":
      return "M-4.500-4.500H4.500V4.500H-4.500Z";
    case "ease":
      return "M-5 0A5 5 0 1 1 5 0A5 5 0 1 1-5 0Z";
    case "ease-in":
      return "M-5.500 0L0-5.500A5.500 5.500 0 0 1 0 5.500Z";
    case "ease-out":
      return "M5.500 0L0-5.500A5.500 5.500 0 0 0 0 5.500Z";
    default:
      return "M0-5.500L5.500 0 0 5.500-5.500 0Z";
  }
}
