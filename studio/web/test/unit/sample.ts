// A small table and scenes for the tests of the document.

import { Editor } from "../../src/document/edits";
import { Table, type Row } from "../../src/document/table";

function row(
  id: number,
  name: string,
  kind: Row["kind"],
  value: Row["default"],
  more: Partial<Row> = {},
): Row {
  const [group, label] = name.includes("/") ? name.split("/") : ["", name];
  return {
    id,
    name,
    label: label!,
    group: group!,
    kind,
    default: value,
    step: 1,
    unit: "",
    animatable: true,
    ...more,
  };
}

export const table = new Table({
  version: "",
  rows: [
    row(1, "Shape", "shape", ""),
    row(83, "Presets", "presets", 0, { entries: ["None", "Basic Circle", "Basic Star"] }),
    row(3, "Color", "colour", [1, 1, 1]),
    row(4, "Thickness", "float", 10, { min: 0.2, max: 1000, sliderMin: 1, sliderMax: 50 }),
    row(38, "End", "float", 100, { min: 0, max: 100, sliderMin: 0, sliderMax: 100, unit: "%" }),
    row(7, "Transform/XY Position", "point", [0.5, 0.5]),
    row(11, "Transform/Z Rotation", "angle", 0, { min: -3600, max: 3600 }),
    row(15, "Repeater/Enable Repeater", "toggle", false),
    row(17, "Repeater/Instances", "float", 2, { min: 0, max: 1000 }),
    row(53, "Camera/XY Position", "point", [0.5, 0.5]),
    row(55, "Camera/Zoom", "float", 355.6, { min: 0, max: 30000 }),
    row(35, "Transfer Mode", "menu", 0, { entries: ["None", "Normal", "Add"] }),
  ],
  groups: [],
  rules: [{ parameter: 15, values: [1], rows: [17] }],
  shapes: [],
  formats: [],
  easings: [],
  endings: [],
});

export const scene = `{
  "orbel": 1, "size": [1280,720],
  "parameters": {
    "4": 1.40e1,
    "Color": [1.0, 0.72,  0.350],
    "End": {"keys": [[0, 0.0, "ease"], [45.0, 1e2]]},
    "Zoom": 500,
    "Transfer Mode": 2
  }
}
`;

export function editor(text = scene): Editor {
  return new Editor(text, table);
}
