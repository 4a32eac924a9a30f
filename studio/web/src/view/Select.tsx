import { useRef } from "preact/hooks";
import { classes } from "./hooks";

export type Entry = readonly [value: string, words: string];

interface Props {
  label: string;
  value: string;
  entries: readonly Entry[];
  pick: (value: string) => void;
  disabled?: boolean;
  wide?: boolean;
  title?: string;
}

/** A menu of words. A value that is none of its entries stands in front of them. */
export function Select({ label, value, entries, pick, disabled, wide, title }: Props) {
  const pressed = useRef(false);
  const known = entries.some(([entry]) => entry === value);
  const all = known ? entries : [[value, value] as const, ...entries];
  return (
    <select
      class={classes("select", wide && "wide")}
      aria-label={label}
      title={title}
      disabled={disabled}
      value={value}
      onChange={({ currentTarget }) => {
        pick(currentTarget.value);
        // Back to the shortcuts after a press; who came by keyboard goes on from here.
        if (pressed.current) currentTarget.blur();
      }}
      onPointerDown={() => (pressed.current = true)}
      onBlur={() => (pressed.current = false)}
    >
      {all.map(([entry, words]) => (
        <option key={entry} value={entry}>
          {words}
        </option>
      ))}
    </select>
  );
}

/** Entries whose words are their values. */
export function namedAs(values: readonly string[]): Entry[] {
  return values.map((value) => [value, value]);
}
