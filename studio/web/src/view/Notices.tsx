import { asSentence } from "../link/client";
import type { SceneProblem } from "../link/api";
import type { Notice, State } from "../document/state";
import { classes, useSession } from "./hooks";
import { Icon } from "./icons";

/** Sentences under the bar: what went wrong and what to do. Nothing here blocks. */
export function Notices({ state }: { state: State }) {
  const notices = [...state.notices, ...sceneNotices(state)];
  if (notices.length === 0) return null;
  return (
    <div class="notices" role="status" aria-live="polite">
      {notices.map((notice) => (
        <Line key={notice.id} notice={notice} />
      ))}
    </div>
  );
}

function Line({ notice }: { notice: Notice }) {
  const session = useSession();
  return (
    <div class={classes("notice", notice.tone)} data-notice={notice.id}>
      <i class="lamp" />
      <p>
        {notice.text} {notice.remedy && <span>{notice.remedy}</span>}
      </p>
      {notice.actions.map((action) => (
        <button key={action.label} onClick={action.run}>
          {action.label}
        </button>
      ))}
      {notice.id !== "scene" && (
        <button class="square" aria-label="Close" onClick={() => session.dismiss(notice.id)}>
          <Icon name="close" />
        </button>
      )}
    </div>
  );
}

/** What the check finds wrong with the scene, the first in full and the rest counted. */
function sceneNotices(state: State): Notice[] {
  if (state.phase !== "ready") return [];
  const problems = state.check?.problems ?? [];
  const first = problems[0];
  if (!first) return [];
  const more = problems.length > 1 ? ` (and ${problems.length - 1} more)` : "";
  return [
    {
      id: "scene",
      tone: "warn",
      text: sentence(first) + more,
      remedy: asSentence(first.remedy),
      actions: [],
    },
  ];
}

function sentence(problem: SceneProblem): string {
  const place =
    problem.pointer || (problem.line > 0 ? `line ${problem.line}, column ${problem.column}` : "");
  return asSentence(place ? `${place}: ${problem.message}` : problem.message);
}
