import type { Row } from "../document/table";
import { tidy } from "../document/writing";
import { arrowDirection, hold, type Gesture } from "./hooks";

interface Props {
  row: Row;
  value: number;
  shown: string;
  disabled: boolean;
  change: (value: number) => void;
  gesture: Gesture;
}

/** Degrees on a dial; going round counts turns. Ctrl snaps to 15 degrees. */
export function Dial({ row, value, shown, disabled, change, gesture }: Props) {
  const press = (event: PointerEvent & { currentTarget: HTMLElement }): void => {
    if (disabled) return;
    const box = event.currentTarget.getBoundingClientRect();
    const centre = [box.left + box.width / 2, box.top + box.height / 2] as const;
    let last = bearing(centre, event);
    let turned = value;
    hold(event, gesture, {
      move: (_dx, _dy, next) => {
        const now = bearing(centre, next);
        turned += ((now - last + 540) % 360) - 180;
        last = now;
        const step = next.ctrlKey ? 15 : next.shiftKey ? 0.1 : 1;
        change(tidy(Math.round(turned / step) * step));
      },
    });
  };
  const turn = (event: KeyboardEvent): void => {
    const direction = disabled ? 0 : arrowDirection(event);
    const size = event.shiftKey ? 0.1 : event.ctrlKey ? 15 : 1;
    if (direction !== 0) change(tidy(value + direction * size));
  };
  return (
    <div class="dialplace">
      <div
        class="dial"
        role="slider"
        tabIndex={-1}
        aria-label={row.label}
        aria-disabled={disabled}
        aria-valuemin={row.min ?? -3600}
        aria-valuemax={row.max ?? 3600}
        aria-valuenow={value}
        aria-valuetext={shown}
        onPointerDown={press}
        onKeyDown={turn}
      >
        <i style={{ transform: `rotate(${value}deg)` }} />
      </div>
      <Turns value={value} />
    </div>
  );
}

/** Whole turns as dots behind the dial. */
function Turns({ value }: { value: number }) {
  const turns = Math.min(10, Math.abs(Math.trunc(value / 360)));
  return (
    <span class="turns" aria-hidden="true">
      {Array.from({ length: turns }, (_, index) => (
        <i key={index} />
      ))}
    </span>
  );
}

/** Degrees clockwise from twelve o'clock. */
function bearing([x, y]: readonly [number, number], event: PointerEvent): number {
  return (Math.atan2(event.clientX - x, y - event.clientY) * 180) / Math.PI;
}
