// SPDX-License-Identifier: Apache-2.0
import assert from 'node:assert/strict';
import test from 'node:test';

import { MAX_VALUE_LENGTH, bounded } from '../lib/properties.mjs';
import { UNITS, guid, ifcText, near, sceneOf } from '../test-support/tiny-ifc.mjs';

/** Entries of one product with one property set of these values. */
async function entriesOf(values, unit = UNITS.millimetre) {
  const lines = values.map((v, i) => `#${100 + i}=IFCPROPERTYSINGLEVALUE('P${i}',$,${v},$);`);
  const { scene, byId } = await sceneOf(ifcText(`
#10=IFCPIPESEGMENT(${guid()},$,'pipe',$,$,$,$,$,$);
#20=IFCPROPERTYSET(${guid()},$,'Set',$,(${values.map((_, i) => `#${100 + i}`)}));
#21=IFCRELDEFINESBYPROPERTIES(${guid()},$,$,$,(#10),#20);
${lines.join('\n')}`, { unit }));
  return { entries: scene.properties, product: byId(10) };
}

test('values keep their text and get a kind and a number', async () => {
  const { entries } = await entriesOf([
    "IFCLABEL('red')", 'IFCREAL(2.5)', 'IFCPOSITIVELENGTHMEASURE(2.)', 'IFCBOOLEAN(.T.)',
    'IFCLOGICAL(.U.)', 'IFCINTEGER(7)', 'IFCAREAMEASURE(3.)', '$'], UNITS.metre);
  assert.deepEqual(entries.map((e) => [e.value, e.kind, e.number]), [
    ['red', 'text', 0], ['2.5', 'number', 2.5], ['2', 'length', 2000], ['true', 'boolean', 1],
    [entries[4].value, 'text', 0], ['7', 'number', 7], ['3', 'area', 3e6], ['', 'text', 0]]);
  assert.ok(entries.every((e) => e.set === 'Set'));
});

test('a unit of its own wins over that of the project', async () => {
  const { scene } = await sceneOf(ifcText(`
#10=IFCPIPESEGMENT(${guid()},$,'pipe',$,$,$,$,$,$);
#20=IFCPROPERTYSET(${guid()},$,'Set',$,(#30));
#21=IFCRELDEFINESBYPROPERTIES(${guid()},$,$,$,(#10),#20);
#30=IFCPROPERTYSINGLEVALUE('Width',$,IFCLENGTHMEASURE(2.),#31);
#31=IFCSIUNIT(*,.LENGTHUNIT.,.CENTI.,.METRE.);`, { unit: UNITS.metre }));
  assert.equal(scene.properties[0].number, 20);
});

test('a nominal diameter is found under its usual name, in millimetres', async () => {
  const { scene, byId } = await sceneOf(ifcText(`
#10=IFCPIPESEGMENT(${guid()},$,'pipe',$,$,$,$,$,$);
#11=IFCPIPESEGMENT(${guid()},$,'pipe',$,$,$,$,$,$);
#20=IFCPROPERTYSET(${guid()},$,'Pset_PipeSegmentTypeCommon',$,(#30,#31));
#21=IFCRELDEFINESBYPROPERTIES(${guid()},$,$,$,(#10),#20);
#30=IFCPROPERTYSINGLEVALUE('Outside Diameter',$,IFCLENGTHMEASURE(0.11),$);
#31=IFCPROPERTYSINGLEVALUE('NominalDiameter',$,IFCPOSITIVELENGTHMEASURE(0.1),$);`,
  { unit: UNITS.metre }));
  assert.equal(near([byId(10).nominalDiameter], [100], 1e-9), '');
  assert.equal(byId(11).nominalDiameter, undefined);
  assert.equal(scene.properties.length, 2);
});

test('a property of the product hides that of its type', async () => {
  const { scene, byId } = await sceneOf(ifcText(`
#10=IFCWALL(${guid()},$,'w',$,$,$,$,$,$);
#20=IFCPROPERTYSET(${guid()},$,'Set',$,(#30));
#21=IFCRELDEFINESBYPROPERTIES(${guid()},$,$,$,(#10),#20);
#22=IFCPROPERTYSET(${guid()},$,'Set',$,(#31,#32));
#23=IFCWALLTYPE(${guid()},$,'T',$,$,(#22),$,$,$,.NOTDEFINED.);
#24=IFCRELDEFINESBYTYPE(${guid()},$,$,$,(#10),#23);
#30=IFCPROPERTYSINGLEVALUE('A',$,IFCLABEL('own'),$);
#31=IFCPROPERTYSINGLEVALUE('A',$,IFCLABEL('type'),$);
#32=IFCPROPERTYSINGLEVALUE('B',$,IFCLABEL('type'),$);`));
  assert.deepEqual(scene.properties.map((e) => [e.name, e.value]), [['A', 'own'], ['B', 'type']]);
  assert.equal(byId(10).predefinedType, '');
});

test('lists, enumerations, bounds and complex properties become single texts', async () => {
  const { scene } = await sceneOf(ifcText(`
#10=IFCWALL(${guid()},$,'w',$,$,$,$,$,$);
#20=IFCPROPERTYSET(${guid()},$,'Set',$,(#30,#31,#32,#33));
#21=IFCRELDEFINESBYPROPERTIES(${guid()},$,$,$,(#10),#20);
#30=IFCPROPERTYENUMERATEDVALUE('E',$,(IFCLABEL('x'),IFCLABEL('y')),$);
#31=IFCPROPERTYLISTVALUE('L',$,(IFCREAL(1.),IFCREAL(2.)),$);
#32=IFCPROPERTYBOUNDEDVALUE('B',$,IFCREAL(9.),IFCREAL(1.),$,$);
#33=IFCCOMPLEXPROPERTY('C',$,'use',(#34));
#34=IFCPROPERTYSINGLEVALUE('Part',$,IFCLABEL('z'),$);`));
  assert.deepEqual(scene.properties.map((e) => [e.name, e.value]),
    [['E', 'x,y'], ['L', '1,2'], ['B', '1,9'], ['C.Part', 'z']]);
});

test('a long text is cut and marked, a text at the limit is not', () => {
  assert.equal(bounded('a'.repeat(MAX_VALUE_LENGTH)), 'a'.repeat(MAX_VALUE_LENGTH));
  const cut = bounded('a'.repeat(MAX_VALUE_LENGTH + 1));
  assert.equal(cut.length, MAX_VALUE_LENGTH);
  assert.ok(cut.endsWith('a\u2026'));
});

test('a text is never cut within a character', () => {
  const cut = bounded(`${'a'.repeat(MAX_VALUE_LENGTH - 2)}\u{20000}bb`);
  assert.equal(cut, `${'a'.repeat(MAX_VALUE_LENGTH - 2)}\u2026`);
});
