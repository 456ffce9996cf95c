// SPDX-License-Identifier: Apache-2.0
// Walls with their openings, doors, windows, and the rooms.

import { FLOORS, X_AXES, Y_AXES, Y_NAMES } from './building.mjs';
import { box, frame, mapped } from './parts.mjs';
import { block } from './solids.mjs';

const WALL_HEIGHT = 2900;
const DOOR = { from: 1200, width: 1000, height: 2100, leaf: 50 };
const WINDOW = {
  width: 2000, sill: 900, head: 2400, depth: 80, frame: 60, pane: 20,
};
/** How far an opening body reaches through either face of its wall. */
const THROUGH = 50;
const LAYER_SET = {
  exteriorWall: 'Exterior wall', brickWall: 'Brick wall', partition: 'Partition',
};

/** The type whose shape every single door leaf repeats: a leaf that stands on its origin. */
export const DOOR_TYPE = {
  name: 'Door type 1000x2100',
  parts: [box(2, [-DOOR.width / 2, DOOR.width / 2], [-DOOR.leaf / 2, DOOR.leaf / 2],
    [0, DOOR.height])],
};

function rangesOf(axis, along, across, heights) {
  return axis === 0 ? [along, across, heights] : [across, along, heights];
}

/**
 * A wall along x (axis 0) or y (axis 1). `openings` holds [label, range along, heights]; one that
 * starts at the foot of the wall is open below, so that no sill of zero height remains.
 */
function addWall(building, wall) {
  const { name, floor, base, axis, span, line, thickness, kind, openings = [] } = wall;
  const across = [line - thickness / 2, line + thickness / 2];
  const part = box(2, ...rangesOf(axis, span, across, [base, base + WALL_HEIGHT]));
  const cuts = openings.map(([label, along, heights]) => {
    const low = heights[0] === 0 ? base - THROUGH : base + heights[0];
    const ranges = rangesOf(axis, along, [across[0] - THROUGH, across[1] + THROUGH],
      [low, base + heights[1]]);
    return {
      name: `Opening ${name} ${label}`,
      box: { min: ranges.map((r) => r[0]), max: ranges.map((r) => r[1]) },
    };
  });
  part.solid = block(part.solid.min, part.solid.max, cuts.map((cut) => cut.box));
  building.add({
    name, ifcClass: 'IfcWall', kind, storey: floor, parts: [part], openings: cuts,
    type: kind === 'partition' ? 'PARTITIONING' : 'SOLIDWALL', layers: LAYER_SET[kind],
    turned: axis === 1, external: kind === 'exteriorWall',
  });
}

function addDoor(building, { wall, floor, base, x, y, width }) {
  const single = width === DOOR.width;
  const ranges = [[x, x + width], [y - DOOR.leaf / 2, y + DOOR.leaf / 2],
    [base, base + DOOR.height]];
  const solid = block(ranges.map((r) => r[0]), ranges.map((r) => r[1]));
  building.add({
    name: `Door ${wall.replace('Wall ', '')}`, ifcClass: 'IfcDoor', type: 'DOOR', kind: 'door',
    storey: floor, material: 'Timber',
    fills: { host: wall, opening: `Opening ${wall} door` },
    overall: [DOOR.height, width],
    operation: single ? 'SINGLE_SWING_LEFT' : 'DOUBLE_DOOR_SINGLE_SWING',
    shapeType: single ? DOOR_TYPE.name : undefined,
    parts: single
      ? [mapped(DOOR_TYPE.name, [x + width / 2, y, base], solid)]
      : [box(2, ...ranges)],
  });
}

function addWindow(building, { wall, floor, base, from, y }) {
  const heights = [base + WINDOW.sill, base + WINDOW.head];
  const across = (depth) => [y - depth / 2, y + depth / 2];
  const to = from + WINDOW.width;
  building.add({
    name: `Window ${wall.replace('Wall ', '')}`, ifcClass: 'IfcWindow', type: 'WINDOW',
    kind: 'window', storey: floor, material: 'Glass',
    fills: { host: wall, opening: `Opening ${wall} window` },
    overall: [WINDOW.head - WINDOW.sill, WINDOW.width],
    parts: [
      frame(1, [[from, to], across(WINDOW.depth), heights], WINDOW.frame),
      box(1, [from + WINDOW.frame, to - WINDOW.frame], across(WINDOW.pane),
        [heights[0] + WINDOW.frame, heights[1] - WINDOW.frame]),
    ],
  });
}

