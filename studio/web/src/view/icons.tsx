// The few signs of the room, drawn on a grid of 15.

// Plain data and no elements: an element that outlives its drawing keeps every drawing since alive.
const signs = {
  undo: { d: "M5 2 2 5l3 3M2 5h7a4 4 0 0 1 0 8H5" },
  redo: { d: "m10 2 3 3-3 3M13 5H6a4 4 0 0 0 0 8h4" },
  first: { d: "M2 2h2v11H2zM13 2v11L5 7.5z", full: true },
  back: { d: "M11.500 2v11L3 7.500z", full: true },
  play: { d: "M3.500 2v11l9-5.500z", full: true },
  pause: { d: "M3 2h3.200v11H3zM8.800 2H12v11H8.800z", full: true },
  last: { d: "M11 2h2v11h-2zM2 2v11l8-5.500z", full: true },
  next: { d: "M3.500 2v11L12 7.500z", full: true },
  loop: { d: "M4 4.500h5.500a3 3 0 0 1 0 6H3.500M6 2 3.500 4.500 6 7M5.500 8 3 10.500 5.500 13" },
  close: { d: "m3.500 3.500 8 8m0-8-8 8" },
  chevron: { d: "m4 6 3.500 3.500L11 6" },
  path: { d: "M2 12C2 4 13 11 13 3", dashes: "2 2.200" },
  handles: { d: "M7.500 1.500v12M1.500 7.500h12M7.500 4a3.500 3.500 0 1 0 .01 0" },
  safe: { d: "M1.500 3h12v9h-12zM4 5h7v5H4z" },
  magnet: { d: "M3 2v6a4.500 4.500 0 0 0 9 0V2M3 5h2.500M9.500 5H12M5.500 2v6a2 2 0 0 0 4 0V2" },
  bin: { d: "M3 4h9M6 4V2.500h3V4M4 4l.600 8.500h5.800L11 4" },
  plus: { d: "M7.500 3v9M3 7.500h9" },
} satisfies Record<string, Sign>;

interface Sign {
  d: string;
  /** Filled, not drawn as a line. */
  full?: boolean;
  dashes?: string;
}

export type IconName = keyof typeof signs;

export function Icon({ name }: { name: IconName }) {
  const { d, full, dashes }: Sign = signs[name];
  return (
    <svg class="icon" width="15" height="15" viewBox="0 0 15 15" aria-hidden="true">
      <path class={full ? "full" : undefined} d={d} stroke-dasharray={dashes} />
    </svg>
  );
}
