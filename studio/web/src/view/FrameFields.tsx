import { filmRange, filmRate, filmSize, readable, type State } from "../document/state";
import { tidy } from "../document/writing";
import { useSession } from "./hooks";
import { Icon } from "./icons";
import { NumberField } from "./NumberField";

const foldName = "Frame: pixels";

function held(value: number, low: number, high: number): number {
  return Math.min(high, Math.max(low, value));
}

const side = (value: number) => held(Math.round(value), 1, 32767);
const frameNumber = (value: number) => held(Math.round(value), 0, 10_000_000);
const ratio = (value: number) => tidy(held(value, 0.001, 1000));

/** The frame that is drawn: size, length, rate and format, and the form of its pixels. */
export function FrameFields({ state }: { state: State }) {
  const session = useSession();
  const [width, height] = filmSize(state);
  const [first, last] = filmRange(state);
  const fps = filmRate(state);
  const set = (key: string, value: unknown, name: string) =>
    session.change(name, session.edit().setHeader(key, value));
  return (
    <div class="frame">
      <h2>Frame</h2>
      <div class="fields">
        <span>Size</span>
        <NumberField
          label="Width"
          value={width}
          shown={String(width)}
          step={2}
          commit={(w) => set("size", [side(w), height], "change size")}
        />
        <NumberField
          label="Height"
          value={height}
          shown={String(height)}
          step={2}
          commit={(h) => set("size", [width, side(h)], "change size")}
        />
        <span>Frames</span>
        <NumberField
          label="First frame"
          value={first}
          shown={String(first)}
          step={1}
          commit={(f) => set("frames", [Math.min(frameNumber(f), last), last], "change frames")}
        />
        <NumberField
          label="Last frame"
          value={last}
          shown={String(last)}
          step={1}
          commit={(f) => set("frames", [first, Math.max(frameNumber(f), first)], "change frames")}
        />
        <span>Rate</span>
        <NumberField
          label="Frames per second"
          value={fps}
          shown={`${tidy(fps, 3)} fps`}
          step={1}
          commit={(rate) => set("fps", tidy(Math.max(0.001, rate), 3), "change rate")}
        />
        <Format state={state} />
        <PixelFields state={state} />
      </div>
    </div>
  );
}

function Format({ state }: { state: State }) {
  const session = useSession();
  return (
    <select
      class="select"
      aria-label="Pixel format"
      value={readable(state)?.format ?? "rgba8"}
      onChange={(event) => {
        const format = event.currentTarget.value;
        session.change("change format", session.edit().setHeader("format", format));
        event.currentTarget.blur();
      }}
    >
      {state.table.data.formats.map((format) => (
        <option key={format} value={format}>
          {format}
        </option>
      ))}
    </select>
  );
}

/** What most scenes leave alone; folded until a scene states it or a person asks for it. */
function PixelFields({ state }: { state: State }) {
  const session = useSession();
  const scene = readable(state);
  if (!scene) return null;
  const { pixelAspect, renderScale } = scene;
  const plain = pixelAspect === 1 && renderScale[0] === 1 && renderScale[1] === 1;
  const folded = state.settings.folded[foldName] ?? plain;
  const toggle = () =>
    session.setSettings({ folded: { ...state.settings.folded, [foldName]: !folded } });
  const setScale = (x: number, y: number) =>
    session.change(
      "change render scale",
      session.edit().setHeader("renderScale", x === 1 && y === 1 ? null : [x, y]),
    );
  return (
    <>
      <button class="more" aria-expanded={!folded} onClick={toggle}>
        <Icon name="chevron" />
        Pixels
      </button>
      {!folded && (
        <>
          <span title="Width of a pixel by its height">Aspect</span>
          <NumberField
            label="Pixel aspect ratio"
            value={pixelAspect}
            shown={String(tidy(pixelAspect))}
            step={0.1}
            commit={(aspect) => {
              const stated = ratio(aspect) === 1 ? null : ratio(aspect);
              session.change(
                "change pixel aspect",
                session.edit().setHeader("pixelAspect", stated),
              );
            }}
          />
          <span />
          <span title="0.5 where the frame is a preview at half size">Scale</span>
          <NumberField
            label="Render scale x"
            value={renderScale[0]}
            shown={String(tidy(renderScale[0]))}
            step={0.1}
            commit={(x) => setScale(ratio(x), renderScale[1])}
          />
          <NumberField
            label="Render scale y"
            value={renderScale[1]}
            shown={String(tidy(renderScale[1]))}
            step={0.1}
            commit={(y) => setScale(renderScale[0], ratio(y))}
          />
        </>
      )}
    </>
  );
}
