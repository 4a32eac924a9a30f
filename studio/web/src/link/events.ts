// What the server tells on its own: one line of JSON an event, for as long as the page is open.

import type { Job } from "./api";
import type { Client } from "./client";

export type ServerEvent =
  | { event: "disk"; revision: string; name: string }
  | { event: "jobs"; jobs: Job[] }
  | { event: "files" }
  | { event: "ending" }
  | { event: "alive" };

/** Listens for ever. `up` hears whether the line stands: from then on no event is missed. */
export async function listen(
  client: Client,
  heard: (event: ServerEvent) => void,
  up: (connected: boolean, reason?: unknown) => void,
): Promise<never> {
  for (let pause = 250; ; pause = Math.min(4000, pause * 2)) {
    try {
      const answer = await client.send("/api/events");
      pause = 250;
      // The first line, a sign of life, comes when the server has begun to listen for this page.
      let stands = false;
      await readLines(answer, (event) => {
        if (!stands) up((stands = true));
        heard(event);
      });
      up(false);
    } catch (reason) {
      up(false, reason);
    }
    await new Promise((resolve) => setTimeout(resolve, pause));
  }
}

async function readLines(answer: Response, heard: (event: ServerEvent) => void): Promise<void> {
  const reader = answer.body?.getReader();
  const decoder = new TextDecoder();
  let left = "";
  while (reader) {
    const { done, value } = await reader.read();
    if (done) return;
    const lines = (left + decoder.decode(value, { stream: true })).split("\n");
    left = lines.pop() ?? "";
    for (const line of lines) {
      if (line.trim()) heard(JSON.parse(line) as ServerEvent);
    }
  }
}
