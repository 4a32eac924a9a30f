import { useCallback } from "preact/hooks";
import { commands } from "./commands";
import { useLeaving, useSession } from "./hooks";

const groups = ["Play", "Keys", "Picture", "Scene"] as const;

const signs: Record<string, string> = {
  " ": "Space",
  ArrowLeft: "←",
  ArrowRight: "→",
  Escape: "Esc",
  Delete: "Del",
};

/** The keys of a command as they stand on a keyboard. */
export function keyText(keys: string): string {
  return keys
    .split(/\+(?=.)/)
    .map((part) => signs[part] ?? (part.length === 1 ? part.toUpperCase() : part))
    .join(" ");
}

/** Every shortcut, from the list that the keyboard obeys. */
export function HelpPanel() {
  const session = useSession();
  const close = useCallback(() => session.update({ panel: null }), []);
  const place = useLeaving<HTMLDivElement>(close);
  return (
    <div class="panel help" role="dialog" aria-label="Shortcuts" ref={place}>
      {groups.map((group) => (
        <section key={group}>
          <h2>{group}</h2>
          <dl>
            {commands
              .filter((command) => command.group === group)
              .map((command) => (
                <div key={command.label}>
                  <dt>
                    {command.keys.map((keys) => (
                      <kbd key={keys}>{keyText(keys)}</kbd>
                    ))}
                  </dt>
                  <dd>{command.label}</dd>
                </div>
              ))}
          </dl>
        </section>
      ))}
      <section class="mouse">
        <h2>Pointer</h2>
        <p>
          Drag a name, a slider or a dial; <kbd>Shift</kbd> is finer, <kbd>Ctrl</kbd> coarser.
          Number fields reckon: 3*12, +5, 1x30 for a turn and 30°. Right click on a row or a key:
          its menu. On the picture the wheel zooms, dragging pans. In the timeline <kbd>Ctrl</kbd>{" "}
          and the wheel zoom, <kbd>Shift</kbd> and the wheel scroll, a double click sets a key, on a
          key it goes there; a band or <kbd>Shift</kbd> selects several, the blue grips stretch
          them. <kbd>Shift</kbd> and dragging on the ruler set the loop.
        </p>
        <p>
          From key to key by keyboard: <kbd>Tab</kbd> to a row, arrows, <kbd>Space</kbd> to select,{" "}
          <kbd>Enter</kbd> for the menu.
        </p>
      </section>
    </div>
  );
}
