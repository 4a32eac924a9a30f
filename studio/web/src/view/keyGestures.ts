// What the pointer does with keys.

import { keyId, partsOf, type KeyId } from "../document/edits";
import { readable } from "../document/state";
import type { Track } from "../document/scene";
import type { Session } from "../document/session";
import type { Row } from "../document/table";
import { frameAt, framesPerPixel, snapped, xOf } from "../document/timescale";
import { drag } from "./hooks";

/** The selection after a press on keys: added to with Shift or Ctrl, kept when they are in it. */
function selectionAfter(session: Session, ids: KeyId[], event: PointerEvent): Set<KeyId> {
  const old = session.state.selection;
  const all = ids.every((id) => old.has(id));
  if (event.shiftKey || event.ctrlKey) {
    const next = new Set(old);
    ids.forEach((id) => (all ? next.delete(id) : next.add(id)));
    return next;
  }
  return all ? new Set(old) : new Set(ids);
}

/** Selects the keys under the press and moves the selection with the pointer. */
export function dragKeys(session: Session, event: PointerEvent, ids: KeyId[], width: number): void {
  event.stopPropagation();
  if (event.button !== 0) return;
  event.preventDefault();
  const chosen = selectionAfter(session, ids, event);
  session.update({ selection: chosen, activeRow: partsOf(ids[0]!).row });
  if (!ids.every((id) => chosen.has(id))) return;
  const base = session.edit();
  const grabbed = partsOf(ids[0]!).frame;
  const stop = snapping(session, chosen, width);
  const single = event.shiftKey || event.ctrlKey ? chosen : new Set(ids);
  session.beginGesture();
  drag(event, {
    threshold: 3,
    move: (dx) => {
      const target = Math.max(0, stop(grabbed, dx));
      session.changeKeys(
        chosen.size > 1 ? "move keys" : "move a key",
        base.moveKeys(chosen, target - grabbed),
      );
    },
    end: (moved) => {
      session.endGesture();
      if (!moved && !event.shiftKey && !event.ctrlKey) session.select(single);
    },
  });
}

/** Arrows go from key to key and from lane to lane, Space selects; with Shift, more of them. */
export function walkKeys(
  session: Session,
  event: KeyboardEvent & { currentTarget: Element },
  ids: KeyId[],
): void {
  if (event.altKey || event.ctrlKey) return;
  if (event.key === " ") {
    const { selection } = session.state;
    const rest = [...selection].filter((id) => !ids.includes(id));
    const selected = rest.length < selection.size;
    session.select(new Set(selected ? rest : event.shiftKey ? [...selection, ...ids] : ids));
  } else if (event.key.startsWith("Arrow")) {
    neighbourOf(event.currentTarget, event.key)?.focus();
  } else return;
  event.preventDefault();
  event.stopPropagation();
}

/** The sign beside this one in its lane, or the nearest one of the next lane that has any. */
function neighbourOf(sign: Element, arrow: string): SVGElement | undefined {
  const lanes = [...document.querySelectorAll(".area .lane")].map((lane) => [
    ...lane.querySelectorAll<SVGElement>(".keysign"),
  ]);
  const own = lanes.findIndex((signs) => signs.some((each) => each === sign));
  const at = lanes[own]?.findIndex((each) => each === sign) ?? 0;
  if (arrow === "ArrowLeft") return lanes[own]?.[at - 1];
  if (arrow === "ArrowRight") return lanes[own]?.[at + 1];
  const beyond = arrow === "ArrowUp" ? lanes.slice(0, own).reverse() : lanes.slice(own + 1);
  const next = beyond.find((signs) => signs.length > 0) ?? [];
  const middle = (each: Element) => each.getBoundingClientRect().x;
  const distance = (each: Element) => Math.abs(middle(each) - middle(sign));
  return [...next].sort((a, b) => distance(a) - distance(b))[0];
}

/** Where a key at a frame comes to stand when it is dragged by so many pixels. */
export function snapping(
  session: Session,
  moving: ReadonlySet<KeyId>,
  width: number,
): (frame: number, dx: number) => number {
  const { time, settings } = session.state;
  const perPixel = framesPerPixel(time, width);
  const targets = snapTargets(session, moving);
  const reach = settings.snap ? perPixel * 6 : 0;
  return (frame, dx) => snapped(frame + dx * perPixel, targets, reach);
}

function snapTargets(session: Session, moving: ReadonlySet<KeyId>): number[] {
  const targets = [session.state.frame];
  readable(session.state)?.tracks.forEach((track) => {
    for (const key of track.keys) {
      if (!moving.has(keyId(track.row.id, key.frame))) targets.push(key.frame);
    }
  });
  return targets;
}

/** A double click on a key takes the playhead there; false where there is none. */
export function goToKey(session: Session, { target }: MouseEvent): boolean {
  const sign = target instanceof Element ? target.closest<SVGElement>(".keysign") : null;
  if (sign) session.goTo(Number(sign.dataset.frame));
  return sign !== null;
}

/** A double click on a lane sets a key there. */
export function addKeyAt(
  session: Session,
  event: MouseEvent & { currentTarget: HTMLElement },
  row: Row,
  width: number,
): void {
  if (goToKey(session, event)) return;
  const x = event.clientX - event.currentTarget.getBoundingClientRect().left;
  const frame = Math.max(0, Math.round(frameAt(session.state.time, width, x)));
  session.change(`set key of ${row.label}`, session.edit().addKey(row, frame));
  session.select(new Set([keyId(row.id, frame)]));
}

const laneHeight = 24;

/** A band over the lanes selects the keys inside; a click on nothing deselects. */
export function selectInBox(
  session: Session,
  event: PointerEvent,
  stack: HTMLElement,
  tracks: readonly Track[],
  width: number,
  show: (box: { x: number; y: number; w: number; h: number } | null) => void,
): void {
  const bounds = stack.getBoundingClientRect();
  const startX = event.clientX - bounds.left;
  const startY = event.clientY - bounds.top + stack.scrollTop;
  const kept = event.shiftKey || event.ctrlKey ? session.state.selection : new Set<KeyId>();
  drag(event, {
    threshold: 3,
    move: (dx, dy) => {
      const box = {
        x: Math.min(startX, startX + dx),
        y: Math.min(startY, startY + dy),
        w: Math.abs(dx),
        h: Math.abs(dy),
      };
      show(box);
      const found = new Set(kept);
      tracks.forEach((track, index) => {
        const middle = index * laneHeight + laneHeight / 2;
        if (middle < box.y || middle > box.y + box.h) return;
        for (const key of track.keys) {
          const x = xOf(session.state.time, width, key.frame);
          if (x >= box.x && x <= box.x + box.w) found.add(keyId(track.row.id, key.frame));
        }
      });
      session.select(found);
    },
    end: (moved) => {
      show(null);
      if (!moved) session.select(kept);
    },
  });
}
