import { render } from "preact";
import { Session } from "./document/session";
import { App } from "./view/App";

/** The key in the address, which works once and leaves the address at once. */
function takeKey(): string | null {
  const key = new URLSearchParams(location.hash.slice(1)).get("open");
  if (location.hash) history.replaceState(null, "", location.pathname);
  return key;
}

const session = new Session();
const room = document.getElementById("studio");
if (room) render(<App session={session} />, room);

window.addEventListener("hashchange", () => {
  const key = takeKey();
  if (key) void session.reopen(key);
});
window.addEventListener("pagehide", () => session.keeper.leaving());
void session.start(takeKey());