function addFacades(building, floor, base) {
  for (const [line, letter] of [[0, 'A'], [13000, 'D']]) {
    for (let i = 0; i + 1 < X_AXES.length; ++i) {
      const name = `Wall ${floor} ${letter}/${i + 1}-${i + 2}`;
      const middle = (X_AXES[i] + X_AXES[i + 1]) / 2;
      const wall = { name, floor, base, axis: 0, line, thickness: 200, kind: 'exteriorWall',
        span: [X_AXES[i] + 200, X_AXES[i + 1] - 200] };
      if (floor === 'F1' && letter === 'A' && i === 1) {
        const openings = [['door', [middle - 900, middle + 900], [0, DOOR.height]]];
        addWall(building, { ...wall, openings });
        addDoor(building, { wall: name, floor, base, x: middle - 900, y: line, width: 1800 });
        continue;
      }
      const openings = [['window', [middle - 1000, middle + 1000], [WINDOW.sill, WINDOW.head]]];
      addWall(building, { ...wall, openings });
      addWindow(building, { wall: name, floor, base, from: middle - 1000, y: line });
    }
  }
  for (const [line, number] of [[0, 1], [24000, 5]]) {
    for (let j = 0; j + 1 < Y_AXES.length; ++j) {
      addWall(building, {
        name: `Wall ${floor} ${number}/${Y_NAMES[j]}-${Y_NAMES[j + 1]}`, floor, base, axis: 1,
        line, thickness: 200, kind: 'exteriorWall', span: [Y_AXES[j] + 200, Y_AXES[j + 1] - 200],
      });
    }
  }
}

/** Openings for services in the corridor walls; runs without one clash with the wall. */
const DUCT_OPENING = (x) => ['duct', [x - 360, x + 360], [2190, 2860]];
const SPRINKLER_OPENING = (x) => ['sprinkler', [x - 105, x + 105], [2680, 2890]];
const SERVICE_OPENINGS = new Map([
  ['Wall F1 B/1-2', [DUCT_OPENING(4500)]],
  ['Wall F2 B/1-2', [DUCT_OPENING(4500)]],
  ['Wall F2 B/3-4', [DUCT_OPENING(16500)]],
  ['Wall F1 C/1-2', [SPRINKLER_OPENING(3000)]],
  ['Wall F2 C/1-2', [SPRINKLER_OPENING(3000)]],
  ['Wall F2 C/2-3', [SPRINKLER_OPENING(9000)]],
  ['Wall F1 C/3-4', [['water', [15900, 16600], [1850, 2050]]]],
]);

function addCorridorWalls(building, floor, base) {
  for (const [line, letter] of [[5000, 'B'], [8000, 'C']]) {
    for (let i = 0; i + 1 < X_AXES.length; ++i) {
      const name = `Wall ${floor} ${letter}/${i + 1}-${i + 2}`;
      const x = X_AXES[i] + DOOR.from;
      addWall(building, {
        name, floor, base, axis: 0, line, thickness: 200, kind: 'brickWall',
        span: [X_AXES[i] + 200, X_AXES[i + 1] - 200],
        openings: [['door', [x, x + DOOR.width], [0, DOOR.height]],
          ...(SERVICE_OPENINGS.get(name) ?? [])],
      });
      addDoor(building, { wall: name, floor, base, x, y: line, width: DOOR.width });
    }
  }
}

function addPartitions(building, floor, base) {
  const partition = { floor, base, axis: 1, thickness: 100, kind: 'partition' };
  const lines = [[2, 'A', 'B'], [3, 'A', 'B'], [4, 'A', 'B'], [2, 'C', 'D'], [4, 'C', 'D']];
  for (const [number, from, to] of lines) {
    addWall(building, {
      ...partition, name: `Wall ${floor} ${number}/${from}-${to}`, line: X_AXES[number - 1],
      span: [Y_AXES[Y_NAMES.indexOf(from)] + 200, Y_AXES[Y_NAMES.indexOf(to)] - 200],
    });
  }
  // Drawn into the corridor wall (its face is at 8100) by 5 mm below and by 3 mm above.
  const start = floor === 'F1' ? 8095 : 8097;
  addWall(building, { ...partition, name: `Wall ${floor} washroom`, line: 15000,
    span: [start, 10000] });
}

function addSpaces(building, floor, base) {
  const rooms = [
    ['Corridor', [100, 23900], [5100, 7900]],
    ['Office', [100, 5950], [100, 4900]],
    ['Washroom', [15050, 17950], [8100, 12900]],
  ];
  for (const [label, x, y] of rooms) {
    const name = `Space ${floor} ${label}`;
    const parts = [box(2, x, y, [base, base + WALL_HEIGHT])];
    building.spaces.push({ name, label, storey: floor, parts });
    building.notChecked.push({ name, ifcClass: 'IfcSpace', why: 'A room is no body.' });
  }
}

export function addArchitecture(building) {
  for (const [floor, base] of FLOORS) {
    addFacades(building, floor, base);
    addCorridorWalls(building, floor, base);
    addPartitions(building, floor, base);
    addSpaces(building, floor, base);
  }
}
