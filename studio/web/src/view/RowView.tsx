import { angleText, dragStep, numberText, unitText, valueText } from "../document/display";
import type { FolderFile } from "../link/api";
import { clampToRow, type Row, type Value } from "../document/table";
import { tidy } from "../document/writing";
import { toggleKey } from "./commands";
import { ColourField } from "./ColourField";
import { Dial } from "./Dial";
import { classes, hold, memo, useSession } from "./hooks";
import { NumberField } from "./NumberField";
import { namedAs, Select } from "./Select";
import { Slider } from "./Slider";

export interface RowProps {
  row: Row;
  value: Value;
  /** Changed from the default, or animated. */
  changed: boolean;
  animated: boolean;
  onKey: boolean;
  disabled: boolean;
  active: boolean;
  files: FolderFile[];
  openMenu: (row: Row, x: number, y: number) => void;
}

/** One parameter: mark, name, controls by its kind, and its keys. */
export const RowView = memo(function RowView(props: RowProps) {
  const { row, changed, animated, disabled, active, openMenu } = props;
  const session = useSession();
  const activate = () => {
    const { activeRow, selection } = session.state;
    if (activeRow !== row.id) session.update({ activeRow: row.id });
    // The row is in hand now and no keys are: what is copied is its value.
    if (selection.size > 0) session.select(new Set());
  };
  return (
    <div
      class={classes(
        "row",
        `is-${row.kind}`,
        disabled && "off",
        !changed && !animated && "same",
        active && "active",
      )}
      data-row={row.name}
      role="group"
      aria-label={row.name}
      aria-disabled={disabled}
      onPointerDown={activate}
      onFocusIn={activate}
      onContextMenu={(event) => {
        event.preventDefault();
        openMenu(row, event.clientX, event.clientY);
      }}
    >
      <button
        class={classes("mark", animated ? "animated" : changed && "changed")}
        aria-label={`Reset ${row.label}`}
        title={changed || animated ? "Reset to default (keys stay)" : undefined}
        tabIndex={changed || animated ? 0 : -1}
        onClick={() =>
          session.change(`reset ${row.label}`, session.edit().reset(row, session.state.frame))
        }
      />
      <RowLabel {...props} />
      <RowControls {...props} />
      {(row.animatable || animated) && row.kind !== "shape" ? <KeyButtons {...props} /> : <span />}
    </div>
  );
});

function isScalar(row: Row): boolean {
  return row.kind === "float" || row.kind === "angle";
}

/** The name; dragging it changes the value, finer with Shift, coarser with Ctrl. */
function RowLabel({ row, value, disabled }: RowProps) {
  const session = useSession();
  const draggable = !disabled && (isScalar(row) || row.kind === "point");
  const press = (event: PointerEvent): void => {
    if (!draggable) return;
    event.preventDefault();
    let x = event.clientX;
    let y = event.clientY;
    let current = typeof value === "object" ? [...value] : [Number(value)];
    hold(event, session.gesture, {
      threshold: 3,
      move: (_dx, _dy, next) => {
        const step = dragStep(row, next.shiftKey, next.ctrlKey);
        const moved = [next.clientX - x, next.clientY - y];
        [x, y] = [next.clientX, next.clientY];
        current = current.map((part, index) => clampToRow(row, part + moved[index]! * step));
        const shown = current.map((part) => tidy(part));
        session.setValue(row, row.kind === "point" ? shown : shown[0]!, `drag ${row.label}`);
      },
    });
  };
  return (
    <span class={classes("label", draggable && "drag")} title={row.name} onPointerDown={press}>
      {row.label}
    </span>
  );
}

function RowControls(props: RowProps) {
  switch (props.row.kind) {
    case "float":
    case "angle":
      return <ScalarControls {...props} />;
    case "point":
      return <PointControls {...props} />;
    case "colour":
      return <ColourControls {...props} />;
    case "toggle":
      return <Switch {...props} />;
    case "menu":
    case "presets":
      return <MenuControl {...props} />;
    case "shape":
      return <ShapeControl {...props} />;
  }
}

