// Builds the page into dist/, or with --tests its unit tests into out/unit/.
import { build } from "esbuild";
import { copyFile, mkdir, readdir, rm } from "node:fs/promises";

const common = {
  bundle: true,
  jsx: "automatic",
  jsxImportSource: "preact",
  logLevel: "warning",
  mainFields: ["module", "main"],
};

async function buildTests() {
  await rm("out/unit", { recursive: true, force: true });
  const names = (await readdir("test/unit")).filter((name) => name.endsWith(".test.ts"));
  await build({
    ...common,
    entryPoints: names.map((name) => `test/unit/${name}`),
    outdir: "out/unit",
    outExtension: { ".js": ".mjs" },
    platform: "node",
    format: "esm",
    target: "node18",
    sourcemap: "inline",
  });
}

async function buildPage() {
  await rm("dist", { recursive: true, force: true });
  await mkdir("dist");
  const page = { ...common, minify: true, target: "es2021", legalComments: "none" };
  await build({ ...page, entryPoints: ["src/main.tsx"], outfile: "dist/studio.js" });
  await build({ ...page, entryPoints: ["src/studio.css"], outfile: "dist/studio.css" });
  await copyFile("src/index.html", "dist/index.html");
  await copyFile("src/icon.svg", "dist/icon.svg");
}

await (process.argv.includes("--tests") ? buildTests() : buildPage());
