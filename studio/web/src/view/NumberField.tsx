import { useRef, useState } from "preact/hooks";
import { evaluate } from "../document/arithmetic";
import { tidy } from "../document/writing";
import { classes, useMarking } from "./hooks";

interface Props {
  label: string;
  value: number;
  /** How the value reads while nobody types, where that is not the number alone. */
  shown?: string;
  /** What an arrow key adds; 1 where it is not stated. */
  step?: number;
  disabled?: boolean;
  class?: string;
  commit: (value: number) => void;
}

/** A number that may be typed as arithmetic. Enter takes it, Escape leaves it, arrows step it. */
export function NumberField(props: Props) {
  const { label, value, step = 1, disabled, class: name, commit } = props;
  const [typed, setTyped] = useState<string | null>(null);
  // The same number typed again counts: it may be meant as a key.
  const edited = useRef(false);
  // The bare number at once: what is typed next must find it marked.
  const marking = useMarking((field) => setTyped((field.value = String(value))));
  const bad = typed !== null && evaluate(typed, value) === null;

  const take = (written: string): void => {
    const result = edited.current ? evaluate(written, value) : null;
    edited.current = false;
    setTyped(null);
    if (result !== null) commit(result);
  };
  const press = (event: KeyboardEvent & { currentTarget: HTMLInputElement }): void => {
    const direction = event.key === "ArrowUp" ? 1 : event.key === "ArrowDown" ? -1 : 0;
    if (direction !== 0) {
      event.preventDefault();
      const size = step * (event.shiftKey ? 0.1 : event.ctrlKey ? 10 : 1);
      setTyped(null);
      edited.current = false;
      commit(value + direction * size);
      const field = event.currentTarget;
      requestAnimationFrame(() => field.select());
    } else if (event.key === "Enter") {
      event.currentTarget.blur();
    } else if (event.key === "Escape") {
      event.stopPropagation();
      event.preventDefault();
      edited.current = false;
      event.currentTarget.blur();
    }
  };

  return (
    <input
      class={classes("number", name, bad && "bad")}
      aria-label={label}
      aria-invalid={bad}
      title={bad ? "A number, or arithmetic such as 3*12 or +5" : undefined}
      inputMode="decimal"
      spellcheck={false}
      autocomplete="off"
      disabled={disabled}
      value={typed ?? props.shown ?? String(tidy(value))}
      {...marking}
      onInput={(event) => {
        edited.current = true;
        setTyped(event.currentTarget.value);
      }}
      onKeyDown={press}
      onBlur={(event) => take(event.currentTarget.value)}
    />
  );
}
