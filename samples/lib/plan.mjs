// SPDX-License-Identifier: Apache-2.0
// The clashes and near misses placed on purpose. `gap` is the plain distance of the two bodies in
// millimetres; `reportedBy` names the rule sets that must report the pair. The calculation in
// expected.mjs must come to the same list.

const ALL = ['builtin', 'spacing', 'tolerance'];
const CLEARANCE = ['builtin', 'spacing'];
const SPACING = ['spacing'];
const TOLERANCE = ['tolerance'];

const CLASHES = [
  { name: 'Duct through a beam', a: 'RA crossing F1', b: 'Beam F1 3/C-D', gap: 0, reportedBy: ALL,
    why: 'The return duct runs through the beam on axis 3, between its soffit and the slab.' },
  { name: 'Duct through a wall', a: 'SA branch east F1', b: 'Wall F1 B/3-4', gap: 0,
    reportedBy: ALL,
    why: 'The corridor wall has no opening here, unlike on the floor above.' },
  { name: 'Pipe through a wall', a: 'SP branch middle 1 F1', b: 'Wall F1 C/2-3', gap: 0,
    reportedBy: ALL,
    why: 'The corridor wall has no opening for this sprinkler branch, unlike on the floor above.' },
  { name: 'Pipe through a slab', a: 'HW riser 2 F1', b: 'Slab F2', gap: 0, reportedBy: ALL,
    why: 'The hot-water riser stands beside the riser opening, not in it.' },
  { name: 'Sprinkler pipe through a column', a: 'SP test line F2', b: 'Column F2 3/C', gap: 0,
    reportedBy: ALL,
    why: 'The pipe passes the wall 57 mm clear and cuts into the column that stands out of it.' },
  { name: 'Tray through a duct', a: 'Tray branch F1', b: 'SA main 3 F1', gap: 0, reportedBy: ALL,
    why: 'The tray branch leaves the corridor tray at the height of the supply main.' },
  { name: 'Sprinkler pipe through a duct', a: 'SP range through duct F2', b: 'SA branch west F2',
    gap: 0, reportedBy: ALL,
    why: 'Both are at the same height in the room; two services of different specialties.' },
  { name: 'Pipe through a door leaf', a: 'CW through door F2', b: 'Door F2 B/4-5', gap: 0,
    reportedBy: ALL,
    why: 'The pipe passes through the opening of the wall, but the leaf hangs in it.' },
  { name: 'Duct close under a slab', a: 'FA duct F1', b: 'Slab F2', gap: 150,
    reportedBy: CLEARANCE,
    why: 'A duct keeps 200 mm from structural members.' },
  { name: 'Trunking close under a beam', a: 'Data trunking F1', b: 'Beam F1 secondary', gap: 30,
    reportedBy: CLEARANCE,
    why: 'A tray keeps 50 mm from structural members.' },
  { name: 'Pipe close to a column', a: 'WW stack F2', b: 'Column F2 3/D', gap: 30,
    reportedBy: CLEARANCE,
    why: 'A pipe keeps 50 mm from structural members.' },
  { name: 'Tray close to a duct', a: 'Tray beside duct F1', b: 'RA duct F1', gap: 120,
    reportedBy: SPACING,
    why: 'Ducts and trays keep 150 mm from each other when services are in clearance mode; with ' +
      'a tolerance they do not touch.' },
  { name: 'Drain close to a pressure pipe', a: 'SW collector F1', b: 'SP range near drain F1',
    gap: 250, reportedBy: SPACING,
    why: 'Drainage and pressure pipes keep 400 mm from each other when services are in ' +
      'clearance mode; with a tolerance they do not touch.' },
  { name: 'Wall drawn into a wall', a: 'Wall F1 washroom', b: 'Wall F1 C/3-4', gap: 0,
    reportedBy: TOLERANCE, exact: true,
    why: 'The overlap is 5 mm, more than the 2 mm a side; within one specialty, so only where ' +
      'a rule set tests that.' },
  { name: 'Stair flight in a slab', a: 'Stair F2 flight 2', b: 'Slab Roof', gap: 0,
    reportedBy: TOLERANCE,
    why: 'The slab opening begins 300 mm late, and the top tread reaches 20 mm into the slab; ' +
      'within one specialty.' },
  { name: 'Beam through a window', a: 'Beam F1 canopy', b: 'Window F1 A/1-2', gap: 0,
    reportedBy: TOLERANCE,
    why: 'The canopy beam passes through the opening without touching the wall, but cuts the ' +
      'pane; within one specialty.' },
  { name: 'Cold pipe through a hot pipe', a: 'CW branch F2', b: 'HW main F2', gap: 0,
    reportedBy: TOLERANCE,
    why: 'The branch leaves level with the hot main; within one specialty.' },
];

