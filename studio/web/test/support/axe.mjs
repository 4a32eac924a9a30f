// What is wrong with a page for those who see, hear or move differently.

import { readFile } from "node:fs/promises";
import { createRequire } from "node:module";

/** To be evaluated in the page first. */
export const axe = await readFile(
  createRequire(import.meta.url).resolve("axe-core/axe.min.js"),
  "utf8",
);

export async function violations(page) {
  return page.evaluate(async () => {
    const found = await window.axe.run(document, {
      runOnly: ["wcag2a", "wcag2aa", "wcag21a", "wcag21aa", "best-practice"],
    });
    return found.violations.map(
      ({ id, nodes }) =>
        `${id}: ${nodes
          .slice(0, 3)
          .map((node) => node.html.slice(0, 160))
          .join(" | ")}`,
    );
  });
}
