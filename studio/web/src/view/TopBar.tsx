import { useCallback, useState } from "preact/hooks";
import { redoName, undoName } from "../document/history";
import { isUnsaved, type State } from "../document/state";
import { classes, useLeaving, useSession } from "./hooks";
import { Icon } from "./icons";

/** Name of the scene, undo, the switches that matter everywhere, export. */
export function TopBar({ state }: { state: State }) {
  const session = useSession();
  const { settings, panel } = state;
  const undone = undoName(state.history);
  const redone = redoName(state.history);
  const show = (wanted: State["panel"]) =>
    session.update({ panel: panel === wanted ? null : wanted });
  const running = state.jobs.filter(
    (job) => job.state === "running" || job.state === "waiting",
  ).length;
  return (
    <header class="bar">
      <h1 class="unseen">Orbel studio</h1>
      <svg class="logo" viewBox="0 0 20 20" aria-hidden="true">
        <path d="M10 2a8 8 0 1 0 8 8" />
        <path d="M10 6a4 4 0 1 0 4 4" opacity=".55" />
      </svg>
      <SceneName state={state} />
      <button
        onClick={() => void session.keeper.save()}
        disabled={!isUnsaved(state) || state.phase !== "ready"}
        title="Save (Ctrl S)"
      >
        Save
      </button>
      <span class="space" />
      <button
        class="square"
        disabled={!undone}
        aria-label={undone ? `Undo: ${undone}` : "Undo"}
        title={undone ? `Undo: ${undone} (Ctrl Z)` : "Nothing to undo"}
        onClick={() => session.undo()}
      >
        <Icon name="undo" />
      </button>
      <button
        class="square"
        disabled={!redone}
        aria-label={redone ? `Redo: ${redone}` : "Redo"}
        title={redone ? `Redo: ${redone} (Ctrl Shift Z)` : "Nothing to redo"}
        onClick={() => session.redo()}
      >
        <Icon name="redo" />
      </button>
      <UndoList state={state} />
      <button
        class="autokey"
        aria-pressed={settings.autoKey}
        title="Auto-key: every change sets a key at the playhead (A)"
        onClick={() => session.setSettings({ autoKey: !settings.autoKey })}
      >
        <i class="diamond" /> Auto-key
      </button>
      <button
        aria-pressed={state.before}
        title="The input without the stroke"
        onClick={() => session.update({ before: !state.before })}
      >
        Before / after <kbd>B</kbd>
      </button>
      <button
        class="square"
        aria-label="Shortcuts"
        title="Shortcuts (?)"
        aria-expanded={panel === "help"}
        data-panel="help"
        onClick={() => show("help")}
      >
        ?
      </button>
      <button
        class="go"
        aria-expanded={panel === "export"}
        data-panel="export"
        onClick={() => show("export")}
      >
        Export…{running > 0 && <span class="count">{running}</span>}
      </button>
    </header>
  );
}

/** The scene's name; a press shows the other scenes of the folder and a place for a new name. */
function SceneName({ state }: { state: State }) {
  const session = useSession();
  const open = state.panel === "scenes";
  const close = useCallback(() => session.update({ panel: null }), []);
  const place = useLeaving<HTMLDivElement>(close, open);
  const [stem, ending] = split(state.file.name);
  const unsaved = state.phase === "ready" && isUnsaved(state);
  return (
    <div class="scenename" ref={place}>
      <button
        aria-expanded={open}
        title={state.file.folder}
        onClick={() => session.update({ panel: open ? null : "scenes" })}
      >
        <b>{stem}</b>
        {unsaved && <i class="unsaved" role="img" aria-label="not saved" title="Not saved" />}
        <span class="quiet">{ending}</span>
        <Icon name="chevron" />
      </button>
      {open && <ScenesPanel state={state} />}
    </div>
  );
}

function split(name: string): [string, string] {
  const at = name.lastIndexOf(".");
  return at > 0 ? [name.slice(0, at), name.slice(at)] : [name, ""];
}

function ScenesPanel({ state }: { state: State }) {
  const session = useSession();
  const [name, setName] = useState(state.file.name);
  const scenes = state.file.files.filter((file) => file.kind === "scene");
  const taken = scenes.some((file) => file.name === name);
  const save = (event: Event) => {
    event.preventDefault();
    const full = name.endsWith(".json") ? name : `${name}.json`;
    void session.keeper.saveAs(full);
  };
  return (
    <div class="panel scenes" role="dialog" aria-label="Scenes of this folder">
      <p class="quiet">{state.file.folder}</p>
      {scenes.map((file) => (
        <button
          key={file.name}
          class={classes("entry", file.name === state.file.name && "on")}
          onClick={() => void session.keeper.open(file.name)}
        >
          {file.name}
        </button>
      ))}
      <form onSubmit={save}>
        <input
          aria-label="Name to save as"
          value={name}
          spellcheck={false}
          onInput={(event) => setName(event.currentTarget.value)}
        />
        <button type="submit" disabled={!name.trim() || (taken && name === state.file.name)}>
          Save as
        </button>
      </form>
    </div>
  );
}

/** The steps that can be undone, newest first; a press goes back to before one. */
function UndoList({ state }: { state: State }) {
  const session = useSession();
  const open = state.panel === "undo";
  const close = useCallback(() => session.update({ panel: null }), []);
  const place = useLeaving<HTMLDivElement>(close, open);
  const { done, undone } = state.history;
  const back = (count: number) => {
    for (let i = 0; i < count; i++) session.undo();
  };
  const forth = (count: number) => {
    for (let i = 0; i < count; i++) session.redo();
  };
  return (
    <div class="undolist" ref={place}>
      <button
        class="square narrow"
        aria-label="Steps that can be undone"
        aria-expanded={open}
        disabled={done.length + undone.length === 0}
        onClick={() => session.update({ panel: open ? null : "undo" })}
      >
        <Icon name="chevron" />
      </button>
      {open && (
        <div class="panel steps" role="dialog" aria-label="Steps">
          {undone.slice(-12).map((step, index, all) => (
            <button
              key={`u${index}`}
              class="entry undone"
              onClick={() => forth(all.length - index)}
            >
              {step.name}
            </button>
          ))}
          {[...done]
            .reverse()
            .slice(0, 24)
            .map((step, index) => (
              <button
                key={`d${index}`}
                class={classes("entry", index === 0 && "on")}
                onClick={() => back(index + 1)}
              >
                {step.name}
              </button>
            ))}
          {done.length > 24 && <p class="quiet">and {done.length - 24} before</p>}
        </div>
      )}
    </div>
  );
}
