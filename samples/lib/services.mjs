// SPDX-License-Identifier: Apache-2.0
// Ducts, trays and pipes with their fittings, terminals and equipment, by system.

import { FLOORS } from './building.mjs';
import { box, facetedBox, mapped, notched, round } from './parts.mjs';
import { cylinder } from './solids.mjs';

const system = (name, objectType, type, kind) => ({ name, objectType, type, kind });

/** Distribution systems: name, what they carry, predefined type, and the kind of their runs. */
export const SYSTEMS = {
  SA: system('SA-1 Supply air 送风', 'SupplyAir', 'AIRCONDITIONING', 'supplyDuct'),
  RA: system('RA-1 Return air 回风', 'ReturnAir', 'AIRCONDITIONING', 'returnDuct'),
  EA: system('EA-1 Exhaust air 排风', 'ExhaustAir', 'EXHAUST', 'exhaustDuct'),
  FA: system('FA-1 Fresh air 新风', 'FreshAir', 'VENTILATION', 'freshDuct'),
  CHW: system('CHW-1 Chilled water 冷供水', 'ChilledWaterSupply', 'CHILLEDWATER', 'chilledPipe'),
  CW: system('CW-1 Cold water 给水', 'ColdWater', 'DOMESTICCOLDWATER', 'coldPipe'),
  HW: system('HW-1 Hot water 热给水', 'HotWater', 'DOMESTICHOTWATER', 'hotPipe'),
  SW: system('SW-1 Sewage 污水', 'Sewage', 'SEWAGE', 'sewagePipe'),
  WW: system('WW-1 Waste water 废水', 'WasteWater', 'WASTEWATER', 'wastePipe'),
  RW: system('RW-1 Rain water 雨水', 'RainWater', 'STORMWATER', 'rainPipe'),
  SP: system('SP-1 Sprinkler 喷淋', 'Sprinkler', 'FIREPROTECTION', 'sprinklerPipe'),
  EL: system('EL-1 Power 动力', 'Power', 'ELECTRICAL', 'tray'),
  DA: system('DA-1 Data 弱电', 'Data', 'DATA', 'trunking'),
};

/** Outer radius in millimetres by nominal diameter. */
const RADIUS = { 25: 17, 32: 21, 40: 24, 50: 30, 65: 38, 100: 57, 110: 55 };

const HEAD = { radius: 15, height: 80 };
/** The type whose shape every sprinkler head repeats: it hangs below its origin. */
export const HEAD_TYPE = {
  name: 'Sprinkler head type', parts: [round([0, 0, -HEAD.height], [0, 0, 0], HEAD.radius)],
};

const X = [1, 0, 0];
const Y = [0, 1, 0];
const Z = [0, 0, 1];
const minus = (direction) => direction.map((v) => (v === 0 ? 0 : -v));
const along = (point, direction, length) => point.map((v, k) => v + direction[k] * length);

/** Adds the runs and fittings of one storey. */
class Installer {
  constructor(building, storey, base) {
    Object.assign(this, { building, storey, base });
  }

  /** Heights are given above the floor of the storey. */
  up([x, y, z]) {
    return [x, y, z + this.base];
  }

  lift([x, y, [z0, z1]]) {
    return [x, y, [z0 + this.base, z1 + this.base]];
  }

  add(system, name, fields) {
    this.building.add({ name: `${name} ${this.storey}`, storey: this.storey, system,
      kind: SYSTEMS[system].kind, ...fields });
  }

  pipe(system, name, dn, from, to, extra = {}) {
    const ends = [this.up(from), this.up(to)];
    this.add(system, name, {
      ifcClass: 'IfcPipeSegment', type: 'RIGIDSEGMENT', diameter: dn, material: 'Steel pipe',
      parts: [round(...ends, RADIUS[dn])], ports: ends, ...extra,
    });
  }

