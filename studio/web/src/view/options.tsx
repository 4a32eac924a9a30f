// Fields for what a scene states about the conversion of its shape. What is usual is not written.

import { createContext, type ComponentChildren } from "preact";
import { useContext } from "preact/hooks";
import type { ShapeOptions } from "../document/scene";
import { tidy } from "../document/writing";
import { useSession } from "./hooks";
import { NumberField } from "./NumberField";
import { Select } from "./Select";

interface Props {
  name: string;
  label: string;
}

const Stated = createContext<ShapeOptions>({});

/** The fields of one conversion; `options` is what the scene states of it. */
export function Choices({
  options,
  children,
}: {
  options: ShapeOptions;
  children: ComponentChildren;
}) {
  return (
    <div class="choices">
      <Stated.Provider value={options}>{children}</Stated.Provider>
    </div>
  );
}

/** What the scene states, or what is usual where it states nothing of this kind. */
function useStated<T extends string | number | boolean>(name: string, usual: T): T {
  const stated = useContext(Stated)[name];
  return typeof stated === typeof usual ? (stated as T) : usual;
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
  const { name, label, entries } = props;
  const usual = Object.keys(entries)[0]!;
  const set = useOption(name, label, usual);
  const value = useStated<string>(name, usual);
  return (
    <>
      <span>{label}</span>
      <Select label={label} value={value} entries={Object.entries(entries)} pick={set} />
    </>
  );
}

export function Measure(props: Props & { usual: number; unit: string; step: number }) {
  const { name, label, usual, unit, step } = props;
  const set = useOption(name, label, usual);
  const value = useStated<number>(name, usual);
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

export function Flag({ name, label, usual }: Props & { usual: boolean }) {
  const set = useOption(name, label, usual);
  const value = useStated<boolean>(name, usual);
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
