// SPDX-License-Identifier: Apache-2.0

import assert from 'node:assert/strict';
import { existsSync, readFileSync } from 'node:fs';
import { test } from 'node:test';

import { expectedClashes } from './expected.mjs';
import { generate } from './generate.mjs';
import { makeBuilding } from './lib/building.mjs';
import { CATEGORY } from './lib/rules.mjs';

const texts = generate();
const expected = JSON.parse(texts['expected-clashes.json']);
const lines = texts['building.ifc'].split('\n').filter((line) => line.startsWith('#'));
const ids = new Map(lines.map((line) => [line.match(/^#(\d+)=/)[1], line]));
const ROOTED = /^#\d+=(\w+)\('([0-9A-Za-z_$]{22})',#/;

const bodyOf = (line) => line.replace(/^#\d+=/, '').replace(/'(?:[^']|'')*'/g, "''");
const plannedNamed = (building, name) => building.planned.find((plan) => plan.name === name);

test('two runs give the same bytes', () => {
  assert.deepEqual(generate(), texts);
});

test('the files kept beside the generator are what it writes', () => {
  for (const [name, text] of Object.entries(texts)) {
    const kept = new URL(name, import.meta.url);
    assert.ok(existsSync(kept), `${name} is missing`);
    assert.equal(readFileSync(kept, 'utf8'), text, `${name} is out of date`);
  }
});

test('the file is plain ASCII and smaller than 400 KB', () => {
  assert.match(texts['building.ifc'], /^[\x0a\x20-\x7e]*$/);
  assert.ok(texts['building.ifc'].length < 400 * 1024);
});

test('every instance has its own number and every reference is defined', () => {
  assert.equal(ids.size, lines.length);
  let references = 0;
  for (const line of lines) {
    for (const [, id] of bodyOf(line).matchAll(/#(\d+)/g)) {
      assert.ok(ids.has(id), `#${id} in ${line}`);
      references += 1;
    }
  }
  assert.ok(references > lines.length);
});

test('every instance but the relations and the tree is used by another', () => {
  const used = new Set(lines.flatMap((line) =>
    [...bodyOf(line).matchAll(/#(\d+)/g)].map((match) => match[1])));
  const idle = lines.filter((line) => !used.has(line.match(/^#(\d+)/)[1]))
    .map((line) => line.match(/=(\w+)/)[1]);
  assert.deepEqual([...new Set(idle)].filter((name) => !name.startsWith('IFCREL')), []);
});

test('every GlobalId is unique, also without regard to case', () => {
  const guids = lines.map((line) => line.match(ROOTED)?.[2]).filter(Boolean);
  assert.ok(guids.length > 1000);
  assert.equal(new Set(guids.map((guid) => guid.toLowerCase())).size, guids.length);
});

test('every component is in the file under its class, GUID and name', () => {
  const rooted = new Map(lines.filter((line) => ROOTED.test(line))
    .map((line) => [line.match(ROOTED)[2], line]));
  for (const { guid, name, ifcClass } of [...expected.components, ...expected.notChecked]) {
    const line = rooted.get(guid) ?? '';
    assert.ok(line.includes(`=${ifcClass.toUpperCase()}('${guid}',`), name);
    assert.ok(line.includes(`,'${name}',`), name);
  }
});

test('the building has every kind of element that it is meant to show', () => {
  const classes = new Set(lines.map((line) => line.match(/=(\w+)/)[1]));
  const wanted = ['IfcGrid', 'IfcWall', 'IfcColumn', 'IfcBeam', 'IfcSlab', 'IfcStair',
    'IfcStairFlight', 'IfcDoor', 'IfcWindow', 'IfcOpeningElement', 'IfcDuctSegment',
    'IfcDuctFitting', 'IfcAirTerminal', 'IfcCableCarrierSegment', 'IfcPipeSegment',
    'IfcPipeFitting', 'IfcFireSuppressionTerminal', 'IfcSpace', 'IfcDistributionSystem',
    'IfcRelConnectsPorts', 'IfcRelFillsElement', 'IfcMappedItem', 'IfcFacetedBrep',
    'IfcTrimmedCurve', 'IfcMaterialLayerSetUsage', 'IfcCovering'];
  assert.deepEqual(wanted.filter((name) => !classes.has(name.toUpperCase())), []);
  const kinds = new Set(expected.components.map((component) => component.category));
  for (const triple of Object.values(CATEGORY)) assert.ok(kinds.has(triple.join('/')), triple);
});

test('each clashing pair is listed once, whichever way round', () => {
  const pairs = expected.clashes.map(({ a, b }) => [a.guid, b.guid].sort().join(' '));
  assert.equal(new Set(pairs).size, pairs.length);
  for (const { a, b } of expected.clashes) assert.notEqual(a.guid, b.guid);
});

test('clashes and near misses name components that exist, and no pair is both', () => {
  const names = new Map(expected.components.map((c) => [c.guid, c]));
  const ends = [...expected.clashes, ...expected.nearMisses].flatMap(({ a, b }) => [a, b]);
  for (const { guid, name, category, floor } of ends) {
    const { name: n, category: c, floor: f } = names.get(guid);
    assert.deepEqual([name, category, floor], [n, c, f]);
  }
  const keys = ({ a, b }) => [a.guid, b.guid].sort().join(' ');
  const clashes = new Set(expected.clashes.map(keys));
  assert.deepEqual(expected.nearMisses.map(keys).filter((key) => clashes.has(key)), []);
});

test('the built-in rules never report a pair of one specialty', () => {
  const specialty = ({ category }) => category.split('/')[0];
  const reported = expected.clashes.filter((clash) => clash.builtin);
  assert.equal(reported.length, 11);
  for (const { a, b } of reported) assert.notEqual(specialty(a), specialty(b));
});

test('the region of a clash lies in the boxes of both components grown by their offsets', () => {
  const boxes = new Map(expected.components.map(({ guid, box }) => [guid, box]));
  for (const { a, b, rules } of expected.clashes) {
    for (const { offsets, region } of Object.values(rules)) {
      [a, b].forEach(({ guid }, side) => {
        const box = boxes.get(guid);
        for (const k of [0, 1, 2]) {
          assert.ok(region[k] >= box[k] - offsets[side] - 0.1);
          assert.ok(region[k + 3] <= box[k + 3] + offsets[side] + 0.1);
          assert.ok(region[k] <= region[k + 3]);
        }
      });
    }
  }
});

test('no clash hangs on whether fittings are classed with their runs', () => {
  const building = makeBuilding();
  const other = { 暖通: 'airTerminal', 电气: 'board', 给排水: 'basin', 消防: 'sprinklerHead' };
  const fittings = building.components.filter((c) => c.ifcClass.endsWith('Fitting'));
  assert.ok(fittings.length > 40);
  for (const fitting of fittings) fitting.kind = other[CATEGORY[fitting.kind][0]];
  assert.deepEqual(expectedClashes(building).clashes, expected.clashes);
});

test('a clash that nobody planned is an error', () => {
  const building = makeBuilding();
  building.planned = building.planned.filter((plan) => plan.name !== 'Duct through a wall');
  assert.throws(() => expectedClashes(building), /not planned: SA branch east F1 \| Wall F1 B/);
});

test('a planned clash that the solids do not show is an error', () => {
  const building = makeBuilding();
  plannedNamed(building, 'Tray close to a duct').reportedBy = ['builtin', 'spacing'];
  assert.throws(() => expectedClashes(building), /meant for "builtin spacing", is "spacing"/);
});

test('a body too close to its threshold is an error', () => {
  const building = makeBuilding();
  const { solid } = building.byName.get('RA crossing F1').parts[0];
  solid.min[2] += 47;
  solid.max[2] += 47;
  assert.throws(() => expectedClashes(building),
    /Slab F2 \/ RA crossing F1: within 5 mm of its threshold \(builtin\)/);
});

test('a near miss at another distance than stated is an error', () => {
  const building = makeBuilding();
  building.nearMisses.find((miss) => miss.name === 'Duct 250 mm under a slab').gap = 249;
  assert.throws(() => expectedClashes(building), /meant to be 249 mm apart, is 250 mm/);
});