  /** Two round legs that run a little past the corner, so that no rim of one lies on the other. */
  elbow(system, name, dn, centre, first, second, leg) {
    const radius = RADIUS[dn];
    const at = this.up(centre);
    const legs = [first, second].map((d) => round(along(at, minus(d), 0.6 * radius),
      along(at, d, leg), radius));
    this.add(system, name, {
      ifcClass: 'IfcPipeFitting', type: 'BEND', diameter: dn, material: 'Steel pipe', parts: legs,
      ports: [along(at, first, leg), along(at, second, leg)],
    });
  }

  tee(system, name, dn, centre, main, branch, leg, branchDn, branchLeg = leg) {
    const at = this.up(centre);
    const ends = [along(at, minus(main), leg), along(at, main, leg)];
    const tip = along(at, branch, branchLeg);
    this.add(system, name, {
      ifcClass: 'IfcPipeFitting', type: 'JUNCTION', diameter: dn, material: 'Steel pipe',
      parts: [round(...ends, RADIUS[dn]), round(at, tip, RADIUS[branchDn])],
      ports: [...ends, tip],
    });
  }

  duct(system, name, axis, ranges, extra = {}) {
    const part = box(axis, ...this.lift(ranges));
    this.add(system, name, {
      ifcClass: 'IfcDuctSegment', type: 'RIGIDSEGMENT', material: 'Galvanised steel',
      parts: [part], ports: endPoints(part), size: crossSection(part), ...extra,
    });
  }

  tray(system, name, axis, ranges, extra = {}) {
    this.duct(system, name, axis, ranges, {
      ifcClass: 'IfcCableCarrierSegment', type: 'CABLETRAYSEGMENT', ...extra,
    });
  }

  /** A bend or tee of flat pieces: a notched outline with its ports at given points. */
  fitting(system, name, type, axis, ranges, notches, ports, extra = {}) {
    this.add(system, name, {
      ifcClass: 'IfcDuctFitting', type, material: 'Galvanised steel',
      parts: [notched(axis, this.lift(ranges), notches)], ports: ports.map((p) => this.up(p)),
      ...extra,
    });
  }

  terminal(system, name, type, ranges, port) {
    this.add(system, name, {
      ifcClass: 'IfcAirTerminal', type, kind: 'airTerminal', material: 'Aluminium',
      parts: [box(2, ...this.lift(ranges))], ports: [this.up(port)],
    });
  }

  head(name, point) {
    const [x, y, z] = this.up(point);
    this.add('SP', name, {
      ifcClass: 'IfcFireSuppressionTerminal', type: 'SPRINKLER', kind: 'sprinklerHead',
      material: 'Brass', shapeType: HEAD_TYPE.name, ports: [[x, y, z]],
      parts: [mapped(HEAD_TYPE.name, [x, y, z],
        cylinder(2, [x, y, z], HEAD.radius, z - HEAD.height, z))],
    });
  }
}

function endPoints({ axis, solid }) {
  const middle = solid.min.map((v, k) => (v + solid.max[k]) / 2);
  return [solid.min, solid.max].map((end) => middle.map((v, k) => (k === axis ? end[k] : v)));
}

/** Width and height of a level run, in this order. */
function crossSection({ axis, solid }) {
  const width = axis === 0 ? 1 : 0;
  return [solid.max[width] - solid.min[width], solid.max[2] - solid.min[2]];
}

/** Supply branch from a tee in the corridor to a diffuser in the room on the A side. */
function addSupplyBranch(on, label, x) {
  on.fitting('SA', `SA tee ${label}`, 'JUNCTION', 2,
    [[x - 300, x + 300], [5350, 5950], [2400, 2650]],
    [{ corner: [-1, -1], size: [150, 100] }, { corner: [1, -1], size: [150, 100] }],
    [[x - 300, 5700, 2525], [x + 300, 5700, 2525], [x, 5350, 2525]]);
  on.duct('SA', `SA branch ${label}`, 1, [[x - 150, x + 150], [3000, 5350], [2400, 2650]]);
  on.fitting('SA', `SA drop ${label}`, 'BEND', 0,
    [[x - 150, x + 150], [2650, 3000], [2300, 2650]], [{ corner: [1, -1], size: [50, 100] }],
    [[x, 3000, 2525], [x, 2800, 2300]]);
  on.terminal('SA', `SA diffuser ${label}`, 'DIFFUSER',
    [[x - 200, x + 200], [2600, 3000], [2200, 2300]], [x, 2800, 2300]);
}

