import { readable, type State } from "../document/state";
import { tidy } from "../document/writing";
import type { SceneInput } from "../document/scene";
import type { FolderFile } from "../link/api";
import { ColourField } from "./ColourField";
import { FrameFields } from "./FrameFields";
import { useSession, watching } from "./hooks";
import { NumberField } from "./NumberField";
import { Select, type Entry } from "./Select";

const partsOfInput = ["table", "scene", "lastScene", "file", "check", "settings"] as const;

/** What lies under the stroke, and the frame it is drawn on. */
export const InputPanel = watching(partsOfInput, function InputPanel({ state }) {
  const scene = readable(state);
  if (!scene) return null;
  return (
    <div class="input">
      <header>
        <h2>Input</h2>
        <TakeOver state={state} />
      </header>
      <InputChoice state={state} input={scene.input} />
      <Facts state={state} />
      <FrameFields state={state} />
    </div>
  );
});

const inputKinds: readonly FolderFile["kind"][] = ["sequence", "clip", "picture", "raw"];

/** The folder's files that can lie under the stroke: sequences and clips before single pictures. */
function inputFiles(state: State): FolderFile[] {
  return inputKinds.flatMap((kind) => state.file.files.filter((file) => file.kind === kind));
}

/** What a scene says to have the file as its input. */
function inputOf(name: string, file: FolderFile | undefined): object {
  if (file?.kind === "raw") return { raw: name };
  // A sequence is looked for from 0 or 1 on unless the scene says otherwise.
  return file?.first !== undefined && file.first > 1
    ? { file: name, first: file.first }
    : { file: name };
}

function InputChoice({ state, input }: { state: State; input: SceneInput }) {
  const session = useSession();
  const files = inputFiles(state);
  const current = input.kind === "file" || input.kind === "raw" ? input.file : "";
  const known = files.some((file) => file.name === current);
  const entries: Entry[] = [
    ["none", "Nothing (transparent)"],
    ["color", "A colour"],
    ...(current && !known ? [[`file:${current}`, current] as const] : []),
    ...files.map(
      ({ name, count }) => [`file:${name}`, count ? `${name} (${count})` : name] as const,
    ),
  ];
  const choose = (value: string) => {
    const name = value.slice(5);
    const stated =
      value === "none"
        ? null
        : value === "color"
          ? { color: [0, 0, 0, 1] }
          : inputOf(
              name,
              files.find((file) => file.name === name),
            );
    session.setHeader("choose an input", "input", stated);
  };
  return (
    <>
      <Select
        wide
        label="Input"
        value={current ? `file:${current}` : input.kind}
        entries={entries}
        pick={choose}
      />
      {input.kind === "color" && <InputColour rgba={input.rgba} />}
      {input.kind === "file" && input.numbered && <FirstFile input={input} />}
    </>
  );
}

/** The number of a sequence's first file. */
function FirstFile({ input }: { input: SceneInput & { kind: "file" } }) {
  const session = useSession();
  const { file, first } = input;
  const set = (number: number) =>
    session.setHeader("change the first file", "input", {
      file,
      first: Math.max(0, Math.round(number)),
    });
  return (
    <div class="facts">
      <span>First file</span>
      <NumberField
        label="Number of the first file"
        value={first ?? 0}
        shown={first === null ? "0 or 1" : String(first)}
        commit={set}
      />
    </div>
  );
}

function InputColour({ rgba }: { rgba: readonly number[] }) {
  const session = useSession();
  const alpha = rgba[3] ?? 1;
  const set = (rgb: readonly number[], a: number) =>
    session.setHeader("change input colour", "input", { color: [...rgb, a] });
  return (
    <div class="colourline">
      <ColourField
        label="Input colour"
        value={rgba.slice(0, 3)}
        change={(rgb) => set(rgb, alpha)}
        gesture={session.gesture}
      />
      <NumberField
        label="Input alpha"
        value={tidy(alpha * 100)}
        shown={`α ${tidy(alpha * 100, 1)} %`}
        commit={(percent) => set(rgba.slice(0, 3), tidy(Math.min(100, Math.max(0, percent)) / 100))}
      />
    </div>
  );
}

/** What the file is. */
function Facts({ state }: { state: State }) {
  const { size, fps, frames } = state.check?.plan?.input ?? {};
  if (!size) return null;
  const facts = [
    `${size[0]} × ${size[1]}`,
    fps ? `${tidy(fps, 3)} fps` : "",
    frames && frames > 1 ? `${frames} frames` : "",
  ].filter(Boolean);
  return (
    <div class="facts list">
      {facts.map((fact) => (
        <span key={fact}>{fact}</span>
      ))}
    </div>
  );
}

/** Gives the scene the size and rate of its input. */
function TakeOver({ state }: { state: State }) {
  const session = useSession();
  const { size, fps, frames } = state.check?.plan?.input ?? {};
  if (!size) return null;
  const takeOver = () => {
    session.beginGesture();
    const headers: [string, unknown][] = [["size", size]];
    if (fps) headers.push(["fps", tidy(fps, 3)]);
    if (frames && frames > 1) headers.push(["frames", [0, frames - 1]]);
    headers.forEach(([key, value]) =>
      session.setHeader("take over the input's size and rate", key, value),
    );
    session.endGesture();
  };
  return (
    <button onClick={takeOver} title="Size, rate and length of the input become the scene's">
      Take over
    </button>
  );
}
