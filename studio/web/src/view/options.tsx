// Fields for what a scene states about the conversion of its shape. What is usual is not written.

import type { ShapeOptions } from "../document/scene";
import { tidy } from "../document/writing";
import { useSession } from "./hooks";
import { NumberField } from "./NumberField";

interface Props {
  options: ShapeOptions;
  name: string;
  label: string;
}

/** Writes an option, or takes it out where it is as usual. */
export function useOption(name: string, label: string, usual: unknown) {
  const session = useSession();
  return (value: unknown) =>
    session.change(
      `change ${label.toLowerCase()}`,
      session.edit().setShapeOption(name, value === usual ? null : value),
    );
}

/** A menu whose first entry is the usual one. */
export function Choice(props: Props & { entries: Record<string, string> }) {
  const { options, name, label, entries } = props;
  const usual = Object.keys(entries)[0]!;
  const set = useOption(name, label, usual);
  const stated = options[name];
  const value = typeof stated === "string" ? stated : usual;
  return (
    <>
      <span>{label}</span>
      <select
        class="select"
        aria-label={label}
        value={value}
        onChange={(event) => {
          set(event.currentTarget.value);
          event.currentTarget.blur();
        }}
      >
        {!(value in entries) && <option value={value}>{value}</option>}
        {Object.entries(entries).map(([entry, words]) => (
          <option key={entry} value={entry}>
            {words}
          </option>
        ))}
      </select>
    </>
  );
}

export function Measure(props: Props & { usual: number; unit: string; step: number }) {
  const { options, name, label, usual, unit, step } = props;
  const set = useOption(name, label, usual);
  const stated = options[name];
  const value = typeof stated === "number" ? stated : usual;
  return (
    <>
      <span>{label}</span>
      <NumberField
        label={label}
        value={value}
        shown={unit ? `${tidy(value)} ${unit}` : String(tidy(value))}
        step={step}
        commit={(next) => set(tidy(Math.max(0, next)))}
      />
    </>
  );
}

export function Flag({ options, name, label, usual }: Props & { usual: boolean }) {
  const set = useOption(name, label, usual);
  const stated = options[name];
  const value = typeof stated === "boolean" ? stated : usual;
  return (
    <>
      <span>{label}</span>
      <button
        class="switch"
        role="switch"
        aria-checked={value}
        aria-label={label}
        onClick={() => set(!value)}
      />
    </>
  );
}