function addSupplyAir(on) {
  on.add('SA', 'AHU', {
    ifcClass: 'IfcUnitaryEquipment', type: 'AIRHANDLER', kind: 'airEquipment',
    material: 'Galvanised steel', ports: [on.up([2500, 5700, 2525])],
    parts: [facetedBox(...on.lift([[1000, 2500], [5310, 6090], [2300, 2750]]))],
  });
  const main = (number, span) => on.duct('SA', `SA main ${number}`, 0,
    [span, [5450, 5950], [2400, 2650]], { insulation: 30 });
  main(1, [2500, 4200]);
  addSupplyBranch(on, 'west', 4500);
  main(2, [4800, 16200]);
  addSupplyBranch(on, 'east', 16500);
  main(3, [16800, 21000]);
}

function addExhaustAir(on) {
  on.terminal('EA', 'EA grille west', 'GRILLE', [[3900, 4000], [7150, 7550], [2350, 2600]],
    [4000, 7350, 2475]);
  on.duct('EA', 'EA main', 0, [[4000, 21000], [7150, 7550], [2350, 2600]]);
  on.fitting('EA', 'EA bend', 'BEND', 2, [[21000, 21500], [7050, 7550], [2350, 2600]],
    [{ corner: [-1, -1], size: [100, 100] }], [[21000, 7350, 2475], [21300, 7050, 2475]]);
  on.terminal('EA', 'EA grille east', 'GRILLE', [[21100, 21500], [6950, 7050], [2350, 2600]],
    [21300, 7050, 2475]);
}

function addCorridorTray(on) {
  const band = [[6150, 6450], [2500, 2600]];
  const fitting = { ifcClass: 'IfcCableCarrierFitting' };
  if (on.storey === 'F1') {
    on.tray('EL', 'Tray main 1', 0, [[2000, 19200], ...band]);
    on.fitting('EL', 'Tray tee', 'TEE', 2, [[19200, 19800], [6110, 6450], [2500, 2600]],
      [{ corner: [-1, -1], size: [150, 40] }, { corner: [1, -1], size: [150, 40] }],
      [[19200, 6300, 2550], [19800, 6300, 2550], [19500, 6110, 2550]], fitting);
    on.tray('EL', 'Tray branch', 1, [[19350, 19650], [5300, 6110], [2500, 2600]]);
    on.tray('EL', 'Tray main 2', 0, [[19800, 22000], ...band]);
  } else {
    on.tray('EL', 'Tray main 1', 0, [[2000, 22000], ...band]);
  }
  on.fitting('EL', 'Tray bend', 'BEND', 2, [[22000, 22400], [6150, 6550], [2500, 2600]],
    [{ corner: [-1, 1], size: [100, 100] }], [[22000, 6300, 2550], [22250, 6550, 2550]], fitting);
  on.tray('EL', 'Tray end', 1, [[22100, 22400], [6550, 7300], [2500, 2600]]);
}

function addSprinklerBranch(on, label, x) {
  on.tee('SP', `SP tee ${label}`, 100, [x, 6750, 2550], X, Z, 120, 32);
  on.pipe('SP', `SP rise ${label}`, 32, [x, 6750, 2670], [x, 6750, 2725]);
  on.elbow('SP', `SP elbow ${label}`, 32, [x, 6750, 2785], minus(Z), Y, 60);
  on.pipe('SP', `SP branch ${label} 1`, 32, [x, 6810, 2785], [x, 9440, 2785]);
  on.tee('SP', `SP head tee ${label}`, 32, [x, 9500, 2785], Y, minus(Z), 60, 32);
  on.head(`Sprinkler head ${label} 1`, [x, 9500, 2725]);
  on.pipe('SP', `SP branch ${label} 2`, 32, [x, 9560, 2785], [x, 10940, 2785]);
  on.elbow('SP', `SP end elbow ${label}`, 32, [x, 11000, 2785], minus(Y), minus(Z), 60);
  on.head(`Sprinkler head ${label} 2`, [x, 11000, 2725]);
}