const NEAR_MISSES = [
  { name: 'Duct 250 mm under a slab', a: 'RA crossing F1', b: 'Slab F2', gap: 250,
    why: 'Exactly 250 mm; the clearance is 200 mm.' },
  { name: 'Duct in a wall opening', a: 'SA branch west F1', b: 'Wall F1 B/1-2', gap: 210,
    why: 'The opening leaves 210 mm all round; the clearance is 200 mm.' },
  { name: 'Pipe in a wall opening', a: 'SP branch west 1 F1', b: 'Wall F1 C/1-2', gap: 84,
    why: 'The opening leaves 84 mm all round; the clearance is 50 mm.' },
  { name: 'Pipes in a slab opening', a: 'SP riser 2 F1', b: 'Slab F2', gap: 93,
    why: 'The opening leaves 93 mm; the clearance is 50 mm.' },
  { name: 'Stack in its slab opening', a: 'SW stack 2 F1', b: 'Slab F2', gap: 80,
    why: 'The opening leaves 80 mm all round; the clearance is 50 mm.' },
  { name: 'Pipe past a wall', a: 'SP test line F2', b: 'Wall F2 C/2-3', gap: 57,
    why: '57 mm; the clearance is 50 mm.' },
  { name: 'Pipe in a doorway', a: 'CW through door F2', b: 'Wall F2 B/4-5', gap: 283,
    why: 'The door opening of the wall is no obstacle, although the box of the wall holds it.' },
  { name: 'Trunking 60 mm under a beam', a: 'Data trunking F2', b: 'Beam F2 secondary', gap: 60,
    why: '60 mm; the clearance is 50 mm.' },
  { name: 'Tray beside a duct', a: 'Tray beside duct F2', b: 'RA duct F2', gap: 160,
    why: '160 mm; the spacing is 150 mm.' },
  { name: 'Pipe beside a pipe', a: 'SP range beside CHW F2', b: 'CHW pipe F2', gap: 160,
    why: '160 mm; the spacing of two pressure pipes is 150 mm.' },
  { name: 'Pressure pipe below a drain', a: 'SP range below drain F1', b: 'SW collector F1',
    gap: 410, why: '410 mm; the spacing of a drainage and a pressure pipe is 400 mm.' },
  { name: 'Downpipe at the corner of a slab', a: 'RW downpipe F1', b: 'Slab F2', gap: 114.7,
    why: 'Clear of the corner by more than 50 mm.' },
  { name: 'Wall on a slab', a: 'Wall F1 A/1-2', b: 'Slab F1', gap: 0,
    why: 'The foot of the wall lies in the top face of the slab: touching is within tolerance.' },
  { name: 'Beam at a column', a: 'Beam F1 A/1-2', b: 'Column F1 1/A', gap: 0,
    why: 'The end of the beam lies in the face of the column: touching is within tolerance.' },
  { name: 'Beam under a slab', a: 'Beam F1 A/1-2', b: 'Slab F2', gap: 0,
    why: 'The top of the beam lies in the soffit of the slab: touching is within tolerance.' },
  { name: 'Flight at a slab', a: 'Stair F1 flight 2', b: 'Slab F2', gap: 0,
    why: 'The flight ends in the edge face of the slab opening: touching is within tolerance.' },
  { name: 'Wall drawn slightly into a wall', a: 'Wall F2 washroom', b: 'Wall F2 C/3-4', gap: 0,
    exact: true, why: 'The overlap is 3 mm, less than the 2 mm a side.' },
  { name: 'Board on a wall', a: 'Distribution board F1', b: 'Wall F1 C/4-5', gap: 0, exact: true,
    why: 'The back of the board lies in the face of the wall: touching is within tolerance, also ' +
      'across specialties.' },
  { name: 'Board on a wall, upper floor', a: 'Distribution board F2', b: 'Wall F2 C/4-5', gap: 0,
    exact: true, why: 'As on the floor below.' },
  { name: 'Fan on a roof', a: 'Roof fan Roof', b: 'Slab Roof', gap: 0, exact: true,
    why: 'The fan stands on the slab: touching is within tolerance, also across specialties.' },
  { name: 'Door in its wall', a: 'Door F1 B/1-2', b: 'Wall F1 B/1-2', gap: 0,
    why: 'The leaf fills the opening and touches its sides; a filling belongs with its wall.' },
  { name: 'Pipe at its fitting', a: 'CW main 1 F1', b: 'CW riser tee F1', gap: 0,
    why: 'Joined end to end by their ports.' },
];

export function addPlan(building) {
  building.planned.push(...CLASHES.map((plan) => ({ ...plan })));
  building.nearMisses.push(...NEAR_MISSES.map((plan) => ({ ...plan })));
}
