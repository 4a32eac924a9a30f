// Edits of JSON as text: what an edit does not name stays as it was written, to the byte.

import { parseTree, type Node, type ParseError, printParseErrorCode } from "jsonc-parser";

export type { Node };

/** Why a text is no JSON, and where. Line and column count from one. */
export interface TextFault {
  message: string;
  line: number;
  column: number;
}

export type Parsed = { root: Node; fault: null } | { root: null; fault: TextFault };

export function parseText(text: string): Parsed {
  const errors: ParseError[] = [];
  const root = parseTree(text, errors, {
    disallowComments: true,
    allowTrailingComma: false,
    allowEmptyContent: false,
  });
  const first = errors[0];
  if (first || !root) {
    return { root: null, fault: faultAt(text, first?.offset ?? 0, first) };
  }
  return { root, fault: null };
}

function faultAt(text: string, offset: number, error: ParseError | undefined): TextFault {
  const before = text.slice(0, offset);
  const line = before.split("\n").length;
  const words = error
    ? printParseErrorCode(error.error).replace(/([a-z])([A-Z])/g, "$1 $2")
    : "empty";
  return {
    message: words.toLowerCase(),
    line,
    column: offset - before.lastIndexOf("\n"),
  };
}

export interface Member {
  key: string;
  node: Node;
  value: Node;
}

/** The members of an object in the order of the text; none of anything else. */
export function members(node: Node | undefined): Member[] {
  if (node?.type !== "object") return [];
  return (node.children ?? []).flatMap((child) => {
    const [key, value] = child.children ?? [];
    return key && value ? [{ key: String(key.value), node: child, value }] : [];
  });
}

export function member(node: Node | undefined, key: string): Member | undefined {
  return members(node).find((item) => item.key === key);
}

export function items(node: Node | undefined): Node[] {
  return node?.type === "array" ? (node.children ?? []) : [];
}

/** What a node says, as plain values. */
export function plain(node: Node): unknown {
  if (node.type === "array") return items(node).map(plain);
  if (node.type === "object") {
    return Object.fromEntries(members(node).map((item) => [item.key, plain(item.value)]));
  }
  return node.value as unknown;
}

export function sourceOf(text: string, node: Node): string {
  return text.slice(node.offset, node.offset + node.length);
}

export function replaceNode(text: string, node: Node, replacement: string): string {
  return splice(text, node.offset, node.offset + node.length, replacement);
}

function splice(text: string, from: number, to: number, replacement: string): string {
  return text.slice(0, from) + replacement + text.slice(to);
}

/** Adds a member behind the last one, spaced as its neighbours are. */
export function addMember(text: string, object: Node, key: string, valueText: string): string {
  const written = members(object);
  const last = written[written.length - 1];
  if (!last) return fillEmpty(text, object, `${JSON.stringify(key)}: ${valueText}`);
  const end = last.node.offset + last.node.length;
  const entry = JSON.stringify(key) + colonOf(text, last) + valueText;
  return splice(text, end, end, `,${gapBefore(text, object, written)}${entry}`);
}

function colonOf(text: string, item: Member): string {
  const keyNode = item.node.children?.[0];
  return keyNode ? text.slice(keyNode.offset + keyNode.length, item.value.offset) : ": ";
}

/** The white space in front of the last member. */
function gapBefore(text: string, object: Node, written: Member[]): string {
  const last = written[written.length - 1]!;
  const previous = written[written.length - 2];
  const from = previous ? previous.node.offset + previous.node.length : object.offset + 1;
  const gap = text.slice(from, last.node.offset).replace(",", "");
  return previous || gap.includes("\n") ? gap : " ";
}

function fillEmpty(text: string, object: Node, entry: string): string {
  const lineStart = text.lastIndexOf("\n", object.offset) + 1;
  const indent = /^[ \t]*/.exec(text.slice(lineStart))?.[0] ?? "";
  const deeper = indent.includes("\t") ? `${indent}\t` : `${indent}  `;
  return replaceNode(text, object, `{\n${deeper}${entry}\n${indent}}`);
}

/** Takes a member out together with the comma that joined it. */
export function removeMember(text: string, object: Node, item: Member): string {
  const written = members(object);
  const index = written.findIndex((other) => other.node.offset === item.node.offset);
  const previous = written[index - 1];
  const next = written[index + 1];
  const start = item.node.offset;
  const end = start + item.node.length;
  if (previous) return splice(text, previous.node.offset + previous.node.length, end, "");
  if (next) return splice(text, start, next.node.offset, "");
  return replaceNode(text, object, "{}");
}

/** Sets, adds or (with null) removes a member of the object. */
export function setMember(
  text: string,
  object: Node,
  key: string,
  valueText: string | null,
): string {
  const old = member(object, key);
  if (valueText === null) return old ? removeMember(text, object, old) : text;
  return old ? replaceNode(text, old.value, valueText) : addMember(text, object, key, valueText);
}
