// What the server tells on its own: a line of JSON an event, for as long as the page is open. It
// comes through a socket, of which a browser allows hundreds; of other open answers it allows six.

import type { Job } from "./api";
import type { Client } from "./client";

export type ServerEvent =
  | { event: "disk"; revision: string; name: string }
  | { event: "jobs"; jobs: Job[] }
  | { event: "files"; changed: boolean }
  | { event: "ending" }
  | { event: "alive" };

/** Listens for ever. `up` hears whether the line stands: from then on no event is missed. */
export async function listen(
  client: Client,
  heard: (event: ServerEvent) => void,
  up: (connected: boolean, reason?: unknown) => void,
): Promise<never> {
  for (let pause = 250; ; pause = Math.min(4000, pause * 2)) {
    const stood = await line(client, heard, () => up(true));
    if (stood) pause = 250;
    // A socket does not say why it was refused, another call does.
    up(false, stood ? undefined : await client.get("/api/jobs").catch((reason: unknown) => reason));
    await new Promise((resolve) => setTimeout(resolve, pause));
  }
}

/** One socket from its first event, a sign of life, to its end: whether it stood at all. */
function line(
  client: Client,
  heard: (event: ServerEvent) => void,
  stands: () => void,
): Promise<boolean> {
  return new Promise((resolve) => {
    let stood = false;
    const socket = client.socket("/api/events");
    socket.onmessage = ({ data }: MessageEvent<string>) => {
      if (!stood) stands();
      stood = true;
      for (const each of data.split("\n")) {
        if (each.trim()) heard(JSON.parse(each) as ServerEvent);
      }
    };
    socket.onclose = () => resolve(stood);
  });
}