function ScalarControls({ row, value, disabled }: RowProps) {
  const session = useSession();
  const number = Number(value);
  const shown = valueText(row, value);
  const change = (next: number) => session.setValue(row, tidy(clampToRow(row, next), 5));
  const Control = row.kind === "angle" ? Dial : Slider;
  return (
    <>
      <Control
        row={row}
        value={number}
        shown={shown}
        disabled={disabled}
        change={change}
        gesture={session.gesture}
      />
      <NumberField
        label={row.label}
        value={tidy(number)}
        shown={row.kind === "angle" ? angleText(number) : numberText(number) + unitText(row)}
        step={row.step || 1}
        disabled={disabled}
        commit={change}
      />
    </>
  );
}

function PointControls({ row, value, disabled }: RowProps) {
  const session = useSession();
  const [x = 0, y = 0] = value as readonly number[];
  const field = (axis: "x" | "y", part: number, set: (part: number) => number[]) => (
    <NumberField
      label={`${row.label} ${axis}`}
      value={tidy(part)}
      shown={tidy(part).toFixed(3)}
      step={0.01}
      disabled={disabled}
      class={axis}
      commit={(next) => session.setValue(row, set(tidy(next, 5)))}
    />
  );
  return (
    <>
      {field("x", x, (part) => [part, y])}
      {field("y", y, (part) => [x, part])}
    </>
  );
}

function ColourControls({ row, value, disabled }: RowProps) {
  const session = useSession();
  return (
    <ColourField
      label={row.label}
      value={value as readonly number[]}
      disabled={disabled}
      change={(rgb) => session.setValue(row, rgb)}
      gesture={session.gesture}
    />
  );
}

function Switch({ row, value, disabled }: RowProps) {
  const session = useSession();
  return (
    <button
      class="switch"
      role="switch"
      aria-checked={value === true}
      aria-label={row.label}
      disabled={disabled}
      onClick={() =>
        session.setValue(row, value !== true, `${value ? "switch off" : "switch on"} ${row.label}`)
      }
    />
  );
}

function MenuControl({ row, value, disabled }: RowProps) {
  const session = useSession();
  return (
    <Select
      label={row.label}
      disabled={disabled}
      value={String(value)}
      entries={(row.entries ?? []).map((entry, index) => [String(index), entry])}
      pick={(index) => session.setValue(row, Number(index))}
    />
  );
}

function ShapeControl({ row, value, files }: RowProps) {
  const session = useSession();
  const names = files.filter((file) => file.kind === "svg").map((file) => file.name);
  return (
    <Select
      label={row.label}
      value={String(value)}
      entries={[["", "None"], ...namedAs(names)]}
      pick={(name) => session.change("choose a shape", session.edit().setShape(name))}
    />
  );
}

/** Previous key, key here, next key. */
function KeyButtons({ row, animated, onKey }: RowProps) {
  const session = useSession();
  const jump = (direction: 1 | -1) => {
    const { frame } = session.state;
    const frames = session
      .edit()
      .keysOf(row)
      .map((key) => key.frame);
    const beyond = frames.filter((each) => (each - frame) * direction > 0);
    const target = direction > 0 ? beyond[0] : beyond[beyond.length - 1];
    if (target !== undefined) session.goTo(target);
  };
  return (
    <span class="keys">
      <button
        class="jump"
        aria-label={`Previous key of ${row.label}`}
        disabled={!animated}
        onClick={() => jump(-1)}
      >
        ‹
      </button>
      <button
        class={classes("key", animated && "has", onKey && "on")}
        aria-label={`Key of ${row.label} here`}
        aria-pressed={onKey}
        onClick={() => toggleKey(session, row.id, session.state.frame)}
      >
        <i />
      </button>
      <button
        class="jump"
        aria-label={`Next key of ${row.label}`}
        disabled={!animated}
        onClick={() => jump(1)}
      >
        ›
      </button>
    </span>
  );
}
