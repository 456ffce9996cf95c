// SPDX-License-Identifier: Apache-2.0
// Columns, beams, slabs and stairs. Storey height 3600, slabs 200, clear height 3400.

import { FLOORS, X_AXES, Y_AXES, Y_NAMES } from './building.mjs';
import { box, flight } from './parts.mjs';
import { block } from './solids.mjs';

const CLEAR = 3400;
const BEAM_BOTTOM = 2900;
const HALF_COLUMN = 200;
const HALF_BEAM = 150;

function addColumns(building, floor, base) {
  for (let i = 0; i < X_AXES.length; ++i) {
    for (let j = 0; j < Y_AXES.length; ++j) {
      const [x, y] = [X_AXES[i], Y_AXES[j]];
      building.add({
        name: `Column ${floor} ${i + 1}/${Y_NAMES[j]}`,
        ifcClass: 'IfcColumn', type: 'COLUMN', kind: 'column', storey: floor,
        material: 'Concrete C30',
        parts: [box(2, [x - HALF_COLUMN, x + HALF_COLUMN], [y - HALF_COLUMN, y + HALF_COLUMN],
          [base, base + CLEAR])],
      });
    }
  }
}

function addBeam(building, floor, name, parts, extra = {}) {
  building.add({
    name: `Beam ${floor} ${name}`, ifcClass: 'IfcBeam', type: 'BEAM', kind: 'beam', storey: floor,
    material: 'Concrete C30', parts, ...extra,
  });
}

/** Frame beams between the faces of the columns, under the slab. */
function addFrameBeams(building, floor, base) {
  const heights = [base + BEAM_BOTTOM, base + CLEAR];
  Y_AXES.forEach((y, j) => {
    for (let i = 0; i + 1 < X_AXES.length; ++i) {
      const span = [X_AXES[i] + HALF_COLUMN, X_AXES[i + 1] - HALF_COLUMN];
      addBeam(building, floor, `${Y_NAMES[j]}/${i + 1}-${i + 2}`,
        [box(0, span, [y - HALF_BEAM, y + HALF_BEAM], heights)]);
    }
  });
  X_AXES.forEach((x, i) => {
    for (let j = 0; j + 1 < Y_AXES.length; ++j) {
      const span = [Y_AXES[j] + HALF_COLUMN, Y_AXES[j + 1] - HALF_COLUMN];
      addBeam(building, floor, `${i + 1}/${Y_NAMES[j]}-${Y_NAMES[j + 1]}`,
        [box(1, [x - HALF_BEAM, x + HALF_BEAM], span, heights)]);
    }
  });
}

function addSlab(building, { name, storey, type, top, openings }) {
  const part = box(2, [-200, 24200], [-200, 13200], [top - 200, top]);
  const cuts = openings.map(([label, [x0, x1], [y0, y1]]) => ({
    name: `Opening ${name} ${label}`,
    box: { min: [x0, y0, top - 250], max: [x1, y1, top + 50] },
  }));
  part.solid = block(part.solid.min, part.solid.max, cuts.map((cut) => cut.box));
  building.add({
    name, ifcClass: 'IfcSlab', type, kind: 'slab', storey, material: 'Concrete C30',
    parts: [part], openings: cuts,
  });
}

function addSlabs(building) {
  addSlab(building, { name: 'Slab F1', storey: 'F1', type: 'BASESLAB', top: 0, openings: [] });
  addSlab(building, {
    name: 'Slab F2', storey: 'F2', type: 'FLOOR', top: 3600,
    openings: [
      ['stair', [19000, 22800], [8500, 11200]],
      ['risers', [850, 1450], [6350, 6900]],
      ['soil stack', [17165, 17435], [12165, 12435]],
    ],
  });
  // The roof opening begins 300 mm late: the last treads of the upper stair run into the slab.
  addSlab(building, {
    name: 'Slab Roof', storey: 'Roof', type: 'ROOF', top: 7200,
    openings: [['stair', [19300, 22800], [8500, 11200]]],
  });
}

/** Two flights of nine treads with a landing half way up. */
function addStair(building, floor, base) {
  const name = `Stair ${floor}`;
  building.stairs.push({ name, storey: floor });
  const common = { treads: 9, going: 280, riser: 180, thickness: 300 };
  const addFlight = (number, shape) => building.add({
    name: `${name} flight ${number}`, ifcClass: 'IfcStairFlight', type: 'STRAIGHT',
    kind: 'flight', storey: floor, assembly: name, material: 'Concrete C30',
    stairs: { risers: 10, treads: 9, riser: 180, tread: 280 },
    parts: [flight({ ...common, ...shape })],
  });
  addFlight(1, { start: 19000, direction: 1, y: [8600, 9800], base, foot: base });
  addFlight(2, { start: 21520, direction: -1, y: [9900, 11100], base: base + 1800, foot: base });
  building.add({
    name: `${name} landing`, ifcClass: 'IfcSlab', type: 'LANDING', kind: 'slab', storey: floor,
    assembly: name, material: 'Concrete C30',
    parts: [box(2, [21520, 22720], [8600, 11100], [base + 1600, base + 1800])],
  });
}

export function addStructure(building) {
  addSlabs(building);
  for (const [floor, base] of FLOORS) {
    addColumns(building, floor, base);
    addFrameBeams(building, floor, base);
    addBeam(building, floor, 'secondary',
      [box(1, [20900, 21100], [150, 4850], [base + 3100, base + CLEAR])],
      { type: 'JOIST', kind: 'secondaryBeam' });
    addStair(building, floor, base);
  }
  addBeam(building, 'F1', 'canopy', [box(1, [2950, 3050], [-1500, 800], [1500, 1700])],
    { kind: 'steelBeam', material: 'Steel S355' });
}
