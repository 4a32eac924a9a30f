import { useEffect, useReducer } from "preact/hooks";
import type { Session } from "../document/session";
import { obey } from "./commands";
import { ExportPanel } from "./ExportPanel";
import { Gallery } from "./Gallery";
import { Guard } from "./Guard";
import { HelpPanel } from "./HelpPanel";
import { Studio } from "./hooks";
import { InputPanel } from "./InputPanel";
import { Inspector } from "./Inspector";
import { Notices } from "./Notices";
import { Timeline } from "./Timeline";
import { TopBar } from "./TopBar";
import { Viewport } from "./Viewport";

/** The whole room. */
export function App({ session }: { session: Session }) {
  const [, redraw] = useReducer((count: number) => count + 1, 0);
  useEffect(() => session.subscribe(() => redraw(undefined)), []);
  useEffect(() => listenToPage(session), []);
  const { state } = session;
  return (
    <Studio.Provider value={session}>
      <div class="room">
        {state.phase !== "locked" && <TopBar state={state} />}
        <Notices state={state} />
        {state.phase === "ready" && (
          <>
            <aside class="side" aria-label="Shapes and input">
              <Guard>
                <Gallery state={state} />
              </Guard>
              <Guard>
                <InputPanel state={state} />
              </Guard>
            </aside>
            <main class="middle">
              <Guard>
                <Viewport state={state} />
              </Guard>
              <Guard>
                <Timeline state={state} />
              </Guard>
            </main>
            <Guard>
              <Inspector state={state} />
            </Guard>
            {state.panel === "export" && <ExportPanel state={state} />}
            {state.panel === "help" && <HelpPanel />}
          </>
        )}
        {state.phase === "locked" && <Locked />}
      </div>
    </Studio.Provider>
  );
}

/** Where a page without a key ends up. */
function Locked() {
  return (
    <main class="locked">
      <h1>This page is closed</h1>
      <p>
        The studio opens once with the address that its program printed. Start it again and use the
        new address:
      </p>
      <code>orbel studio scene.json</code>
    </main>
  );
}

function listenToPage(session: Session): () => void {
  const key = (event: KeyboardEvent) => obey(session, event);
  // A button that was clicked gives the keyboard back, so that shortcuts go on working.
  const click = (event: MouseEvent) => {
    const target = event.target instanceof Element ? event.target : null;
    if (event.detail > 0) target?.closest<HTMLElement>("button")?.blur();
  };
  const over = (event: DragEvent) => event.preventDefault();
  const drop = (event: DragEvent) => {
    event.preventDefault();
    for (const file of event.dataTransfer?.files ?? []) void session.keeper.takeFile(file);
  };
  window.addEventListener("keydown", key);
  window.addEventListener("click", click);
  window.addEventListener("dragover", over);
  window.addEventListener("drop", drop);
  return () => {
    window.removeEventListener("keydown", key);
    window.removeEventListener("click", click);
    window.removeEventListener("dragover", over);
    window.removeEventListener("drop", drop);
  };
}
