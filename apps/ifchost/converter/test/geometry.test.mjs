// SPDX-License-Identifier: Apache-2.0
import assert from 'node:assert/strict';
import test from 'node:test';

import { instanceTransform } from '../lib/geometry.mjs';
import { transformPoint } from '../lib/math.mjs';
import { UNITS, box, guid, ifcText, near, sceneOf } from '../test-support/tiny-ifc.mjs';

test('the y-up world of the reader becomes z-up: x, y, z are x, z, -y', () => {
  // Column-major; the reader puts a point of the mesh at (10 + x, 20 + y, 30 + z).
  const flat = [1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 10, 20, 30, 1];
  const world = instanceTransform(flat, 1);
  assert.deepEqual(transformPoint(world, [1, 2, 3]), [11, -33, 22]);
  assert.deepEqual(world.slice(12), [0, 0, 0, 1]);
});

test('the unit scales the offset only, since meshes are in millimetres already', () => {
  const flat = [1, 0, 0, 0, 0, 0, -1, 0, 0, 1, 0, 0, 1, 3, -2, 1];
  assert.deepEqual(instanceTransform(flat, 304.8).slice(0, 12),
    [1, 0, 0, 304.8, 0, 1, 0, 609.6, 0, 0, 1, 914.4000000000001]);
});

test('a turned and nested placement is applied', async () => {
  const text = ifcText(`${box(10, 'IFCWALL', [0, 0, 0], [4, 2, 3], ',$')}
#30=IFCLOCALPLACEMENT($,#31);
#31=IFCAXIS2PLACEMENT3D(#32,$,#33);
#32=IFCCARTESIANPOINT((100.,0.,0.));
#33=IFCDIRECTION((0.,1.,0.));`)
    .replace('#11=IFCLOCALPLACEMENT($,#12)', '#11=IFCLOCALPLACEMENT(#30,#12)')
    .replace('#13=IFCCARTESIANPOINT((0.000000,0.000000,0.000000))',
      '#13=IFCCARTESIANPOINT((10.,0.,5.))');
  const { byId } = await sceneOf(text);
  // x runs along world y from (100, 0): the middle is at (100, 10, 5); 4 lies along y, 2 along x.
  assert.equal(near(byId(10).box, [99, 8, 5, 101, 12, 8]), '');
  assert.equal(near(byId(10).origin, [100, 10, 5]), '');
  assert.equal(near(byId(10).section.start, [100, 10, 5]), '');
  assert.equal(near(byId(10).section.end, [100, 10, 8]), '');
  assert.equal(near(byId(10).section.xAxis, [0, 1, 0]), '');
});

test('far from the origin nothing is lost', async () => {
  const { scene, byId } = await sceneOf(
    ifcText(box(10, 'IFCWALL', [500000, 4000000, 50], [4, 2, 3], ',$'), { unit: UNITS.metre }));
  const expected = [499998, 3999999, 50, 500002, 4000001, 53].map((v) => v * 1000);
  assert.equal(near(byId(10).box, expected), '');
  assert.equal(scene.file.georeference.largestCoordinate, expected[4]);
});

// Two products of one representation map.
const MAPPED = `${box(10, 'IFCWALL', [0, 0, 0], [10, 2, 3], ',$')}
#30=IFCREPRESENTATIONMAP(#6,#15);
#31=IFCCARTESIANTRANSFORMATIONOPERATOR3D($,$,#7,$,$);
#32=IFCMAPPEDITEM(#30,#31);
#40=IFCWALL(${guid()},$,'copy',$,$,#41,#44,$,$);
#41=IFCLOCALPLACEMENT($,#42);
#42=IFCAXIS2PLACEMENT3D(#43,$,$);
#43=IFCCARTESIANPOINT((0.,50.,0.));
#44=IFCPRODUCTDEFINITIONSHAPE($,$,(#45));
#45=IFCSHAPEREPRESENTATION(#5,'Body','MappedRepresentation',(#46));
#46=IFCMAPPEDITEM(#30,#31);`;

test('mapped products share one mesh', async () => {
  const { scene, byId } = await sceneOf(ifcText(MAPPED));
  assert.equal(scene.meshes.length, 1);
  assert.equal(scene.instances.length, 2);
  assert.equal(near(byId(40).box, [-5, 49, 0, 5, 51, 3]), '');
});

// An opening of 1 x 4 x 1 at the middle of the first wall's bottom.
const OPENING = `${box(60, 'IFCOPENINGELEMENT', [0, 0, 1], [1, 4, 1], ',.OPENING.')}
#70=IFCRELVOIDSELEMENT(${guid()},$,$,$,#10,#60);`;

test('of two mapped products only the one with an opening is cut', async () => {
  const { scene, byId } = await sceneOf(ifcText(`${MAPPED}\n${OPENING}`));
  assert.equal(near([byId(10).meshVolume, byId(40).meshVolume], [58, 60], 1e-3), '');
  assert.equal(scene.meshes.length, 3);
});

test('an opening keeps its own shape and its host', async () => {
  const { scene, byId } = await sceneOf(ifcText(`${MAPPED}\n${OPENING}`));
  const opening = byId(60);
  assert.equal(opening.role, 'opening');
  assert.equal(near(opening.box, [-0.5, -2, 1, 0.5, 2, 2]), '');
  assert.deepEqual(scene.relations.voids,
    [[scene.products.indexOf(opening), scene.products.indexOf(byId(10))]]);
});

