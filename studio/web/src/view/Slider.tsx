import { sliderShare, sliderValue } from "../document/display";
import type { Row } from "../document/table";
import { arrowDirection, hold, type Gesture } from "./hooks";

interface Props {
  row: Row;
  value: number;
  shown: string;
  disabled: boolean;
  change: (value: number) => void;
  gesture: Gesture;
}

/**
 * A slider over the row's slider range; the value itself may lie beyond it. By keyboard the number
 * beside it does the same, so Tab goes there at once.
 */
export function Slider({ row, value, shown, disabled, change, gesture }: Props) {
  const low = sliderShare(row, Math.max(row.sliderMin ?? 0, 0));
  const share = sliderShare(row, value);
  const press = (event: PointerEvent & { currentTarget: HTMLElement }): void => {
    if (disabled) return;
    const box = event.currentTarget.getBoundingClientRect();
    hold(event, gesture, {
      threshold: 0,
      move: (_dx, _dy, next) => {
        const share = (next.clientX - box.left - 5) / (box.width - 10);
        change(sliderValue(row, share, next.shiftKey));
      },
    });
  };
  const step = (event: KeyboardEvent): void => {
    const direction = disabled ? 0 : arrowDirection(event);
    const size = sliderStep(row) * (event.shiftKey ? 0.1 : event.ctrlKey ? 10 : 1);
    if (direction !== 0) change(value + direction * size);
  };
  return (
    <div
      class="slider"
      role="slider"
      tabIndex={-1}
      aria-label={row.label}
      aria-disabled={disabled}
      aria-valuemin={row.sliderMin ?? 0}
      aria-valuemax={row.sliderMax ?? 1}
      aria-valuenow={value}
      aria-valuetext={shown}
      onPointerDown={press}
      onKeyDown={step}
    >
      <span class="groove">
        <i
          style={{
            left: `${Math.min(low, share) * 100}%`,
            width: `${Math.abs(share - low) * 100}%`,
          }}
        />
        <b style={{ left: `${share * 100}%` }} />
      </span>
    </div>
  );
}

function sliderStep(row: Row): number {
  const span = (row.sliderMax ?? 1) - (row.sliderMin ?? 0);
  return 10 ** Math.floor(Math.log10(span / 20));
}