function addSprinklerMain(on) {
  const main = (number, from, to) =>
    on.pipe('SP', `SP main ${number}`, 100, [from, 6750, 2550], [to, 6750, 2550]);
  if (on.storey === 'F1') {
    on.pipe('SP', 'SP riser 1', 100, [1000, 6750, 300], [1000, 6750, 2430]);
    on.tee('SP', 'SP riser tee', 100, [1000, 6750, 2550], Z, X, 120, 100);
    on.pipe('SP', 'SP riser 2', 100, [1000, 6750, 2670], [1000, 6750, 6030]);
  } else {
    on.elbow('SP', 'SP riser elbow', 100, [1000, 6750, 2550], minus(Z), X, 120);
  }
  main(1, 1120, 2880);
  addSprinklerBranch(on, 'west', 3000);
  main(2, 3120, 8880);
  addSprinklerBranch(on, 'middle', 9000);
  main(3, 9120, 20500);
}

/** A riser through both floors and the main that leaves it in each corridor. */
function addWaterMain(on, { system, dn, x, y, insulation, branchAt, branch }) {
  const pipe = (label, from, to) => on.pipe(system, `${system} ${label}`, dn, from, to,
    { insulation });
  if (on.storey === 'F1') {
    pipe('riser 1', [x, y, 300], [x, y, 2070]);
    on.tee(system, `${system} riser tee`, dn, [x, y, 2150], Z, X, 80, dn);
    pipe('riser 2', [x, y, 2230], [x, y, 5670]);
  } else {
    on.elbow(system, `${system} riser elbow`, dn, [x, y, 2150], minus(Z), X, 80);
  }
  if (!branchAt) return pipe('main', [x + 80, y, 2150], [22000, y, 2150]);
  pipe('main 1', [x + 80, y, 2150], [branchAt - 80, y, 2150]);
  on.tee(system, `${system} branch tee`, dn, [branchAt, y, 2150], X, branch, 80, 25);
  return pipe('main 2', [branchAt + 80, y, 2150], [22000, y, 2150]);
}

/** Branch below the mains, through the corridor wall, and down to the basin. */
function addBasinBranch(on, system, x, y) {
  const name = (label) => `${system} basin ${label}`;
  on.pipe(system, name('drop'), 25, [x, y, 2070], [x, y, 2000]);
  on.elbow(system, name('elbow 1'), 25, [x, y, 1950], Z, Y, 50);
  on.pipe(system, name('branch'), 25, [x, y + 50, 1950], [x, 9450, 1950]);
  on.elbow(system, name('elbow 2'), 25, [x, 9500, 1950], minus(Y), minus(Z), 50);
  on.pipe(system, name('supply'), 25, [x, 9500, 1900], [x, 9500, 860]);
}

function addWater(on) {
  const low = on.storey === 'F1';
  addWaterMain(on, { system: 'CW', dn: 50, x: 1300, y: 6500, branchAt: 16000,
    branch: low ? minus(Z) : Y });
  addWaterMain(on, { system: 'HW', dn: 40, x: 1000, y: 7000, insulation: 25,
    branchAt: low ? 16500 : 0, branch: minus(Z) });
  if (low) {
    addBasinBranch(on, 'CW', 16000, 6500);
    addBasinBranch(on, 'HW', 16500, 7000);
    on.add('CW', 'Basin', {
      ifcClass: 'IfcSanitaryTerminal', type: 'WASHHANDBASIN', kind: 'basin', material: 'Ceramic',
      parts: [box(2, ...on.lift([[15900, 16600], [9350, 9650], [700, 860]]))],
      ports: [on.up([16000, 9500, 860])],
    });
  } else {
    // At the height of the hot main, which it runs through.
    on.pipe('CW', 'CW branch', 25, [16000, 6580, 2150], [16000, 7700, 2150]);
    on.pipe('CW', 'CW through door', 25, [19700, 4400, 1800], [19700, 5600, 1800]);
  }
}

