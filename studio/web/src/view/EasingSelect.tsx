import { keyId, partsOf } from "../document/edits";
import { eased, type Easing } from "../document/scene";
import { readable, type State } from "../document/state";
import { useSession } from "./hooks";

export const easingNames: Record<Easing, string> = {
  linear: "Linear",
  hold: "Hold",
  ease: "Ease",
  "ease-in": "Ease in",
  "ease-out": "Ease out",
};

/** The easing that all selected keys have; nothing when they differ. */
export function commonEasing(state: State): Easing | null {
  const scene = readable(state);
  const found = new Set<Easing>();
  for (const id of state.selection) {
    const { row } = partsOf(id);
    const key = scene?.tracks.get(row)?.keys.find((each) => keyId(row, each.frame) === id);
    if (key) found.add(key.easing ?? "linear");
  }
  return found.size === 1 ? [...found][0]! : null;
}

export function EasingSelect({ state }: { state: State }) {
  const session = useSession();
  const common = commonEasing(state);
  return (
    <>
      {common && <EasingCurve easing={common} />}
      <select
        class="select"
        aria-label="Easing of the selected keys"
        value={common ?? ""}
        onChange={(event) => {
          const easing = event.currentTarget.value as Easing;
          session.change("change easing", session.edit().setEasing(state.selection, easing));
          event.currentTarget.blur();
        }}
      >
        {common === null && <option value="">Mixed</option>}
        {Object.entries(easingNames).map(([name, label]) => (
          <option key={name} value={name}>
            {label}
          </option>
        ))}
      </select>
    </>
  );
}

/** The motion from one key to the next, drawn small. */
export function EasingCurve({ easing }: { easing: Easing }) {
  const steps = Array.from({ length: 13 }, (_, index) => index / 12);
  const held = easing === "hold" ? "L21 3" : "";
  const d =
    steps
      .map((s, index) => `${index ? "L" : "M"}${3 + s * 18} ${15 - eased(easing, s) * 12}`)
      .join("") + held;
  return (
    <svg class="easing" width="24" height="18" viewBox="0 0 24 18" aria-hidden="true">
      <path d={d} />
    </svg>
  );
}
