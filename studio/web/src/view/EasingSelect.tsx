import { keyId, partsOf, type KeyId } from "../document/edits";
import { eased, type Easing } from "../document/scene";
import { readable, type State } from "../document/state";
import { useSession } from "./hooks";
import { Select } from "./Select";

export const easingNames: Record<Easing, string> = {
  linear: "Linear",
  hold: "Hold",
  ease: "Ease",
  "ease-in": "Ease in",
  "ease-out": "Ease out",
};

const names = Object.entries(easingNames);

/** The easing that all of these keys have; nothing when they differ. */
export function commonEasing(state: State, keys: ReadonlySet<KeyId>): Easing | null {
  const scene = readable(state);
  const found = new Set<Easing>();
  for (const id of keys) {
    const { row } = partsOf(id);
    const key = scene?.tracks.get(row)?.keys.find((each) => keyId(row, each.frame) === id);
    if (key) found.add(key.easing ?? "linear");
  }
  return found.size === 1 ? [...found][0]! : null;
}

/** The keys that are worked on: the selected ones, or that of the row in hand at the playhead. */
function keysInHand({ selection, activeRow, frame, ...state }: State): ReadonlySet<KeyId> {
  const keys = state.scene.fault ? [] : (state.scene.tracks.get(activeRow ?? -1)?.keys ?? []);
  const here = keys.some((key) => key.frame === frame);
  return selection.size === 0 && here ? new Set([keyId(activeRow!, frame)]) : selection;
}

/** How the motion goes on from the keys in hand; where there are none, from keys yet to be set. */
export function EasingSelect({ state }: { state: State }) {
  const session = useSession();
  const keys = keysInHand(state);
  const { newEasing } = state.settings;
  const common = keys.size > 0 ? commonEasing(state, keys) : newEasing;
  const pick = (name: string) => {
    const easing = name as Easing;
    if (keys.size === 0) session.setSettings({ newEasing: easing });
    else session.change("change easing", session.edit().setEasing(keys, easing));
  };
  return (
    <>
      <span class="quiet">{keyWords(state.selection.size, keys.size)}</span>
      {common && <EasingCurve easing={common} />}
      <Select
        label={keys.size === 0 ? "Easing of new keys" : "Easing of the selected keys"}
        title={
          keys.size === 0
            ? "How motion goes on from keys yet to be set"
            : "How it goes on from here"
        }
        value={common ?? ""}
        entries={common ? names : [["", "Mixed"], ...names]}
        pick={pick}
      />
    </>
  );
}

function keyWords(selected: number, inHand: number): string {
  if (inHand === 0) return "New keys";
  if (selected === 0) return "Key here";
  return selected === 1 ? "1 key" : `${selected} keys`;
}

/** The motion from one key to the next, drawn small. */
function EasingCurve({ easing }: { easing: Easing }) {
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
