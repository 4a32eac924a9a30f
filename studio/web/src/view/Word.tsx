import { useEffect, useState } from "preact/hooks";
import type { SceneShape, ShapeOptions } from "../document/scene";
import { classes, useSession } from "./hooks";
import { Choice, Choices, Flag, Measure, useOption } from "./options";
import { namedAs, Select } from "./Select";

/** A word that becomes the shape, and how it is written. */
export function Word({ shape }: { shape: SceneShape }) {
  const written = shape.kind === "text" ? shape : null;
  return (
    <div class="writing">
      <WordField text={written?.text ?? ""} />
      {written && <WritingOptions text={written.text} options={written.options} />}
    </div>
  );
}

/** Enter takes the text, Shift and Enter start a line, Escape leaves it. */
function WordField({ text }: { text: string }) {
  const session = useSession();
  const [typed, setTyped] = useState<string | null>(null);
  const take = (written: string) => {
    setTyped(null);
    if (typed === null || written === text) return;
    const edit = session.edit();
    session.change("write a text", written ? edit.writeText(written) : edit.setShape(""));
  };
  const press = (event: KeyboardEvent & { currentTarget: HTMLTextAreaElement }) => {
    if (event.key === "Escape") {
      event.stopPropagation();
      event.currentTarget.value = text; // which is what leaving the field then takes
    }
    if ((event.key === "Enter" && !event.shiftKey) || event.key === "Escape") {
      event.preventDefault();
      event.currentTarget.blur();
    }
  };
  const shown = typed ?? text;
  return (
    <textarea
      class="word"
      aria-label="Text as shape"
      placeholder="Write a word"
      rows={Math.min(4, shown.split("\n").length)}
      spellcheck={false}
      value={shown}
      onInput={(event) => setTyped(event.currentTarget.value)}
      onKeyDown={press}
      onBlur={(event) => take(event.currentTarget.value)}
    />
  );
}

function WritingOptions({ text, options }: { text: string; options: ShapeOptions }) {
  const session = useSession();
  const { letters } = session.state;
  useEffect(() => void session.readLetters(), []);
  const pen = options.singleStroke === true;
  const hands = Object.fromEntries((letters?.hands ?? []).map((hand) => [hand, hand]));
  return (
    <Choices options={options}>
      {pen ? (
        <Choice name="hand" label="Hand" entries={{ cursive: "cursive", ...hands }} />
      ) : (
        <Font options={options} families={letters?.families ?? []} />
      )}
      <Flag name="singleStroke" label="Single stroke" usual={false} />
      {text.includes("\n") && (
        <>
          <Choice
            name="align"
            label="Align"
            entries={{ left: "Left", center: "Centre", right: "Right" }}
          />
          <Measure name="lineHeight" label="Line height" usual={1.2} unit="" step={0.1} />
        </>
      )}
    </Choices>
  );
}

const usualFamily = "sans";

/** A family, and bold and italic as switches; other words of the font stay. */
function Font({ options, families }: { options: ShapeOptions; families: readonly string[] }) {
  const set = useOption("font", "font", usualFamily);
  const font = typeof options.font === "string" ? options.font : usualFamily;
  const [family = usualFamily, ...words] = font.split(":");
  const toggle = (word: string) =>
    set(
      [
        family,
        ...(words.includes(word) ? words.filter((each) => each !== word) : [...words, word]),
      ].join(":"),
    );
  const style = (word: string, sign: string) => (
    <button
      class={classes("style", word)}
      aria-pressed={words.includes(word)}
      aria-label={word === "bold" ? "Bold" : "Italic"}
      onClick={() => toggle(word)}
    >
      {sign}
    </button>
  );
  return (
    <span class="font">
      <Select
        label="Font"
        value={family}
        entries={namedAs(families)}
        pick={(next) => set([next, ...words].join(":"))}
      />
      {style("bold", "B")}
      {style("italic", "I")}
    </span>
  );
}
