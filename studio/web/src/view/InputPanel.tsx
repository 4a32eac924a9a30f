import { readable, type State } from "../document/state";
import { tidy } from "../document/writing";
import type { SceneInput } from "../document/scene";
import { ColourField } from "./ColourField";
import { useSession } from "./hooks";
import { NumberField } from "./NumberField";

/** What lies under the stroke, and the frame it is drawn on. */
export function InputPanel({ state }: { state: State }) {
  const scene = readable(state);
  if (!scene) return null;
  return (
    <div class="input">
      <h2>Input</h2>
      <InputChoice state={state} input={scene.input} />
      <Facts state={state} />
      <FrameFields state={state} />
    </div>
  );
}

function InputChoice({ state, input }: { state: State; input: SceneInput }) {
  const session = useSession();
  const files = state.file.files.filter((file) => file.kind === "picture" || file.kind === "clip");
  const names = files.map((file) => file.name);
  const current = input.kind === "file" || input.kind === "raw" ? input.file : "";
  if (current && !names.includes(current)) names.unshift(current);
  const choose = (value: string) => {
    const stated =
      value === "none"
        ? null
        : value === "color"
          ? { color: [0, 0, 0, 1] }
          : { file: value.slice(5) };
    session.change("choose an input", session.edit().setHeader("input", stated));
  };
  return (
    <>
      <select
        class="select wide"
        aria-label="Input"
        value={current ? `file:${current}` : input.kind}
        onChange={(event) => {
          choose(event.currentTarget.value);
          event.currentTarget.blur();
        }}
      >
        <option value="none">Nothing (transparent)</option>
        <option value="color">A colour</option>
        {names.map((name) => (
          <option key={name} value={`file:${name}`}>
            {name}
          </option>
        ))}
      </select>
      {input.kind === "color" && <InputColour rgba={input.rgba} />}
    </>
  );
}

function InputColour({ rgba }: { rgba: readonly number[] }) {
  const session = useSession();
  const alpha = rgba[3] ?? 1;
  const set = (rgb: readonly number[], a: number) =>
    session.change(
      "change input colour",
      session.edit().setHeader("input", { color: [...rgb, a] }),
    );
  return (
    <div class="colourline">
      <ColourField
        label="Input colour"
        value={rgba.slice(0, 3)}
        change={(rgb) => set(rgb, alpha)}
        begin={() => session.beginGesture()}
        end={() => session.endGesture()}
      />
      <NumberField
        label="Input alpha"
        value={tidy(alpha * 100)}
        shown={`α ${tidy(alpha * 100, 1)} %`}
        step={1}
        commit={(percent) => set(rgba.slice(0, 3), tidy(Math.min(100, Math.max(0, percent)) / 100))}
      />
    </div>
  );
}

/** What the file is, and the button that takes its size and rate over. */
function Facts({ state }: { state: State }) {
  const session = useSession();
  const input = state.check?.plan?.input;
  if (!input?.size) return null;
  const { size, fps, frames } = input;
  const facts = [
    `${size[0]} × ${size[1]}`,
    fps ? `${tidy(fps, 3)} fps` : "",
    frames && frames > 1 ? `${frames} frames` : "",
  ].filter(Boolean);
  const takeOver = () => {
    session.beginGesture();
    const headers: [string, unknown][] = [["size", size]];
    if (fps) headers.push(["fps", tidy(fps, 3)]);
    if (frames && frames > 1) headers.push(["frames", [0, frames - 1]]);
    headers.forEach(([key, value]) =>
      session.change("take over the input's size and rate", session.edit().setHeader(key, value)),
    );
    session.endGesture();
  };
  return (
    <div class="facts">
      <span>{facts.join(" · ")}</span>
      <button onClick={takeOver} title="Size, rate and length of the input become the scene's">
        Take over
      </button>
    </div>
  );
}

function FrameFields({ state }: { state: State }) {
  const session = useSession();
  const scene = readable(state);
  const plan = state.check?.plan;
  const size = scene?.size ?? plan?.size ?? [1280, 720];
  const frames = scene?.frames ?? plan?.frames ?? [0, 0];
  const fps = scene?.fps ?? plan?.fps ?? 30;
  const set = (key: string, value: unknown, name: string) =>
    session.change(name, session.edit().setHeader(key, value));
  const whole = (value: number, low: number, high: number) =>
    Math.round(Math.min(high, Math.max(low, value)));
  const side = (value: number) => whole(value, 1, 32767);
  const frame = (value: number) => whole(value, 0, 10_000_000);
  return (
    <div class="frame">
      <h2>Frame</h2>
      <div class="fields">
        <span>Size</span>
        <NumberField
          label="Width"
          value={size[0]}
          shown={String(size[0])}
          step={2}
          commit={(w) => set("size", [side(w), size[1]], "change size")}
        />
        <NumberField
          label="Height"
          value={size[1]}
          shown={String(size[1])}
          step={2}
          commit={(h) => set("size", [size[0], side(h)], "change size")}
        />
        <span>Frames</span>
        <NumberField
          label="First frame"
          value={frames[0]}
          shown={String(frames[0])}
          step={1}
          commit={(f) => set("frames", [Math.min(frame(f), frames[1]), frames[1]], "change frames")}
        />
        <NumberField
          label="Last frame"
          value={frames[1]}
          shown={String(frames[1])}
          step={1}
          commit={(f) => set("frames", [frames[0], Math.max(frame(f), frames[0])], "change frames")}
        />
        <span>Rate</span>
        <NumberField
          label="Frames per second"
          value={fps}
          shown={`${tidy(fps, 3)} fps`}
          step={1}
          commit={(rate) => set("fps", tidy(Math.max(0.001, rate), 3), "change rate")}
        />
        <select
          class="select"
          aria-label="Pixel format"
          value={scene?.format ?? "rgba8"}
          onChange={(event) => {
            set("format", event.currentTarget.value, "change format");
            event.currentTarget.blur();
          }}
        >
          {state.table.data.formats.map((format) => (
            <option key={format} value={format}>
              {format}
            </option>
          ))}
        </select>
      </div>
    </div>
  );
}
