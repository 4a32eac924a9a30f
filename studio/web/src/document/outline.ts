// Places on the outline that the picture shows, for the beads of the stroke.

/** A polyline in picture pixels: x, y alternating; `shares` is the length covered at each point. */
export interface Outline {
  points: readonly number[];
  shares: readonly number[];
}

/** An outline whose shares, where they are not given, follow its length on the picture. */
export function outline(points: readonly number[], given?: readonly number[]): Outline {
  if (given && given.length * 2 === points.length) return { points, shares: given };
  const shares = [0];
  for (let i = 2; i + 1 < points.length; i += 2) {
    const dx = points[i]! - points[i - 2]!;
    const dy = points[i + 1]! - points[i - 1]!;
    shares.push(shares[shares.length - 1]! + Math.hypot(dx, dy));
  }
  const whole = shares[shares.length - 1]! || 1;
  return { points, shares: shares.map((share) => share / whole) };
}

export type Place = readonly [number, number];

/** The point at a share of the length; shares beyond 0 to 1 go round again. */
export function pointAt(line: Outline, share: number): Place | null {
  const { points, shares } = line;
  if (points.length < 2) return null;
  const wanted = share >= 0 && share <= 1 ? share : share - Math.floor(share);
  let i = 1;
  while (i < shares.length - 1 && shares[i]! < wanted) i++;
  if (shares.length < 2) return [points[0]!, points[1]!];
  const from = shares[i - 1]!;
  const span = shares[i]! - from;
  const t = span > 0 ? Math.min(1, Math.max(0, (wanted - from) / span)) : 0;
  const at = (offset: number) =>
    points[2 * i - 2 + offset]! * (1 - t) + points[2 * i + offset]! * t;
  return [at(0), at(1)];
}

/** The share of the length nearest to a point of the picture, over all outlines. */
export function shareNear(lines: readonly Outline[], [x, y]: Place): number {
  let best = 0;
  let least = Infinity;
  for (const { points, shares } of lines) {
    for (let i = 1; i < shares.length; i++) {
      const ax = points[2 * i - 2]!;
      const ay = points[2 * i - 1]!;
      const dx = points[2 * i]! - ax;
      const dy = points[2 * i + 1]! - ay;
      const square = dx * dx + dy * dy;
      const t = square > 0 ? Math.min(1, Math.max(0, ((x - ax) * dx + (y - ay) * dy) / square)) : 0;
      const away = (x - ax - dx * t) ** 2 + (y - ay - dy * t) ** 2;
      if (away < least) {
        least = away;
        best = shares[i - 1]! + (shares[i]! - shares[i - 1]!) * t;
      }
    }
  }
  return best;
}

/** The value a whole number of rounds from `share` that lies nearest to `current`. */
export function unwound(share: number, current: number): number {
  return share + Math.round(current - share);
}

/** The vectors that a unit of a point's x and of its y stand for on the picture. */
export type Axes = readonly [Place, Place];

/** The point's own movement that shows as (dx, dy) on the picture; nothing where it cannot be seen. */
export function alongAxes([[ax, ay], [bx, by]]: Axes, [dx, dy]: Place): Place | null {
  const area = ax * by - ay * bx;
  if (Math.abs(area) < 1e-6) return null;
  return [(dx * by - dy * bx) / area, (dy * ax - dx * ay) / area];
}
