import { useCallback, useEffect, useState } from "preact/hooks";
import { colourOf, hexOf, hsvOf, rgbOf, type Hsv } from "../document/display";
import { classes, hold, useLeaving, useMarking, type Gesture } from "./hooks";

interface Props {
  label: string;
  /** Components 0 to 1. */
  value: readonly number[];
  disabled?: boolean;
  change: (rgb: number[]) => void;
  gesture: Gesture;
}

/** A swatch that opens a picker, and the colour as hex. */
export function ColourField({ label, value, disabled, change, gesture }: Props) {
  const [open, setOpen] = useState(false);
  const close = useCallback(() => setOpen(false), []);
  const place = useLeaving<HTMLDivElement>(close, open);
  const hex = hexOf(value);
  return (
    <>
      <div class="colour" ref={place}>
        <button
          class="swatch"
          aria-label={`${label}: pick a colour`}
          aria-expanded={open}
          disabled={disabled}
          style={{ background: hex }}
          onClick={() => setOpen(!open)}
        />
        {open && <Picker value={value} change={change} gesture={gesture} />}
      </div>
      <HexField label={`${label} as hex`} hex={hex} disabled={disabled} change={change} />
    </>
  );
}

interface HexProps {
  label: string;
  hex: string;
  disabled?: boolean | undefined;
  change: (rgb: number[]) => void;
}

function HexField({ label, hex, disabled, change }: HexProps) {
  const [typed, setTyped] = useState<string | null>(null);
  const marking = useMarking(() => setTyped(hex));
  const bad = typed !== null && colourOf(typed) === null;
  const take = (written: string): void => {
    const rgb = written === hex ? null : colourOf(written);
    setTyped(null);
    if (rgb) change(rgb);
  };
  return (
    <input
      class={classes("number hex", bad && "bad")}
      aria-label={label}
      aria-invalid={bad}
      title={bad ? "#rrggbb, or three numbers from 0 to 1" : undefined}
      spellcheck={false}
      disabled={disabled}
      value={typed ?? hex}
      {...marking}
      onInput={(event) => setTyped(event.currentTarget.value)}
      onBlur={(event) => take(event.currentTarget.value)}
      onKeyDown={(event) => {
        if (event.key === "Escape") event.currentTarget.value = hex;
        if (event.key === "Escape" || event.key === "Enter") event.currentTarget.blur();
      }}
    />
  );
}

type PickerProps = Pick<Props, "value" | "change" | "gesture">;

/** Saturation and value on a square, hue on a strip. Keeps the hue of greys while it is open. */
function Picker({ value, change, gesture }: PickerProps) {
  const [hsv, setHsv] = useState<Hsv>(() => hsvOf(value));
  const own = hexOf(rgbOf(hsv));
  useEffect(() => {
    if (hexOf(value) !== own) setHsv(hsvOf(value));
  }, [hexOf(value)]);

  const take = (next: Hsv): void => {
    setHsv(next);
    change(rgbOf(next));
  };
  const follow = (
    event: PointerEvent & { currentTarget: HTMLElement },
    take2: (x: number, y: number) => void,
  ): void => {
    const box = event.currentTarget.getBoundingClientRect();
    hold(event, gesture, {
      threshold: 0,
      move: (_dx, _dy, next) =>
        take2(
          unit((next.clientX - box.left) / box.width),
          unit((next.clientY - box.top) / box.height),
        ),
    });
  };
  const nudge = (event: KeyboardEvent, x: keyof Hsv, y: keyof Hsv | null, size: number): void => {
    const dx = { ArrowLeft: -1, ArrowRight: 1 }[event.key] ?? 0;
    const dy = { ArrowDown: -1, ArrowUp: 1 }[event.key] ?? 0;
    if (dx === 0 && dy === 0) return;
    event.preventDefault();
    const scale = (name: keyof Hsv) => (name === "h" ? 360 : 1);
    const moved = { ...hsv, [x]: Math.min(scale(x), Math.max(0, hsv[x] + dx * size * scale(x))) };
    if (y) moved[y] = unit(moved[y] + dy * size);
    take(moved);
  };
  return (
    <div class="picker" role="group" aria-label="Colour">
      <div
        class="field"
        role="slider"
        tabIndex={0}
        aria-label="Saturation and brightness"
        aria-valuenow={Math.round(hsv.s * 100)}
        aria-valuetext={`saturation ${Math.round(hsv.s * 100)} %, brightness ${Math.round(hsv.v * 100)} %`}
        style={{ background: `hsl(${hsv.h} 100% 50%)` }}
        onPointerDown={(event) => follow(event, (s, y) => take({ ...hsv, s, v: 1 - y }))}
        onKeyDown={(event) => nudge(event, "s", "v", event.shiftKey ? 0.1 : 0.01)}
      >
        <i style={{ left: `${hsv.s * 100}%`, top: `${(1 - hsv.v) * 100}%` }} />
      </div>
      <div
        class="hue"
        role="slider"
        tabIndex={0}
        aria-label="Hue"
        aria-valuemin={0}
        aria-valuemax={360}
        aria-valuenow={Math.round(hsv.h)}
        onPointerDown={(event) =>
          follow(event, (x) => take({ ...hsv, h: Math.min(359.9, x * 360) }))
        }
        onKeyDown={(event) => nudge(event, "h", null, event.shiftKey ? 0.1 : 1 / 360)}
      >
        <i style={{ left: `${(hsv.h / 360) * 100}%` }} />
      </div>
    </div>
  );
}

function unit(share: number): number {
  return Math.min(1, Math.max(0, share));
}
