// SPDX-License-Identifier: Apache-2.0
// Small models at the edges of what IFC allows: a slab, and a duct that runs 150 mm below it where
// 200 mm are asked for. The command's path comes in the variable KYCLASH.
import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { mkdtempSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { after, before, test } from 'node:test';

import {
  UNITS, box, guid, ifcText,
} from '../../../apps/ifchost/converter/test-support/tiny-ifc.mjs';

const MILLIMETRES = { millimetre: 1, metre: 1000, foot: 304.8, inch: 25.4 };

let folder;
before(() => { folder = mkdtempSync(join(tmpdir(), 'kyclash-edge-')); });
after(() => rmSync(folder, { recursive: true, force: true }));

function write(name, text) {
  const path = join(folder, name);
  writeFileSync(path, text);
  return path;
}

function run(command, files, options = []) {
  const fixed = ['--json', '--cache-dir', join(folder, 'cache')];
  const args = [command, ...files, ...fixed, ...options];
  return JSON.parse(execFileSync(process.env.KYCLASH, args, { encoding: 'utf8' }));
}

const check = (files, options = []) => run('check', files, ['--rules', 'built-in', ...options]);
const clashesOf = (report) => report.floors.flatMap((floor) => floor.clashes);

/** The slab #10 from z = 3000 mm up and the duct #30 that ends at 2850 mm. */
function slabAndDuct({ unit = 'millimetre', schema = 'IFC4' } = {}) {
  const scaled = (...lengths) => lengths.map((length) => length / MILLIMETRES[unit]);
  const isOld = schema === 'IFC2X3';
  return [
    box(10, 'IFCSLAB', scaled(0, 0, 3000), scaled(4000, 4000, 200), ',.FLOOR.'),
    box(30, isOld ? 'IFCFLOWSEGMENT' : 'IFCDUCTSEGMENT', scaled(0, 0, 2550),
      scaled(400, 2000, 300), isOld ? '' : ',.RIGIDSEGMENT.'),
  ].join('\n');
}

/** A building (#500) with storeys [name, elevation, contained ids], from #510. */
function storeys(list) {
  const ids = list.map((_, i) => `#${510 + 10 * i}`);
  const lines = list.map(([name, elevation], i) =>
    `${ids[i]}=IFCBUILDINGSTOREY(${guid()},$,'${name}',$,$,$,$,$,.ELEMENT.,${elevation}.);`);
  list.forEach(([, , contained], i) => {
    if (contained.length === 0) return;
    const elements = contained.map((id) => `#${id}`);
    lines.push(`#${511 + 10 * i}=IFCRELCONTAINEDINSPATIALSTRUCTURE(${guid()},$,$,$,` +
      `(${elements}),${ids[i]});`);
  });
  return `#500=IFCBUILDING(${guid()},$,'House',$,$,$,$,$,.ELEMENT.,$,$,$);
#501=IFCRELAGGREGATES(${guid()},$,$,$,#500,(${ids}));
#502=IFCRELAGGREGATES(${guid()},$,$,$,#1,(#500));
${lines.join('\n')}`;
}

/** The grown duct reaches 50 mm into the slab. */
function assertInOverlap([x, y, z]) {
  assert.ok(Math.abs(x) <= 400.01 && Math.abs(y) <= 1200.01, `${x}, ${y}`);
  assert.ok(z >= 2999.99 && z <= 3050.01, `${z}`);
}

for (const schema of ['IFC2X3', 'IFC4']) {
  for (const unit of Object.keys(MILLIMETRES)) {
    test(`the clearance holds in ${schema} files in ${unit}`, () => {
      const text = ifcText(slabAndDuct({ unit, schema }), { schema, unit: UNITS[unit] });
      const report = check([write(`${schema}-${unit}.ifc`, text)]);
      const clashes = clashesOf(report);
      assert.equal(clashes.length, 1);
      assertInOverlap(clashes[0].point);
      assert.equal(clashes[0].bodyOffsets, '0,200');
      assert.equal(report.models[0].schema, schema);
    });
  }
}

test('storeys of one name are two floors, and clashes between them are found', () => {
  const file = write('same-name.ifc',
    ifcText(`${slabAndDuct()}\n${storeys([['E', 0, [30]], ['E', 3000, [10]]])}`));
  const [project] = run('list', [file]);
  assert.deepEqual(project.floors.map(({ name, components }) => [name, components]),
    [['E', 1], ['E (2)', 1]]);
  const report = check([file]);
  assert.equal(clashesOf(report).length, 1);
  assert.equal(report.floors.find((floor) => floor.clashes.length > 0).name, 'E (2)');
});

test('storeys of one elevation are floors of their own', () => {
  const file = write('same-height.ifc',
    ifcText(`${slabAndDuct()}\n${storeys([['A', 0, [30]], ['B', 0, [10]], ['C', 0, []]])}`));
  const [project] = run('list', [file]);
  assert.deepEqual(project.floors.map(({ name, components }) => [name, components]),
    [['A', 1], ['B', 1], ['C', 0]]);
  assert.equal(clashesOf(check([file])).length, 1);
});

test('elements without a storey are on a floor of their own', () => {
  const file = write('partly.ifc', ifcText(`${slabAndDuct()}\n${storeys([['E', 0, [30]]])}`));
  const report = check([file]);
  assert.deepEqual(report.floors.map(({ name }) => name).sort(), ['(no storey)', 'E']);
  assert.equal(clashesOf(report).length, 1);
});

test('a model without storeys has one floor', () => {
  const report = check([write('none.ifc', ifcText(slabAndDuct()))]);
  assert.deepEqual(report.floors.map(({ name }) => name), ['(no storey)']);
  assert.equal(clashesOf(report).length, 1);
});

test('an empty model is checked to its end and leaves whole files', () => {
  const file = write('empty.ifc', ifcText(''));
  const out = join(folder, 'empty-out');
  const report = check([file], ['--out', out]);
  assert.deepEqual(report.floors, []);
  assert.equal(report.models[0].checked, 0);
  assert.equal(readFileSync(join(out, 'results.xml'), 'utf8'), '<碰撞检查结果 />\n');
  assert.equal(readFileSync(join(out, 'results.csv'), 'utf8').split('\r\n').length, 2);
  assert.deepEqual(run('openings', [file]), []);
  assert.deepEqual(run('list', [file])[0].floors, []);
});

test('names in any script come through to every output', () => {
  const name = '送风管 "Zuluft" é, <1>';
  const text = ifcText(`${slabAndDuct().replace("'IFCDUCTSEGMENT-30'", `'${name}'`)}
${storeys([['首层 É', 0, [10, 30]]])}`);
  const file = write('模型 é, 1.ifc', text);
  const out = join(folder, '结果 é');
  const [clash] = clashesOf(check([file], ['--out', out]));
  assert.equal(clash.second.name, name);
  assert.equal(clash.second.file, '模型 é, 1.ifc');
  const csv = readFileSync(join(out, 'results.csv'), 'utf8');
  assert.ok(csv.includes('"送风管 ""Zuluft"" é, <1>"'), csv);
  assert.ok(csv.includes('首层 É'), csv);
  const xml = readFileSync(join(out, 'results.xml'), 'utf8');
  assert.ok(xml.includes('attnameB="送风管 &quot;Zuluft&quot; é, &lt;1&gt;"'), xml);
  const again = check([file], ['--out', out, '--previous', join(out, 'results.xml')]);
  assert.equal(again.previous.counts['still open'], 1);
});

test('components of one GlobalId in two files clash with each other', () => {
  const [slab, duct] = slabAndDuct().split('\n#30=');
  const ductText = ifcText(`#30=${duct}`);
  const [, id] = /IFCDUCTSEGMENT\('(.{22})'/.exec(ductText);
  const slabText = ifcText(slab.replace(/IFCSLAB\('.{22}'/, `IFCSLAB('${id}'`));
  const files = [write('one-a.ifc', slabText), write('one-b.ifc', ductText)];
  const report = check(files);
  const [clash] = clashesOf(report);
  assert.equal(clash.main.guid, id);
  assert.equal(clash.second.guid, id);
  assert.notEqual(clash.main.file, clash.second.file);
  assert.match(report.models[1].warnings.join(), /GlobalId of a component of an earlier file/);
});

test('a mapped body that is mirrored grows outward on its own side', () => {
  // The shape lies at y = 1000 mm and is mirrored to y = -1000 mm, below the slab there.
  const mapped = `#300=IFCREPRESENTATIONMAP(#6,#305);
#305=IFCSHAPEREPRESENTATION(#5,'Body','SweptSolid',(#306));
#306=IFCEXTRUDEDAREASOLID(#307,#308,#310,300.);
#307=IFCRECTANGLEPROFILEDEF(.AREA.,$,#8,400.,2000.);
#308=IFCAXIS2PLACEMENT3D(#309,$,$);
#309=IFCCARTESIANPOINT((0.,1000.,2550.));
#310=IFCDIRECTION((0.,0.,1.));
#320=IFCMAPPEDITEM(#300,#321);
#321=IFCCARTESIANTRANSFORMATIONOPERATOR3D($,#322,#323,$,$);
#322=IFCDIRECTION((0.,-1.,0.));
#323=IFCCARTESIANPOINT((0.,0.,0.));
#330=IFCDUCTSEGMENT(${guid()},$,'mirrored',$,$,#331,#332,$,.RIGIDSEGMENT.);
#331=IFCLOCALPLACEMENT($,#6);
#332=IFCPRODUCTDEFINITIONSHAPE($,$,(#333));
#333=IFCSHAPEREPRESENTATION(#5,'Body','MappedRepresentation',(#320));`;
  const slabAt = (y) => box(10, 'IFCSLAB', [0, y, 3000], [4000, 600, 200], ',.FLOOR.');
  const found = (y) =>
    clashesOf(check([write(`mirrored${y}.ifc`, ifcText(`${slabAt(y)}\n${mapped}`))])).length;
  assert.equal(found(-1500), 1);
  assert.equal(found(1500), 0);
});
