import { useState } from "preact/hooks";
import { valueAt } from "../document/scene";
import { readable, type State } from "../document/state";
import type { BuiltInShape } from "../document/table";
import { classes, memo, useSession } from "./hooks";
import { Icon } from "./icons";

/** The built-in shapes and the drawings of the scene's folder. */
export function Gallery({ state }: { state: State }) {
  const session = useSession();
  const scene = readable(state);
  const presets = state.table.find("Presets");
  const chosen = scene && presets ? Number(valueAt(scene, presets, state.frame)) : 0;
  const files = state.file.files.filter((file) => file.kind === "svg");
  const choose = (index: number) => {
    if (presets) session.setValue(presets, index, "choose a shape");
  };
  const [pick] = useState(() => choose);
  return (
    <div class="shapes">
      <h2>Shapes</h2>
      <div class="shapescroll" tabIndex={-1}>
        <div class="grid" role="group" aria-label="Built-in shapes">
          {state.table.data.shapes.map((shape, index) => (
            <Tile
              key={shape.name}
              shape={shape}
              index={index + 1}
              on={chosen === index + 1}
              pick={pick}
            />
          ))}
        </div>
        {files.map((file) => (
          <button
            key={file.name}
            class="fileshape"
            aria-pressed={chosen === 0 && scene?.shape === file.name}
            onClick={() => session.change("choose a shape", session.edit().setShape(file.name))}
          >
            <Icon name="path" />
            <span>{file.name}</span>
          </button>
        ))}
      </div>
      <DropPlace />
      {state.losses && <Losses state={state} />}
    </div>
  );
}

interface TileProps {
  shape: BuiltInShape;
  index: number;
  on: boolean;
  pick: (index: number) => void;
}

/** One shape as a stroke that draws itself while the pointer is over it. */
const Tile = memo(function Tile({ shape, index, on, pick }: TileProps) {
  return (
    <button
      class={classes("tile", on && "on")}
      aria-pressed={on}
      aria-label={shape.name}
      title={shape.name}
      onClick={() => pick(index)}
    >
      <svg viewBox="20 20 60 60" aria-hidden="true">
        {shape.paths.map((path, at) => (
          <path key={at} d={path} pathLength={1} />
        ))}
      </svg>
    </button>
  );
});

/** A drop of files anywhere on the page ends here; so does a click that chooses one. */
function DropPlace() {
  const session = useSession();
  return (
    <label class="drop">
      Drop a drawing, a picture or a clip here
      <input
        type="file"
        class="unseen"
        aria-label="Add a file to the scene's folder"
        onChange={(event) => {
          const file = event.currentTarget.files?.[0];
          if (file) void session.keeper.takeFile(file);
          event.currentTarget.value = "";
        }}
      />
    </label>
  );
}

/** What the reader would lose of a drawing, with the remedy. */
function Losses({ state }: { state: State }) {
  const session = useSession();
  const { losses } = state;
  if (!losses) return null;
  return (
    <div class="losses" role="status">
      <header>
        <b>{losses.name}</b>
        <button class="square" aria-label="Close" onClick={() => session.update({ losses: null })}>
          <Icon name="close" />
        </button>
      </header>
      {losses.losses.length === 0 && <p>Everything of it is drawn.</p>}
      {losses.losses.slice(0, 6).map((loss, index) => (
        <p key={index}>
          {loss.message}
          {loss.count > 1 && <span> ({loss.count} times)</span>}
        </p>
      ))}
      {losses.losses.length > 6 && (
        <p>And {losses.losses.length - 6} more; orbel check lists them all.</p>
      )}
    </div>
  );
}
