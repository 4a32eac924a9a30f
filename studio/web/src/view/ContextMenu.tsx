import { useEffect, useRef } from "preact/hooks";
import { useLeaving } from "./hooks";

export interface MenuItem {
  label: string;
  hint?: string;
  disabled?: boolean;
  checked?: boolean;
  run: () => void;
}

interface Props {
  x: number;
  y: number;
  label: string;
  items: MenuItem[];
  close: () => void;
}

/** A menu at a place of the page; it keeps inside the window. */
export function ContextMenu({ x, y, label, items, close }: Props) {
  const leaving = useLeaving<HTMLDivElement>(close);
  const first = useRef<HTMLButtonElement>(null);
  useEffect(() => first.current?.focus(), []);
  const walk = (event: KeyboardEvent & { currentTarget: HTMLElement }): void => {
    const direction = { ArrowDown: 1, ArrowUp: -1 }[event.key] ?? 0;
    if (direction === 0) return;
    event.preventDefault();
    event.stopPropagation();
    const entries = [
      ...event.currentTarget.querySelectorAll<HTMLButtonElement>("button:not(:disabled)"),
    ];
    const at = entries.findIndex((entry) => entry === document.activeElement);
    entries[(at + direction + entries.length) % entries.length]?.focus();
  };
  const left = Math.max(4, Math.min(x, window.innerWidth - 220));
  const top = Math.max(4, Math.min(y, window.innerHeight - 12 - items.length * 28));
  return (
    <div
      class="menu"
      role="menu"
      aria-label={label}
      ref={leaving}
      style={{ left: `${left}px`, top: `${top}px` }}
      onKeyDown={walk}
    >
      {items.map((item, index) => (
        <button
          key={item.label}
          ref={index === 0 ? first : undefined}
          role={item.checked === undefined ? "menuitem" : "menuitemradio"}
          aria-checked={item.checked}
          disabled={item.disabled}
          onClick={() => {
            item.run();
            close();
          }}
        >
          <span>{item.label}</span>
          {item.hint && <kbd>{item.hint}</kbd>}
        </button>
      ))}
    </div>
  );
}
