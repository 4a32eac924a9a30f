import { useState } from "preact/hooks";
import { valueAt } from "../document/scene";
import { readable } from "../document/state";
import type { SceneShape } from "../document/scene";
import type { BuiltInShape } from "../document/table";
import { DrawingCard, Losses } from "./DrawingCard";
import { classes, memo, useSession, watching } from "./hooks";
import { Icon } from "./icons";
import { Word } from "./Word";

const noShape: SceneShape = { kind: "none" };

const partsOfGallery = [
  "table",
  "scene",
  "lastScene",
  "frame",
  "file",
  "losses",
  "letters",
  "connected",
] as const;

/** The built-in shapes and the drawings of the scene's folder. */
export const Gallery = watching(partsOfGallery, function Gallery({ state }) {
  const session = useSession();
  const scene = readable(state);
  const presets = state.table.find("Presets");
  const chosen = scene && presets ? Number(valueAt(scene, presets, state.frame)) : 0;
  const shape = scene?.shape;
  const shapeFile = shape && "file" in shape ? shape.file : null;
  // A built-in shape wins over the scene's own.
  const own = chosen === 0 && shape ? shape : noShape;
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
            aria-pressed={chosen === 0 && shapeFile === file.name}
            onClick={() => session.keeper.chooseDrawing(file.name)}
          >
            <Icon name="path" />
            <span>{file.name}</span>
          </button>
        ))}
      </div>
      <Word shape={own} />
      <DropPlace />
      {state.losses ? <Losses dropped={state.losses} /> : <DrawingCard state={state} shape={own} />}
    </div>
  );
});

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
