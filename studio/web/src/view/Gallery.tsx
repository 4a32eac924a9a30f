import { useState } from "preact/hooks";
import type { DropAnswer, Outlines } from "../link/api";
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
  const shape = scene?.shape;
  const shapeFile = shape && "file" in shape ? shape.file : null;
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
            onClick={() => session.change("choose a shape", session.edit().setShape(file.name))}
          >
            <Icon name="path" />
            <span>{file.name}</span>
          </button>
        ))}
      </div>
      <Word text={chosen === 0 && shape?.kind === "text" ? shape.text : ""} />
      <DropPlace />
      {state.losses && <Losses dropped={state.losses} />}
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

/** A word that becomes the shape. Enter takes it, Escape leaves it. */
function Word({ text }: { text: string }) {
  const session = useSession();
  const [typed, setTyped] = useState<string | null>(null);
  const take = (written: string) => {
    setTyped(null);
    if (written === text) return;
    const edit = session.edit();
    session.change("write a text", written ? edit.writeText(written) : edit.setShape(""));
  };
  const press = (event: KeyboardEvent & { currentTarget: HTMLInputElement }) => {
    if (event.key === "Escape") {
      event.stopPropagation();
      event.currentTarget.value = text;
    }
    if (event.key === "Enter" || event.key === "Escape") event.currentTarget.blur();
  };
  return (
    <input
      class="word"
      aria-label="Text as shape"
      placeholder="Write a word"
      spellcheck={false}
      value={typed ?? text}
      onInput={(event) => setTyped(event.currentTarget.value)}
      onKeyDown={press}
      onBlur={(event) => take(event.currentTarget.value)}
    />
  );
}

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

/** What the plain reader would lose of a drawing, beside what importing it gives. */
function Losses({ dropped }: { dropped: DropAnswer }) {
  const session = useSession();
  const { name, losses, before, after } = dropped;
  const close = () => session.update({ losses: null });
  const importIt = () => {
    session.change(`import ${name}`, session.edit().importShape(name));
    close();
  };
  return (
    <div class="losses" role="status">
      <header>
        <b>{name}</b>
        <button class="square" aria-label="Close" onClick={close}>
          <Icon name="close" />
        </button>
      </header>
      {losses.length === 0 && <p>Everything of it is drawn.</p>}
      {before && after && (
        <div class="compare">
          <Sketch outlines={before} caption="Plain" />
          {"paths" in after && <Sketch outlines={after} caption="Imported" />}
        </div>
      )}
      {after && "paths" in after && (
        <button class="go" onClick={importIt}>
          Import it
        </button>
      )}
      {after && "error" in after && (
        <p>{`It cannot be imported: ${after.error}${after.remedy && `; ${after.remedy}`}.`}</p>
      )}
      {losses.slice(0, 6).map((loss, index) => (
        <p key={index}>
          {loss.message}
          {loss.count > 1 && <span> ({loss.count} times)</span>}
        </p>
      ))}
      {losses.length > 6 && <p>And {losses.length - 6} more; orbel check lists them all.</p>}
    </div>
  );
}

function Sketch({ outlines, caption }: { outlines: Outlines; caption: string }) {
  return (
    <figure>
      <svg viewBox="20 20 60 60" aria-hidden="true">
        <path d={outlines.paths.join("")} />
      </svg>
      <figcaption>{caption}</figcaption>
    </figure>
  );
}
