import { clockText, numberText } from "../document/display";
import { filmRange, filmRate, playRange, type State } from "../document/state";
import { deleteSelection, fitTime } from "./commands";
import { EasingSelect } from "./EasingSelect";
import { tidy } from "../document/writing";
import { classes, useSession } from "./hooks";
import { Icon } from "./icons";
import { NumberField } from "./NumberField";

/** Play, the clock, loop and what concerns the selected keys. */
export function Transport({ state }: { state: State }) {
  const session = useSession();
  const { settings, playing, frame } = state;
  const [first, last] = playRange(state);
  const end = filmRange(state)[1];
  const rate = filmRate(state);
  const toggle = (name: "loop" | "snap" | "asTime" | "curve") => () =>
    session.setSettings({ [name]: !settings[name] });
  return (
    <div class="transport" role="toolbar" aria-label="Play">
      <button
        class="square"
        aria-label="First frame"
        title="First frame (Home)"
        onClick={() => session.goTo(first)}
      >
        <Icon name="first" />
      </button>
      <button
        class="square"
        aria-label="One frame back"
        title="One frame back (←)"
        onClick={() => session.goTo(frame - 1)}
      >
        <Icon name="back" />
      </button>
      <button
        class="square play"
        aria-label={playing !== 0 ? "Pause" : "Play"}
        title="Play, pause (space)"
        aria-pressed={playing !== 0}
        onClick={() => session.film.toggle()}
      >
        <Icon name={playing !== 0 ? "pause" : "play"} />
      </button>
      <button
        class="square"
        aria-label="One frame on"
        title="One frame on (→)"
        onClick={() => session.goTo(frame + 1)}
      >
        <Icon name="next" />
      </button>
      <button
        class="square"
        aria-label="Last frame"
        title="Last frame (End)"
        onClick={() => session.goTo(last)}
      >
        <Icon name="last" />
      </button>
      <span
        class={classes("clock", settings.asTime && "long")}
        title="Frame at the playhead (G: another one)"
      >
        <NumberField
          label="Current frame"
          value={frame}
          shown={settings.asTime ? clockText(frame, rate) : String(frame)}
          commit={(next) => session.goTo(next)}
        />
        <span>/ {settings.asTime ? clockText(end, rate) : end}</span>
      </span>
      <button
        aria-pressed={settings.loop}
        title="Loop (Shift L); I and O set its ends"
        onClick={toggle("loop")}
      >
        <Icon name="loop" />
        <span class={state.loopRange ? "wordy" : undefined}>Loop</span>
        {state.loopRange && loopText(state.loopRange, settings.asTime ? rate : 0)}
      </button>
      {state.loopRange && (
        <button
          class="square"
          aria-label="Loop over the whole film"
          onClick={() => session.update({ loopRange: null })}
        >
          <Icon name="close" />
        </button>
      )}
      <span class="space" />
      <KeyTools state={state} />
      <button
        class="square"
        aria-label="Snap"
        aria-pressed={settings.snap}
        title="Dragged keys snap to the playhead and other keys"
        onClick={toggle("snap")}
      >
        <Icon name="magnet" />
      </button>
      <button title="Frames or time" onClick={toggle("asTime")}>
        {settings.asTime ? "Time" : "Frames"}
      </button>
      <button title="All of the film, or the selection (Shift F)" onClick={() => fitTime(session)}>
        Fit
      </button>
      <button aria-pressed={settings.curve} title="Keys as a curve (C)" onClick={toggle("curve")}>
        Curve
      </button>
    </div>
  );
}

/** The ends of the loop, in frames or, at a rate, in seconds. */
function loopText([first, last]: readonly [number, number], rate: number): string {
  const words = (frame: number) => (rate > 0 ? numberText(tidy(frame / rate, 2)) : String(frame));
  return `${words(first)}–${words(last)}${rate > 0 ? " s" : ""}`;
}

/** What concerns the keys in hand. */
function KeyTools({ state }: { state: State }) {
  const session = useSession();
  return (
    <span class="selected">
      <EasingSelect state={state} />
      {state.selection.size > 0 && (
        <button
          class="square"
          aria-label="Delete the selected keys"
          title="Delete"
          onClick={() => deleteSelection(session)}
        >
          <Icon name="bin" />
        </button>
      )}
    </span>
  );
}
