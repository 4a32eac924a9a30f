// Small helpers that several components share.

import { Component, createContext, h, type ComponentChild, type FunctionComponent } from "preact";
import { useContext, useEffect, useRef, useState } from "preact/hooks";
import type { Session } from "../document/session";
import type { State } from "../document/state";

export const Studio = createContext<Session | null>(null);

export function useSession(): Session {
  const session = useContext(Studio);
  if (!session) throw new Error("no session around this component");
  return session;
}

/** A component that is drawn again only when one of its properties is another value. */
export function memo<P extends object>(view: FunctionComponent<P>): FunctionComponent<P> {
  class Memo extends Component<P> {
    override shouldComponentUpdate(next: P): boolean {
      const now = this.props as unknown as Record<string, unknown>;
      const then = next as unknown as Record<string, unknown>;
      return Object.keys({ ...now, ...then }).some((key) => now[key] !== then[key]);
    }
    override render(): ComponentChild {
      return h(view as FunctionComponent<object>, this.props);
    }
  }
  return Memo as unknown as FunctionComponent<P>;
}

/** A component that is drawn again only when one of these parts of the state is another value. */
export function watching(
  parts: readonly (keyof State)[],
  view: FunctionComponent<{ state: State }>,
): FunctionComponent<{ state: State }> {
  class Watching extends Component<{ state: State }> {
    override shouldComponentUpdate({ state }: { state: State }): boolean {
      return parts.some((part) => this.props.state[part] !== state[part]);
    }
    override render(): ComponentChild {
      return h(view, this.props);
    }
  }
  return Watching as unknown as FunctionComponent<{ state: State }>;
}

export interface DragMoves {
  /** Movement since the press, in CSS pixels. */
  move: (dx: number, dy: number, event: PointerEvent) => void;
  end?: (moved: boolean, event: PointerEvent) => void;
  /** Pixels before a press becomes a drag. */
  threshold?: number;
}

/** Follows the pointer from a press to its release, wherever it goes. */
export function drag(event: PointerEvent, { move, end, threshold = 0 }: DragMoves): void {
  const { clientX, clientY, pointerId } = event;
  let moved = false;
  const onMove = (next: PointerEvent) => {
    if (next.pointerId !== pointerId) return;
    const dx = next.clientX - clientX;
    const dy = next.clientY - clientY;
    if (!moved && Math.hypot(dx, dy) < threshold) return;
    moved = true;
    move(dx, dy, next);
  };
  const onEnd = (next: PointerEvent) => {
    if (next.pointerId !== pointerId) return;
    window.removeEventListener("pointermove", onMove);
    window.removeEventListener("pointerup", onEnd);
    window.removeEventListener("pointercancel", onEnd);
    end?.(moved, next);
  };
  window.addEventListener("pointermove", onMove);
  window.addEventListener("pointerup", onEnd);
  window.addEventListener("pointercancel", onEnd);
}

/** Where one step of the undo list begins and ends. */
export interface Gesture {
  begin: () => void;
  end: () => void;
}

/** Holds a value from a press of the first button to the release: one step of the undo list. */
export function hold(
  event: PointerEvent,
  { begin, end }: Gesture,
  { move, threshold = 2 }: Omit<DragMoves, "end">,
): void {
  if (event.button !== 0) return;
  begin();
  if (threshold === 0) move(0, 0, event);
  drag(event, { move, end, threshold });
}

/** For a field whose text is marked when it gets the focus, so that typing replaces it. */
export function useMarking(focused: (field: HTMLInputElement) => void) {
  const pressed = useRef(false);
  return {
    onPointerDown: ({ currentTarget }: { currentTarget: HTMLInputElement }) => {
      pressed.current = document.activeElement !== currentTarget;
    },
    onFocus: ({ currentTarget }: { currentTarget: HTMLInputElement }) => {
      focused(currentTarget);
      currentTarget.select();
    },
    // The press that gave the focus put the caret, unless it went on to mark a part.
    onClick: ({ currentTarget }: { currentTarget: HTMLInputElement }) => {
      const caret = currentTarget.selectionStart === currentTarget.selectionEnd;
      if (pressed.current && caret) currentTarget.select();
      pressed.current = false;
    },
  };
}

/** The way in which an arrow key moves a value: 1, -1, or 0 for any other key. */
export function arrowDirection(event: KeyboardEvent): number {
  if (event.altKey) return 0;
  const direction = { ArrowLeft: -1, ArrowDown: -1, ArrowRight: 1, ArrowUp: 1 }[event.key] ?? 0;
  if (direction !== 0) event.preventDefault();
  return direction;
}

/** The size of an element in CSS pixels, kept up to date. */
export function useSize<E extends HTMLElement>() {
  const ref = useRef<E>(null);
  const [size, setSize] = useState({ width: 0, height: 0 });
  useEffect(() => {
    const element = ref.current;
    if (!element) return;
    const observer = new ResizeObserver(() => {
      setSize({ width: element.clientWidth, height: element.clientHeight });
    });
    observer.observe(element);
    return () => observer.disconnect();
  }, []);
  return [ref, size] as const;
}

/** Calls when a press or the Escape key happens outside of the element. */
export function useLeaving<E extends HTMLElement>(leave: () => void, active = true) {
  const ref = useRef<E>(null);
  useEffect(() => {
    if (!active) return;
    const press = (event: Event) => {
      if (ref.current && !ref.current.contains(event.target as Node)) leave();
    };
    const key = (event: KeyboardEvent) => {
      if (event.key !== "Escape") return;
      event.stopPropagation();
      leave();
    };
    window.addEventListener("pointerdown", press, true);
    window.addEventListener("keydown", key, true);
    return () => {
      window.removeEventListener("pointerdown", press, true);
      window.removeEventListener("keydown", key, true);
    };
  }, [active, leave]);
  return ref;
}

export function classes(...names: (string | false | null | undefined)[]): string {
  return names.filter(Boolean).join(" ");
}
