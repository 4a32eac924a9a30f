import assert from "node:assert/strict";
import { test } from "node:test";
import { StreamCutter } from "../../src/link/frames";
import { Newest } from "../../src/link/newest";

test("newest wins: what waits is replaced, and nothing is lost after an error", async () => {
  const asked: number[] = [];
  const answered: number[] = [];
  const release: (() => void)[] = [];
  const newest = new Newest<number, number>(
    (question) => {
      asked.push(question);
      return new Promise((resolve, reject) =>
        release.push(() => (question === 4 ? reject(new Error("no")) : resolve(question))),
      );
    },
    (answer) => answered.push(answer),
    () => answered.push(-1),
  );
  const settle = async () => {
    release.shift()?.();
    await new Promise((resolve) => setTimeout(resolve, 0));
  };
  [1, 2, 3, 4].forEach((question) => newest.request(question));
  await settle();
  newest.request(5);
  await settle();
  await settle();
  assert.deepEqual(asked, [1, 4, 5]);
  assert.deepEqual(answered, [1, -1, 5]);
  assert.equal(newest.idle, true);
});

test("a question that overtakes ends the one under way, without a failure", async () => {
  const answered: string[] = [];
  const newest = new Newest<string, string>(
    (question, stop) =>
      new Promise((resolve, reject) => {
        if (question !== "exact") return resolve(question);
        stop.addEventListener("abort", () => reject(new Error("stopped")));
      }),
    (answer) => answered.push(answer),
    () => answered.push("failed"),
    (next, asked) => asked === "exact" && next !== "exact",
  );
  newest.request("exact");
  newest.request("exact");
  newest.request("quick");
  await new Promise((resolve) => setTimeout(resolve, 0));
  assert.deepEqual(answered, ["quick"]);
  assert.equal(newest.idle, true);
});

test("a stream is cut into its frames however it arrives", () => {
  const frame = (number: number, size: number) => {
    const bytes = new Uint8Array(16 + size).fill(number);
    const head = new DataView(bytes.buffer);
    [number, 1, size / 4, size].forEach((value, at) => head.setUint32(at * 4, value, true));
    return bytes;
  };
  const stream = new Uint8Array([...frame(3, 8), ...frame(5, 16), ...frame(6, 4)]);
  for (const piece of [1, 5, 16, 17, 100]) {
    const got: string[] = [];
    const cutter = new StreamCutter((head, pixels) =>
      got.push(`${head.frame}:${head.height}:${pixels.join("")}`),
    );
    for (let at = 0; at < stream.length; at += piece) cutter.take(stream.subarray(at, at + piece));
    assert.deepEqual(got, ["3:2:33333333", "5:4:5555555555555555", "6:1:6666"], String(piece));
  }
});
