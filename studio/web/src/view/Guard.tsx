import type { ComponentChildren } from "preact";
import { useErrorBoundary } from "preact/hooks";
import { useSession } from "./hooks";

/** A fault of one part of the room is told in its place; the rest and the work stay. */
export function Guard({ children }: { children: ComponentChildren }) {
  const session = useSession();
  const [fault, retry] = useErrorBoundary(() => session.keeper.keepHere());
  if (!fault) return <>{children}</>;
  return (
    <div class="broken" role="alert">
      <p>
        This part of the page failed: {String((fault as Error).message)}.{" "}
        <span>What you did is kept; save it, then reload the page.</span>
      </p>
      <button onClick={retry}>Try again</button>
    </div>
  );
}
