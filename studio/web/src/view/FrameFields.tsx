import { filmRange, filmRate, filmSize, readable, type State } from "../document/state";
import { tidy } from "../document/writing";
import { useSession } from "./hooks";
import { Icon } from "./icons";
import { NumberField } from "./NumberField";
import { namedAs, Select } from "./Select";

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
  const setSize = (w: number, h: number) =>
    session.setHeader("change size", "size", [side(w), side(h)]);
  const setFrames = (from: number, to: number) =>
    session.setHeader("change frames", "frames", [frameNumber(from), frameNumber(to)]);
  return (
    <div class="frame">
      <h2>Frame</h2>
      <div class="fields">
        <span>Size</span>
        <NumberField label="Width" value={width} step={2} commit={(w) => setSize(w, height)} />
        <NumberField label="Height" value={height} step={2} commit={(h) => setSize(width, h)} />
        <span>Frames</span>
        <NumberField
          label="First frame"
          value={first}
          commit={(from) => setFrames(Math.min(from, last), last)}
        />
        <NumberField
          label="Last frame"
          value={last}
          commit={(to) => setFrames(first, Math.max(first, to))}
        />
        <span>Rate</span>
        <NumberField
          label="Frames per second"
          value={fps}
          shown={`${tidy(fps, 3)} fps`}
          commit={(rate) => session.setHeader("change rate", "fps", tidy(Math.max(0.001, rate), 3))}
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
    <Select
      label="Pixel format"
      value={readable(state)?.format ?? "rgba8"}
      entries={namedAs(state.table.data.formats)}
      pick={(format) => session.setHeader("change format", "format", format)}
    />
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
  const setAspect = (aspect: number) =>
    session.setHeader("change pixel aspect", "pixelAspect", aspect === 1 ? null : aspect);
  const setScale = (x: number, y: number) =>
    session.setHeader("change render scale", "renderScale", x === 1 && y === 1 ? null : [x, y]);
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
            step={0.1}
            commit={(aspect) => setAspect(ratio(aspect))}
          />
          <span />
          <span title="0.5 where the frame is a preview at half size">Scale</span>
          <NumberField
            label="Render scale x"
            value={renderScale[0]}
            step={0.1}
            commit={(x) => setScale(ratio(x), renderScale[1])}
          />
          <NumberField
            label="Render scale y"
            value={renderScale[1]}
            step={0.1}
            commit={(y) => setScale(renderScale[0], ratio(y))}
          />
        </>
      )}
    </>
  );
}
