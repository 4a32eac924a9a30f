// The stretch of time that the timeline shows, and where frames stand in it.

export interface TimeView {
  /** Frames at the left and right edge; fractions allowed. */
  from: number;
  to: number;
}

export const margin = 14;

function inner(width: number): number {
  return Math.max(1, width - 2 * margin);
}

export function xOf(view: TimeView, width: number, frame: number): number {
  return margin + ((frame - view.from) / (view.to - view.from)) * (width - 2 * margin);
}

export function frameAt(view: TimeView, width: number, x: number): number {
  return view.from + ((x - margin) / inner(width)) * (view.to - view.from);
}

export function framesPerPixel(view: TimeView, width: number): number {
  return (view.to - view.from) / inner(width);
}

/** The view zoomed about a frame that keeps its place. */
export function zoomed(view: TimeView, frame: number, factor: number): TimeView {
  const span = Math.min(10_000_000, Math.max(4, (view.to - view.from) * factor));
  const share = (frame - view.from) / (view.to - view.from);
  const from = frame - span * share;
  return { from, to: from + span };
}

export function scrolled(view: TimeView, frames: number): TimeView {
  return { from: view.from + frames, to: view.to + frames };
}

/** The view moved, where need be, so that the frame can be seen. */
export function revealing(view: TimeView, frame: number): TimeView {
  if (frame >= view.from && frame <= view.to) return view;
  if (frame < view.from) return scrolled(view, frame - view.from);
  return scrolled(view, frame - view.to);
}

export interface Tick {
  frame: number;
  labelled: boolean;
}

const steps = [1, 2, 5, 10];

/** Ticks of the ruler: labels at least 56 pixels apart, small ticks between them. */
export function ticks(view: TimeView, width: number, fps: number, asTime: boolean): Tick[] {
  const perPixel = framesPerPixel(view, width);
  const unit = asTime ? Math.max(1, Math.round(fps)) : 1;
  const label = niceStep(perPixel * 56, unit);
  const small = label % 5 === 0 ? label / 5 : label % 2 === 0 ? label / 2 : label;
  const result: Tick[] = [];
  for (let frame = Math.ceil(view.from / small) * small; frame <= view.to; frame += small) {
    result.push({ frame, labelled: frame % label === 0 });
  }
  return result;
}

function niceStep(least: number, unit: number): number {
  if (unit > 1 && least > unit / 2) return unit * niceStep(least / unit, 1);
  for (let scale = 1; ; scale *= 10) {
    const found = steps.find((step) => step * scale >= least);
    if (found !== undefined) return found * scale;
  }
}

/** The frame snapped to whole frames and, within `reach` frames, to one of the targets. */
export function snapped(frame: number, targets: readonly number[], reach: number): number {
  let best = Math.round(frame);
  let distance = reach;
  for (const target of targets) {
    if (Math.abs(target - frame) < distance) {
      best = target;
      distance = Math.abs(target - frame);
    }
  }
  return best;
}