test('a mirrored mapped product lies on the other side', async () => {
  const text = ifcText(MAPPED
    .replace('#46=IFCMAPPEDITEM(#30,#31)', '#46=IFCMAPPEDITEM(#30,#47)')
    .concat(`\n#47=IFCCARTESIANTRANSFORMATIONOPERATOR3D($,#48,#49,$,$);
#48=IFCDIRECTION((0.,-1.,0.));
#49=IFCCARTESIANPOINT((0.,10.,0.));`));
  const { byId } = await sceneOf(text);
  assert.equal(near(byId(40).box, [-5, 59, 0, 5, 61, 3]), '');
  assert.ok(byId(40).meshVolume > 0);
});

for (const segments of [12, 24, 48]) {
  test(`a circle has ${segments} chords when that many are asked for`, async () => {
    const { byId } = await sceneOf(ifcText(box(10, 'IFCWALL', [0, 0, 0], [2, 2, 1], ',$')
      .replace('IFCRECTANGLEPROFILEDEF(.AREA.,$,#8,2.000000,2.000000)',
        'IFCCIRCLEPROFILEDEF(.AREA.,$,#8,1000.)')), segments);
    // Area of the regular polygon in a circle of radius 1000, height 1.
    const area = (segments / 2) * 1e6 * Math.sin((2 * Math.PI) / segments);
    assert.equal(near([byId(10).meshVolume / 1e6], [area / 1e6], 1e-3), '');
  });
}

test('a product without a body and one whose body gives no triangle each say so', async () => {
  const { byId } = await sceneOf(ifcText(`
#10=IFCELEMENTASSEMBLY(${guid()},$,'frame',$,$,$,$,$,$,$);
${box(20, 'IFCWALL', [0, 0, 0], [4, 2, 3], ',$').replace('IFCRECTANGLEPROFILEDEF(.AREA.,$,#8,4.000000,2.000000)', 'IFCRECTANGLEPROFILEDEF(.AREA.,$,#8,0.,0.)')}`));
  assert.equal(byId(10).meshState, 'noRepresentation');
  assert.ok(['empty', 'failed'].includes(byId(20).meshState), byId(20).meshState);
  assert.notEqual(byId(20).meshNote, '');
});

test('a body that refers to a line that is not there is no crash', async () => {
  const { byId } = await sceneOf(ifcText(`${box(10, 'IFCWALL', [0, 0, 0], [4, 2, 3], ',$')}
${box(20, 'IFCWALL', [9, 0, 0], [4, 2, 3], ',$')}`).replace("'SweptSolid',(#16)", "'SweptSolid',(#999)"));
  assert.ok(['empty', 'failed'].includes(byId(10).meshState), byId(10).meshState);
  assert.equal(byId(20).meshState, 'meshed');
});

test('spaces, annotations, grids and virtual elements have no mesh', async () => {
  const { byId } = await sceneOf(ifcText(`
${box(10, 'IFCVIRTUALELEMENT', [0, 0, 0], [4, 2, 3])}
${box(20, 'IFCSPACE', [0, 0, 0], [4, 2, 3], ',.ELEMENT.,$,$')}
#40=IFCANNOTATION(${guid()},$,'text',$,$,$,$);`));
  assert.deepEqual([10, 20, 40].map((id) => [byId(id).role, byId(id).meshState]), [
    ['virtual', 'notABody'], ['space', 'notABody'], ['annotation', 'notABody']]);
});

const volumeQuantity = (value) => `
#80=IFCELEMENTQUANTITY(${guid()},$,'Qto_WallBaseQuantities',$,$,(#81));
#81=IFCQUANTITYVOLUME('NetVolume',$,$,${value},$);
#82=IFCRELDEFINESBYPROPERTIES(${guid()},$,$,$,(#10),#80);
#83=IFCSIUNIT(*,.VOLUMEUNIT.,$,.CUBIC_METRE.);`;

const wallWithVolume = (value) => ifcText(
  box(10, 'IFCWALL', [0, 0, 0], [4, 2, 3], ',$') + volumeQuantity(value),
  { unit: UNITS.metre, more: ',#83' });

test('a declared volume within two per cent is fine, beyond it is a warning', async () => {
  const fine = await sceneOf(wallWithVolume('24.4'));
  assert.deepEqual(fine.scene.warnings, []);
  assert.equal(near([fine.byId(10).netVolume / 1e9], [24.4]), '');
  const { scene } = await sceneOf(wallWithVolume('22.'));
  assert.equal(scene.warnings[0].code, 'volume-differs');
  assert.match(scene.warnings[0].text, /9\.1 % larger/);
  assert.equal(scene.products[scene.warnings[0].product].expressId, 10);
});

test('a volume in the cube of the length unit is understood', async () => {
  const text = ifcText(
    box(10, 'IFCWALL', [0, 0, 0], [4000, 2000, 3000], ',$') + volumeQuantity('24000000000.'),
    { unit: UNITS.millimetre, more: ',#83' });
  const { scene, byId } = await sceneOf(text);
  assert.equal(near([byId(10).netVolume / 1e9], [24]), '');
  assert.deepEqual(scene.warnings.map((w) => w.code), ['volume-unit']);
});
