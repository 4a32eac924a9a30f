import { useState } from "preact/hooks";
import { evaluate } from "../document/arithmetic";
import { classes } from "./hooks";

interface Props {
  label: string;
  value: number;
  /** How the value reads while nobody types. */
  shown: string;
  step: number;
  disabled?: boolean;
  class?: string;
  commit: (value: number) => void;
}

/** A number that may be typed as arithmetic. Enter takes it, Escape leaves it, arrows step it. */
export function NumberField({ label, value, shown, step, disabled, class: name, commit }: Props) {
  const [typed, setTyped] = useState<string | null>(null);
  const bad = typed !== null && evaluate(typed, value) === null;

  const take = (written: string): void => {
    const result = typed === null ? null : evaluate(written, value);
    setTyped(null);
    if (result !== null && result !== value) commit(result);
  };
  const press = (event: KeyboardEvent & { currentTarget: HTMLInputElement }): void => {
    const direction = event.key === "ArrowUp" ? 1 : event.key === "ArrowDown" ? -1 : 0;
    if (direction !== 0) {
      event.preventDefault();
      const size = step * (event.shiftKey ? 0.1 : event.ctrlKey ? 10 : 1);
      setTyped(null);
      commit(value + direction * size);
    } else if (event.key === "Enter") {
      event.currentTarget.blur();
    } else if (event.key === "Escape") {
      event.stopPropagation();
      event.preventDefault();
      event.currentTarget.value = String(value); // which is what leaving the field then takes
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
      value={typed ?? shown}
      onFocus={(event) => {
        setTyped(String(value));
        const field = event.currentTarget;
        // After the press that gave the focus, which would put the caret.
        requestAnimationFrame(() => document.activeElement === field && field.select());
      }}
      onInput={(event) => setTyped(event.currentTarget.value)}
      onKeyDown={press}
      onBlur={(event) => take(event.currentTarget.value)}
    />
  );
}
