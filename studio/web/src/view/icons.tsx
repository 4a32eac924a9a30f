// The few signs of the room, drawn on a grid of 15.

import type { JSX } from "preact";

const shapes = {
  undo: <path d="M5 2 2 5l3 3M2 5h7a4 4 0 0 1 0 8H5" />,
  redo: <path d="m10 2 3 3-3 3M13 5H6a4 4 0 0 0 0 8h4" />,
  first: <path class="full" d="M2 2h2v11H2zM13 2v11L5 7.5z" />,
  back: <path class="full" d="M11.500 2v11L3 7.500z" />,
  play: <path class="full" d="M3.500 2v11l9-5.500z" />,
  pause: <path class="full" d="M3 2h3.200v11H3zM8.800 2H12v11H8.800z" />,
  last: <path class="full" d="M11 2h2v11h-2zM2 2v11l8-5.500z" />,
  next: <path class="full" d="M3.500 2v11L12 7.500z" />,
  loop: (
    <path d="M4 4.500h5.500a3 3 0 0 1 0 6H3.500M6 2 3.500 4.500 6 7M5.500 8 3 10.500 5.500 13" />
  ),
  close: <path d="m3.500 3.500 8 8m0-8-8 8" />,
  chevron: <path d="m4 6 3.500 3.500L11 6" />,
  path: <path d="M2 12C2 4 13 11 13 3" stroke-dasharray="2 2.200" />,
  handles: <path d="M7.500 1.500v12M1.500 7.500h12M7.500 4a3.500 3.500 0 1 0 .01 0" />,
  safe: <path d="M1.500 3h12v9h-12zM4 5h7v5H4z" />,
  magnet: (
    <path d="M3 2v6a4.500 4.500 0 0 0 9 0V2M3 5h2.500M9.500 5H12M5.500 2v6a2 2 0 0 0 4 0V2" />
  ),
  bin: <path d="M3 4h9M6 4V2.500h3V4M4 4l.600 8.500h5.800L11 4" />,
  plus: <path d="M7.500 3v9M3 7.500h9" />,
} satisfies Record<string, JSX.Element>;

export type IconName = keyof typeof shapes;

export function Icon({ name }: { name: IconName }) {
  return (
    <svg class="icon" width="15" height="15" viewBox="0 0 15 15" aria-hidden="true">
      {shapes[name]}
    </svg>
  );
}
