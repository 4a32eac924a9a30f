import { hexOf } from "../document/display";
import { isReducedPicture, type State } from "../document/state";
import type { PixelAnswer } from "../link/api";
import type { Ground } from "../link/frames";
import { useSession } from "./hooks";
import { Icon, type IconName } from "./icons";
import { Select, type Entry } from "./Select";

export interface Pointed {
  x: number;
  y: number;
}

interface Props {
  state: State;
  scale: number;
  fits: boolean;
  pointed: Pointed | null;
  pixel: PixelAnswer | null;
  setZoom: (kind: string) => void;
}

/** What is shown: zoom, pointer, pixel, time to draw, exact or preview, frames dropped. */
export function Strip({ state, scale, fits, pointed, pixel, setZoom }: Props) {
  const { picture, dropped, playing } = state;
  const percent = Math.round(scale * 100);
  return (
    <div class="strip">
      <button aria-pressed={fits} title="Fit the picture (F)" onClick={() => setZoom("fit")}>
        Fit
      </button>
      <button
        aria-pressed={!fits && percent === 100}
        title="One to one (1)"
        onClick={() => setZoom("full")}
      >
        100 %
      </button>
      <b class="zoom">{percent} %</b>
      <Readout pointed={pointed} pixel={pixel} />
      <span class="space" />
      <span
        class="drawn"
        title="Time the frame took to draw; a preview stands for the exact frame while something moves"
      >
        {playing === 0 && !isReducedPicture(state) ? "exact" : "preview"}
        {playing === 0 && <> · {picture.milliseconds.toFixed(1)} ms</>}
      </span>
      {(playing !== 0 || dropped > 0) && <span class="dropped">{dropped} dropped</span>}
      <ViewSwitches state={state} />
    </div>
  );
}

function Readout({ pointed, pixel }: { pointed: Pointed | null; pixel: PixelAnswer | null }) {
  if (!pointed) return <span class="readout" />;
  const whole = pixel?.format.endsWith("8") ?? true;
  const part = (value: number) => (whole ? String(value) : String(Number(value.toPrecision(3))));
  const scale = pixel?.format.endsWith("16") ? 65535 : whole ? 255 : 1;
  return (
    <span class="readout">
      {pointed.x}, {pointed.y}
      {pixel && (
        <>
          <i
            class="chip"
            style={{ background: hexOf(pixel.straight.slice(0, 3).map((c) => c / scale)) }}
          />
          <b title="Straight">{pixel.straight.slice(0, 3).map(part).join(" ")}</b>
          <span>α {part(pixel.straight[3] ?? 0)}</span>
          <span title="Premultiplied" class="premultiplied">
            {pixel.premultiplied.slice(0, 3).map(part).join(" ")}
          </span>
        </>
      )}
    </span>
  );
}

const switches: { name: "path" | "handles" | "safe"; label: string; icon: IconName }[] = [
  { name: "path", label: "Path (P)", icon: "path" },
  { name: "handles", label: "Handles (H)", icon: "handles" },
  { name: "safe", label: "Safe areas (Shift S)", icon: "safe" },
];

function ViewSwitches({ state }: { state: State }) {
  const session = useSession();
  const { settings } = state;
  return (
    <span class="switches">
      {switches.map(({ name, label, icon }) => (
        <button
          key={name}
          class="square"
          title={label}
          aria-label={label}
          aria-pressed={settings[name]}
          onClick={() => session.setSettings({ [name]: !settings[name] })}
        >
          <Icon name={icon} />
        </button>
      ))}
      <GroundChoice ground={settings.ground} />
    </span>
  );
}

const grounds: Entry[] = [
  ["grid", "Grid"],
  ["black", "Black"],
  ["white", "White"],
  ["own", "Colour"],
];

/** The grid, black, white, or any colour under a picture with alpha. */
function GroundChoice({ ground }: { ground: Ground }) {
  const session = useSession();
  const own = ground.startsWith("#");
  const set = (next: string) => session.setSettings({ ground: next as Ground });
  return (
    <>
      <Select
        label="What lies under the picture"
        title="What lies under the picture"
        value={own ? "own" : ground}
        entries={grounds}
        pick={(name) => set(name === "own" ? "#808080" : name)}
      />
      {own && (
        <input
          class="ground"
          type="color"
          aria-label="Colour under the picture"
          value={ground}
          onInput={(event) => set(event.currentTarget.value)}
        />
      )}
    </>
  );
}
