import type { ComponentChildren } from "preact";
import { useEffect, useState } from "preact/hooks";
import { Newest } from "../link/newest";
import type { DropAnswer, Outlines, ShapeAnswer } from "../link/api";
import type { SceneShape, ShapeOptions } from "../document/scene";
import type { State } from "../document/state";
import { classes, useSession } from "./hooks";
import { Icon } from "./icons";
import { Choice, Choices, Flag, Measure } from "./options";

/** The drawing that is the shape: taken plainly, or imported with what can be chosen about that. */
export function DrawingCard({ state, shape }: { state: State; shape: SceneShape }) {
  const session = useSession();
  const answer = useShapeAnswer(state, shape);
  if (shape.kind === "none") return null;
  if (shape.kind === "text") return <Notes answer={answer} />;
  const { file } = shape;
  if (shape.kind === "file") {
    return (
      <div class="card slim">
        <b>{file}</b>
        <button
          title="Converts transforms, arcs, text and whatever else the plain reader leaves out"
          onClick={() => session.change(`import ${file}`, session.edit().importShape(file))}
        >
          Import
        </button>
      </div>
    );
  }
  return (
    <Card name={`${file}, imported`}>
      <Comparison answer={answer} />
      <ImportOptions options={shape.options} />
      <Notes answer={answer} />
      <button onClick={() => session.change(`choose ${file}`, session.edit().setShape(file))}>
        Take it plainly
      </button>
    </Card>
  );
}

function ImportOptions({ options }: { options: ShapeOptions }) {
  return (
    <Choices options={options}>
      <Choice
        name="take"
        label="Take"
        entries={{ both: "Both", strokes: "Strokes", fills: "Fills" }}
      />
      <Choice name="order" label="Order" entries={{ paint: "As painted", nearest: "Nearest" }} />
      <Choice
        name="closed"
        label="Closed"
        entries={{ keep: "As drawn", all: "All", none: "None" }}
      />
      <Measure name="smallest" label="Smallest" usual={0.2} unit="%" step={0.1} />
      <Measure name="simplify" label="Simplify" usual={0} unit="px" step={0.1} />
      <Measure name="seconds" label="Time" usual={10} unit="s" step={1} />
      <Flag name="pageRectangles" label="Page frame" usual={true} />
    </Choices>
  );
}

/** What the plain reader would lose of a dropped drawing, beside what importing it gives. */
export function Losses({ dropped }: { dropped: DropAnswer }) {
  const session = useSession();
  const { name, losses, after } = dropped;
  const close = () => session.update({ losses: null });
  const importIt = () => {
    session.change(`import ${name}`, session.edit().importShape(name));
    close();
  };
  return (
    <Card name={name} kind="losses" close={close}>
      {losses.length === 0 && <p>Everything of it is drawn.</p>}
      <Comparison answer={dropped} />
      {after && "paths" in after && (
        <button class="go" onClick={importIt}>
          Import it
        </button>
      )}
      {losses.slice(0, 6).map((loss, index) => (
        <p key={index}>
          {loss.message}
          {loss.count > 1 && <span> ({loss.count} times)</span>}
        </p>
      ))}
      {losses.length > 6 && <p>And {losses.length - 6} more; orbel check lists them all.</p>}
    </Card>
  );
}

interface CardProps {
  name: string;
  kind?: string;
  close?: () => void;
  children: ComponentChildren;
}

function Card({ name, kind, close, children }: CardProps) {
  return (
    <div class={classes("card", kind)} role="status">
      <header>
        <b>{name}</b>
        {close && (
          <button class="square" aria-label="Close" onClick={close}>
            <Icon name="close" />
          </button>
        )}
      </header>
      {children}
    </div>
  );
}

/** Both readings of a drawing side by side; in place of the second, why there is none. */
function Comparison({ answer }: { answer: ShapeAnswer | null }) {
  const { before, after } = answer ?? {};
  return (
    <>
      {before && (
        <div class="compare">
          <Sketch outlines={before} caption="Plain" />
          {after && "paths" in after && <Sketch outlines={after} caption="Imported" />}
        </div>
      )}
      {after && "error" in after && (
        <p>{`It cannot be imported: ${after.error}${after.remedy && `; ${after.remedy}`}.`}</p>
      )}
    </>
  );
}

function Notes({ answer }: { answer: ShapeAnswer | null }) {
  const after = answer?.after;
  if (!after || "error" in after || after.notes.length === 0) return null;
  return (
    <div class="notes" role="status">
      {after.notes.map((note) => (
        <p key={note}>{note}</p>
      ))}
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

/** What the server makes of the shape, asked for anew when something about it changes. */
function useShapeAnswer(state: State, shape: SceneShape): ShapeAnswer | null {
  const session = useSession();
  const [answer, setAnswer] = useState<ShapeAnswer | null>(null);
  const [asker] = useState(
    () => new Newest<string, ShapeAnswer>(session.api.shape, setAnswer, () => setAnswer(null)),
  );
  const converted = shape.kind === "import" || shape.kind === "text";
  const about = JSON.stringify(shape);
  useEffect(() => {
    if (converted && state.connected) asker.request(session.text);
  }, [converted, about, state.connected]);
  return converted ? answer : null;
}
