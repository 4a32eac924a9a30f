// Undo without limit: a history keeps what each step replaced, not whole texts.

export interface Step {
  name: string;
  at: number;
  removed: string;
  inserted: string;
  /** Steps of one gesture become one. */
  gesture: number | null;
}

export interface History {
  text: string;
  done: readonly Step[];
  undone: readonly Step[];
}

export function startHistory(text: string): History {
  return { text, done: [], undone: [] };
}

/** The history after a change. A change that changes nothing is no step. */
export function record(
  history: History,
  name: string,
  text: string,
  gesture: number | null = null,
): History {
  const last = history.done[history.done.length - 1];
  const joins = gesture !== null && last?.gesture === gesture;
  const base = joins ? backward(history.text, last) : history.text;
  const before = joins ? history.done.slice(0, -1) : history.done;
  if (text === history.text) return history;
  if (text === base) return { text, done: before, undone: [] };
  const step = difference(base, text, name, gesture);
  return { text, done: [...before, step], undone: [] };
}

function difference(before: string, after: string, name: string, gesture: number | null): Step {
  const shortest = Math.min(before.length, after.length);
  let at = 0;
  while (at < shortest && before[at] === after[at]) at++;
  let tail = 0;
  while (
    tail < shortest - at &&
    before[before.length - 1 - tail] === after[after.length - 1 - tail]
  ) {
    tail++;
  }
  return {
    name,
    at,
    removed: before.slice(at, before.length - tail),
    inserted: after.slice(at, after.length - tail),
    gesture,
  };
}

function backward(text: string, step: Step): string {
  return text.slice(0, step.at) + step.removed + text.slice(step.at + step.inserted.length);
}

function forward(text: string, step: Step): string {
  return text.slice(0, step.at) + step.inserted + text.slice(step.at + step.removed.length);
}

export function undo(history: History): History {
  const step = history.done[history.done.length - 1];
  if (!step) return history;
  return {
    text: backward(history.text, step),
    done: history.done.slice(0, -1),
    undone: [...history.undone, { ...step, gesture: null }],
  };
}

export function redo(history: History): History {
  const step = history.undone[history.undone.length - 1];
  if (!step) return history;
  return {
    text: forward(history.text, step),
    done: [...history.done, { ...step, gesture: null }],
    undone: history.undone.slice(0, -1),
  };
}

export function undoName(history: History): string | null {
  return history.done[history.done.length - 1]?.name ?? null;
}

export function redoName(history: History): string | null {
  return history.undone[history.undone.length - 1]?.name ?? null;
}