function addDrainage(on) {
  if (on.storey === 'F1') {
    on.pipe('SW', 'SW stack 1', 110, [17300, 12300, 150], [17300, 12300, 2900]);
    on.tee('SW', 'SW stack tee', 110, [17300, 12300, 3025], Z, minus(X), 125, 110);
    on.pipe('SW', 'SW stack 2', 110, [17300, 12300, 3150], [17300, 12300, 6900]);
    on.pipe('SW', 'SW collector', 110, [17175, 12300, 3025], [12800, 12300, 3025]);
    on.pipe('RW', 'RW downpipe', 110, [-320, -320, 200], [-320, -320, 7600]);
  } else {
    on.pipe('WW', 'WW stack', 50, [12000, 12740, 200], [12000, 12740, 2600]);
  }
}

/** Single runs placed for one clash or one near miss each. */
function addSingleRuns(on) {
  const beside = on.storey === 'F1' ? 2020 : 2060;
  on.duct('RA', 'RA duct', 0, [[12800, 15800], [1500, 1900], [2400, 2650]]);
  on.tray('EL', 'Tray beside duct', 0, [[12800, 15800], [beside, beside + 200], [2450, 2550]]);
  const under = on.storey === 'F1' ? 3070 : 3040;
  on.tray('DA', 'Data trunking', 0, [[18600, 22000], [3000, 3100], [under - 60, under]],
    { type: 'CABLETRUNKINGSEGMENT' });
  if (on.storey === 'F1') {
    on.duct('FA', 'FA duct', 0, [[7500, 10500], [2000, 2400], [2950, 3250]]);
    on.duct('RA', 'RA crossing', 0, [[10500, 13500], [10000, 10400], [2950, 3150]]);
    on.pipe('SP', 'SP range near drain', 32, [13000, 11974, 3025], [16000, 11974, 3025]);
    on.pipe('SP', 'SP range below drain', 32, [13000, 12300, 2539], [16000, 12300, 2539]);
  } else {
    on.pipe('SP', 'SP test line', 32, [10500, 7822, 2200], [13500, 7822, 2200]);
    on.pipe('SP', 'SP range through duct', 32, [3500, 4000, 2520], [5500, 4000, 2520]);
    on.pipe('CHW', 'CHW pipe', 65, [7500, 3000, 2800], [10500, 3000, 2800]);
    on.pipe('SP', 'SP range beside CHW', 32, [7500, 3219, 2800], [10500, 3219, 2800]);
  }
}

function addBoard(on) {
  on.add('EL', 'Distribution board', {
    ifcClass: 'IfcElectricDistributionBoard', type: 'DISTRIBUTIONBOARD', kind: 'board',
    material: 'Steel S355',
    parts: [box(2, ...on.lift([[20500, 21300], [7650, 7900], [1000, 1900]]))],
  });
}

function addCoverings(building) {
  const name = 'Insulation SA main 1 F1';
  building.coverings.push({ name, covers: 'SA main 1 F1', storey: 'F1', thickness: 30 });
  building.notChecked.push({ name, ifcClass: 'IfcCovering', why: 'It has no body in the file.' });
}

export function addServices(building) {
  for (const [floor, base] of FLOORS) {
    const on = new Installer(building, floor, base);
    addSupplyAir(on);
    addExhaustAir(on);
    addCorridorTray(on);
    addSprinklerMain(on);
    addWater(on);
    addDrainage(on);
    addSingleRuns(on);
    addBoard(on);
  }
  const roof = new Installer(building, 'Roof', 7200);
  roof.add('EA', 'Roof fan', {
    ifcClass: 'IfcFan', type: 'CENTRIFUGALAIRFOIL', kind: 'airEquipment',
    material: 'Galvanised steel',
    parts: [box(2, ...roof.lift([[8000, 9000], [6000, 7000], [0, 800]]))],
  });
  addCoverings(building);
}
