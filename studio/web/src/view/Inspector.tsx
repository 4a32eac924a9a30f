import type { ComponentChildren } from "preact";
import { useState } from "preact/hooks";
import { interchangeable, isDefault } from "../document/edits";
import { disabledRows, isFiltering, passes } from "../document/rules";
import { isAnimated, isStated, valueAt, type Scene } from "../document/scene";
import { readable, type State } from "../document/state";
import type { Row, Section } from "../document/table";
import { copy, focusRow, paste, toggleKey } from "./commands";
import { ContextMenu, type MenuItem } from "./ContextMenu";
import { classes, useSession } from "./hooks";
import { RowView } from "./RowView";

/** Every parameter of the effect, made from the table. */
export function Inspector({ state }: { state: State }) {
  const [menu, setMenu] = useState<{ row: Row; x: number; y: number } | null>(null);
  const [openMenu] = useState(() => (row: Row, x: number, y: number) => setMenu({ row, x, y }));
  const scene = readable(state);
  return (
    <section class="inspect" aria-label="Parameters">
      <Find state={state} />
      <div class="rows" tabIndex={-1}>
        {scene && <Sections state={state} scene={scene} openMenu={openMenu} />}
      </div>
      {menu && <RowMenu {...menu} state={state} close={() => setMenu(null)} />}
    </section>
  );
}

function Find({ state }: { state: State }) {
  const session = useSession();
  const { filter } = state;
  const set = (part: Partial<typeof filter>) => session.update({ filter: { ...filter, ...part } });
  return (
    <div class="find">
      <input
        id="find"
        type="search"
        placeholder="Find a parameter"
        aria-label="Find a parameter"
        value={filter.search}
        onInput={(event) => session.search(event.currentTarget.value)}
        onKeyDown={(event) => {
          if (event.key === "Enter") {
            event.preventDefault();
            return focusRow(document.querySelector(".row"));
          }
          if (event.key !== "Escape") return;
          session.search("");
          event.currentTarget.blur();
        }}
      />
      <kbd>/</kbd>
      <button aria-pressed={filter.changed} onClick={() => set({ changed: !filter.changed })}>
        Changed
      </button>
      <button aria-pressed={filter.animated} onClick={() => set({ animated: !filter.animated })}>
        Animated
      </button>
    </div>
  );
}

interface SectionsProps {
  state: State;
  scene: Scene;
  openMenu: (row: Row, x: number, y: number) => void;
}

function Sections({ state, scene, openMenu }: SectionsProps) {
  const off = disabledRows(scene, state.table, state.frame);
  const filtering = isFiltering(state.filter);
  const sections = state.table
    .sections()
    .map((section) => ({
      ...section,
      rows: section.rows.filter((row) => passes(state.filter, scene, row)),
    }))
    .filter((section) => section.rows.length > 0);
  if (sections.length === 0) return <p class="empty">No parameter is like that.</p>;
  const view = (row: Row) => (
    <RowView
      key={row.id}
      row={row}
      value={valueAt(scene, row, state.frame)}
      changed={
        isStated(scene, row) && (!isDefault(scene, row, state.frame) || isAnimated(scene, row))
      }
      animated={isAnimated(scene, row)}
      onKey={(scene.tracks.get(row.id)?.keys ?? []).some((key) => key.frame === state.frame)}
      disabled={off.has(row.id)}
      active={state.activeRow === row.id}
      files={state.file.files}
      openMenu={openMenu}
    />
  );
  return (
    <>
      {sections.map((section) => (
        <Group key={section.title} section={section} state={state} scene={scene} forced={filtering}>
          {section.rows.map(view)}
        </Group>
      ))}
    </>
  );
}

interface GroupProps {
  section: Section;
  state: State;
  scene: Scene;
  forced: boolean;
  children: ComponentChildren;
}

function Group({ section, state, scene, forced, children }: GroupProps) {
  const session = useSession();
  const { title } = section;
  const folded =
    !forced && (state.settings.folded[title] ?? !(section.open || state.usedGroups.has(title)));
  const stated = section.rows.filter((row) => isStated(scene, row));
  const animated = stated.some((row) => isAnimated(scene, row));
  const fold = () =>
    session.setSettings({ folded: { ...state.settings.folded, [title]: !folded } });
  return (
    <div class="group">
      <h3>
        <button aria-expanded={!folded} onClick={fold}>
          <i>{folded ? "▸" : "▾"}</i>
          {title}
          {folded && stated.length > 0 && (
            <span class={classes("count", animated && "animated")}>{stated.length}</span>
          )}
        </button>
      </h3>
      {!folded && children}
    </div>
  );
}

function RowMenu({
  row,
  x,
  y,
  state,
  close,
}: {
  row: Row;
  x: number;
  y: number;
  state: State;
  close: () => void;
}) {
  const session = useSession();
  const edit = session.edit();
  const { frame, copiedValue, table } = state;
  const from = copiedValue ? table.row(copiedValue.row) : undefined;
  const items: MenuItem[] = [
    { label: "Copy value", hint: "Ctrl C", run: () => (session.select(new Set()), copy(session)) },
    {
      label: "Paste value",
      hint: "Ctrl V",
      disabled: !from || !interchangeable(from, row),
      run: () => paste(session),
    },
    {
      label: "Reset to default",
      run: () => session.change(`reset ${row.label}`, edit.reset(row, frame)),
    },
    {
      label: "Key here",
      hint: "S",
      disabled: row.kind === "shape",
      run: () => toggleKey(session, row.id, frame),
    },
    {
      label: "Remove all keys",
      disabled: edit.keysOf(row).length === 0,
      run: () => session.change(`remove keys of ${row.label}`, edit.removeAllKeys(row, frame)),
    },
  ];
  return <ContextMenu x={x} y={y} items={items} close={close} label={row.name} />;
}
