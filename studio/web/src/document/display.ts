// How values are shown, and how far a drag moves them.

import type { Row, Value } from "./table";
import { tidy } from "./writing";

/** A number as it was set; one that motion passes through with fewer digits. */
export function numberText(value: number): string {
  const exact = tidy(value, 3);
  if (Math.abs(value - exact) < 1e-9) return String(exact);
  return String(tidy(value, Math.abs(value) >= 10 ? 1 : 2));
}

/** Degrees, with whole turns in front where there are any. */
export function angleText(degrees: number): string {
  const turns = Math.trunc(degrees / 360);
  if (turns === 0) return `${numberText(degrees)}°`;
  return `${turns}× ${numberText(Math.abs(degrees - turns * 360))}°`;
}

export function valueText(row: Row, value: Value): string {
  switch (row.kind) {
    case "angle":
      return angleText(Number(value));
    case "float":
      return numberText(Number(value)) + unitText(row);
    case "toggle":
      return value ? "on" : "off";
    case "menu":
    case "presets":
      return row.entries?.[Number(value)] ?? String(value);
    case "colour":
      return hexOf(value as readonly number[]);
    case "point":
      return (value as readonly number[]).map((item) => numberText(item)).join(", ");
    case "shape":
      return String(value) || "none";
  }
}

export function unitText(row: Row): string {
  if (!row.unit) return "";
  return row.unit === "°" ? row.unit : ` ${row.unit}`;
}

export function hexOf(rgb: readonly number[]): string {
  const byte = (part: number) =>
    Math.round(Math.min(1, Math.max(0, part)) * 255)
      .toString(16)
      .padStart(2, "0");
  return `#${rgb.map(byte).join("")}`;
}

/** The colour that "#rgb", "#rrggbb", the same without "#", or three numbers from 0 to 1 stand for. */
export function colourOf(text: string): number[] | null {
  const parts = text
    .trim()
    .split(/[\s,;]+/)
    .map(Number);
  if (parts.length === 3) return parts.every((part) => part >= 0 && part <= 1) ? parts : null;
  const found = /^#?([0-9a-f]{3}|[0-9a-f]{6})$/i.exec(text.trim());
  if (!found) return null;
  const digits = found[1]!;
  const full = digits.length === 3 ? [...digits].map((digit) => digit + digit).join("") : digits;
  return [0, 2, 4].map((at) => tidy(parseInt(full.slice(at, at + 2), 16) / 255));
}

export interface Hsv {
  h: number;
  s: number;
  v: number;
}

/** Hue in degrees, saturation and value 0 to 1. */
export function hsvOf(rgb: readonly number[]): Hsv {
  const [r = 0, g = 0, b = 0] = rgb;
  const v = Math.max(r, g, b);
  const span = v - Math.min(r, g, b);
  const s = v === 0 ? 0 : span / v;
  if (span === 0) return { h: 0, s, v };
  const sixth = v === r ? (g - b) / span : v === g ? 2 + (b - r) / span : 4 + (r - g) / span;
  return { h: (sixth * 60 + 360) % 360, s, v };
}

export function rgbOf({ h, s, v }: Hsv): number[] {
  const part = (shift: number) => {
    const k = (shift + h / 60) % 6;
    return tidy(v - v * s * Math.max(0, Math.min(k, 4 - k, 1)));
  };
  return [part(5), part(3), part(1)];
}

/** How much one pixel of a drag on the label moves the value. */
export function dragStep(row: Row, fine: boolean, coarse: boolean): number {
  const span = (row.sliderMax ?? 1) - (row.sliderMin ?? 0);
  const base =
    row.kind === "angle" ? 1 : row.kind === "point" ? 0.002 : Math.max(span / 300, 0.001);
  const rounded = 10 ** Math.round(Math.log10(base));
  return rounded * (fine ? 0.1 : 1) * (coarse ? 10 : 1);
}

/** Where a value stands on its slider, 0 to 1. */
export function sliderShare(row: Row, value: number): number {
  const low = row.sliderMin ?? 0;
  const high = row.sliderMax ?? 1;
  return Math.min(1, Math.max(0, (value - low) / (high - low)));
}

/** The value at a place of the slider, with steps that suit its length. */
export function sliderValue(row: Row, share: number, fine: boolean): number {
  const low = row.sliderMin ?? 0;
  const high = row.sliderMax ?? 1;
  const raw = low + (high - low) * Math.min(1, Math.max(0, share));
  const step = 10 ** Math.floor(Math.log10((high - low) / 100)) * (fine ? 0.1 : 1);
  return tidy(Math.round(raw / step) * step, 5);
}

/** A frame as minutes, seconds and frames. */
export function clockText(frame: number, fps: number): string {
  const rate = Math.max(1, Math.round(fps));
  const sign = frame < 0 ? "-" : "";
  const whole = Math.round(Math.abs(frame));
  const seconds = Math.floor(whole / rate);
  const two = (value: number) => String(value).padStart(2, "0");
  return `${sign}${Math.floor(seconds / 60)}:${two(seconds % 60)}:${two(whole % rate)}`;
}
