// SPDX-License-Identifier: Apache-2.0
import assert from 'node:assert/strict';
import test from 'node:test';

import { UNITS, box, guid, ifcText, near, sceneOf } from '../test-support/tiny-ifc.mjs';

const WALL = (id, at = [0, 0, 0]) => box(id, 'IFCWALL', at, [4, 2, 3], ',$');

/** Two storeys at 0 and 3 file units under one building under one site. */
const STOREYS = `
#500=IFCSITE(${guid()},$,'Site',$,$,$,$,$,.ELEMENT.,(52,30,36,500000),(-1,-30,0),$,$,$);
#501=IFCBUILDING(${guid()},$,'House',$,$,$,$,$,.ELEMENT.,$,$,$);
#502=IFCBUILDINGSTOREY(${guid()},$,'Upper',$,$,#506,$,$,.ELEMENT.,3.);
#503=IFCBUILDINGSTOREY(${guid()},$,'Ground',$,$,$,$,$,.ELEMENT.,0.);
#504=IFCRELAGGREGATES(${guid()},$,$,$,#501,(#502,#503));
#505=IFCRELAGGREGATES(${guid()},$,$,$,#500,(#501));
#506=IFCLOCALPLACEMENT($,#507);
#507=IFCAXIS2PLACEMENT3D(#508,$,$);
#508=IFCCARTESIANPOINT((0.,0.,3.5));
#509=IFCSPACE(${guid()},$,'Room',$,$,$,$,'Kitchen',.ELEMENT.,$,$);
#510=IFCRELAGGREGATES(${guid()},$,$,$,#503,(#509));`;

const contained = (id, ids, storey) =>
  `#${id}=IFCRELCONTAINEDINSPATIALSTRUCTURE(${guid()},$,$,$,(${ids}),#${storey});`;

const storeyName = ({ scene, byId }, id) => scene.storeys[byId(id).storey]?.name;

test('storeys are in order of height, in millimetres, with both of their heights', async () => {
  const { scene } = await sceneOf(ifcText(STOREYS, { unit: UNITS.foot }));
  assert.deepEqual(scene.storeys.map((s) => s.name), ['Ground', 'Upper']);
  const upper = scene.storeys[1];
  assert.equal(near([upper.elevation, upper.placementZ, upper.baseZ], [914.4, 1066.8, 1066.8]), '');
  assert.equal(scene.storeys[0].placementZ, undefined);
  assert.equal(scene.storeys[0].building, 0);
  assert.equal(scene.buildings[0].parent, 0);
});

test('a site gives latitude and longitude in degrees', async () => {
  const { scene } = await sceneOf(ifcText(STOREYS));
  const { latitude, longitude } = scene.file.georeference;
  assert.equal(near([latitude, longitude], [52.510138888, -1.5], 1e-8), '');
});

test('the storey is found through assemblies, spaces, hosts and fillings', async () => {
  const result = await sceneOf(ifcText(`${STOREYS}
${WALL(10)}
${WALL(20)}
${box(30, 'IFCOPENINGELEMENT', [0, 0, 0], [1, 4, 1], ',.OPENING.')}
#40=IFCDOOR(${guid()},$,'door',$,$,$,$,$,2.1,0.9,$,$,$);
#41=IFCELEMENTASSEMBLY(${guid()},$,'frame',$,$,$,$,$,$,$);
#42=IFCRELAGGREGATES(${guid()},$,$,$,#41,(#20));
#43=IFCRELVOIDSELEMENT(${guid()},$,$,$,#10,#30);
#44=IFCRELFILLSELEMENT(${guid()},$,$,$,#30,#40);
#45=IFCFURNITURE(${guid()},$,'table',$,$,$,$,$,$);
#46=IFCFURNITURE(${guid()},$,'lost',$,$,$,$,$,$);
${contained(50, '#10', 502)}
${contained(51, '#41', 503)}
${contained(52, '#45', 509)}`));
  assert.deepEqual([10, 20, 30, 40, 45, 46].map((id) => storeyName(result, id)),
    ['Upper', 'Ground', 'Upper', 'Upper', 'Ground', undefined]);
  const { scene, byId } = result;
  const index = (id) => scene.products.indexOf(byId(id));
  assert.equal(byId(20).parent, index(41));
  assert.deepEqual(scene.relations.aggregates, [[index(41), index(20)]]);
  assert.deepEqual(scene.relations.fills, [[index(30), index(40)]]);
  assert.equal(near([byId(40).overallHeight, byId(40).overallWidth], [2.1, 0.9]), '');
});

test('a relation in a circle does not hang', async () => {
  const { byId } = await sceneOf(ifcText(`
#10=IFCELEMENTASSEMBLY(${guid()},$,'a',$,$,$,$,$,$,$);
#11=IFCELEMENTASSEMBLY(${guid()},$,'b',$,$,$,$,$,$,$);
#12=IFCRELAGGREGATES(${guid()},$,$,$,#10,(#11));
#13=IFCRELAGGREGATES(${guid()},$,$,$,#11,(#10));`));
  assert.equal(byId(10).storey, -1);
});

const PORTS = (attach) => `
#10=IFCPIPESEGMENT(${guid()},$,'pipe',$,$,$,$,$,.RIGIDSEGMENT.);
#11=IFCPIPEFITTING(${guid()},$,'bend',$,$,$,$,$,.BEND.);
#12=IFCDISTRIBUTIONPORT(${guid()},$,'p1',$,$,$,$,.SOURCE.,$,$);
#13=IFCDISTRIBUTIONPORT(${guid()},$,'p2',$,$,$,$,.SINK.,$,$);
#14=IFCRELCONNECTSPORTS(${guid()},$,$,$,#12,#13,$);
${attach}`;

for (const [name, attach] of [
  ['nesting', `#15=IFCRELNESTS(${guid()},$,$,$,#10,(#12));\n#16=IFCRELNESTS(${guid()},$,$,$,#11,(#13));`],
  ['port relations', `#15=IFCRELCONNECTSPORTTOELEMENT(${guid()},$,$,$,#12,#10);
#16=IFCRELCONNECTSPORTTOELEMENT(${guid()},$,$,$,#13,#11);`],
]) {
  test(`elements are connected through ports attached by ${name}`, async () => {
    const { scene, byId } = await sceneOf(ifcText(PORTS(attach)));
    const index = (id) => scene.products.indexOf(byId(id));
    assert.deepEqual(scene.relations.connections,
      [{ first: index(10), second: index(11), kind: 'port' }]);
    assert.deepEqual(scene.relations.ports, [
      { port: index(12), element: index(10), flowDirection: 'SOURCE' },
      { port: index(13), element: index(11), flowDirection: 'SINK' }]);
    assert.deepEqual(scene.relations.aggregates, []);
  });
}

test('a relation to a product that is not there is a warning', async () => {
  const { scene } = await sceneOf(ifcText(
    `${WALL(10)}\n#30=IFCRELCONNECTSELEMENTS(${guid()},$,$,$,$,#10,#999);`));
  assert.deepEqual(scene.relations.connections, []);
  assert.equal(scene.warnings[0].code, 'broken-relation');
});

test('wall joints, plain connections and coverings are told apart', async () => {
  const { scene } = await sceneOf(ifcText(`${WALL(10)}\n${WALL(20)}
#40=IFCCOVERING(${guid()},$,'foam',$,$,$,$,$,.INSULATION.);
#41=IFCRELCONNECTSPATHELEMENTS(${guid()},$,$,$,$,#20,#10,$,$,.ATEND.,.ATSTART.);
#42=IFCRELCONNECTSELEMENTS(${guid()},$,$,$,$,#10,#20);
#43=IFCRELCONNECTSELEMENTS(${guid()},$,$,$,$,#20,#10);
#44=IFCRELCOVERSBLDGELEMENTS(${guid()},$,$,$,#10,(#40));`));
  assert.deepEqual(scene.relations.connections, [
    { first: 0, second: 1, kind: 'path' }, { first: 0, second: 1, kind: 'element' }]);
  assert.deepEqual(scene.relations.coverings, [[0, 2]]);
});

test('systems come through parts of an assembly as well', async () => {
  const { scene, byId } = await sceneOf(ifcText(`${WALL(10)}
#41=IFCELEMENTASSEMBLY(${guid()},$,'unit',$,$,$,$,$,$,$);
#42=IFCRELAGGREGATES(${guid()},$,$,$,#41,(#10));
#43=IFCDISTRIBUTIONSYSTEM(${guid()},$,'DR',$,$,'Drain',.DRAINAGE.);
#44=IFCRELASSIGNSTOGROUP(${guid()},$,$,$,(#41),$,#43);`));
  assert.deepEqual(byId(10).systems, [0]);
  assert.equal(scene.systems[0].ifcClass, 'IfcDistributionSystem');
  assert.equal(scene.systems[0].predefinedType, 'DRAINAGE');
});

const MATERIALS = {
  'a single material': '#60=IFCMATERIAL(\'Steel\',$,$);',
  'a layer set usage': `#60=IFCMATERIALLAYERSETUSAGE(#61,.AXIS2.,.POSITIVE.,0.,$);
#61=IFCMATERIALLAYERSET((#62,#63),$,$);
#62=IFCMATERIALLAYER(#64,1.,$,$,$,$,$);
#63=IFCMATERIALLAYER(#65,1.,$,$,$,$,$);
#64=IFCMATERIAL('Brick',$,$);
#65=IFCMATERIAL('Plaster',$,$);`,
  'a profile set': `#60=IFCMATERIALPROFILESET('S',$,(#61),$);
#61=IFCMATERIALPROFILE('P',$,#62,$,$,$);
#62=IFCMATERIAL('S235',$,$);`,
  'a constituent set': `#60=IFCMATERIALCONSTITUENTSET('S',$,(#61));
#61=IFCMATERIALCONSTITUENT('Frame',$,#62,$,$);
#62=IFCMATERIAL('Wood',$,$);`,
  'a list': `#60=IFCMATERIALLIST((#61,#62));
#61=IFCMATERIAL('A',$,$);
#62=IFCMATERIAL('B',$,$);`,
};
const MATERIAL_NAMES = [['Steel'], ['Brick', 'Plaster'], ['S235'], ['Wood'], ['A', 'B']];

Object.entries(MATERIALS).forEach(([name, lines], i) => {
  test(`material names come out of ${name}`, async () => {
    const { byId } = await sceneOf(ifcText(`${WALL(10)}\n${lines}
#70=IFCRELASSOCIATESMATERIAL(${guid()},$,$,$,(#10),#60);`));
    assert.deepEqual(byId(10).materials, MATERIAL_NAMES[i]);
  });
});

test('type object gives class, name, material and predefined type where the product has none',
  async () => {
    const { byId } = await sceneOf(ifcText(`${WALL(10)}
#60=IFCWALLTYPE(${guid()},$,'W200',$,$,$,$,$,$,.SOLIDWALL.);
#61=IFCRELDEFINESBYTYPE(${guid()},$,$,$,(#10),#60);
#62=IFCMATERIAL('Concrete',$,$);
#63=IFCRELASSOCIATESMATERIAL(${guid()},$,$,$,(#60),#62);`));
    const { typeClass, typeName, predefinedType, materials } = byId(10);
    assert.deepEqual({ typeClass, typeName, predefinedType, materials }, {
      typeClass: 'IfcWallType', typeName: 'W200', predefinedType: 'SOLIDWALL',
      materials: ['Concrete'] });
  });

test('a missing and a doubled GlobalId are warnings', async () => {
  const { scene } = await sceneOf(ifcText(`
#10=IFCFURNITURE('2222222222222222222222',$,'a',$,$,$,$,$,$);
#11=IFCFURNITURE('2222222222222222222222',$,'b',$,$,$,$,$,$);
#12=IFCFURNITURE($,$,'c',$,$,$,$,$,$);`));
  assert.deepEqual(scene.warnings.map((w) => [w.code, w.product]),
    [['duplicate-guid', 1], ['no-guid', 2]]);
});

test('a map conversion is in the unit of the map', async () => {
  const { scene } = await sceneOf(ifcText(`
#20=IFCMAPCONVERSION(#5,#21,155000.,463000.,12.,0.,1.,1.);
#21=IFCPROJECTEDCRS('EPSG:28992',$,$,$,$,$,#22);
#22=IFCSIUNIT(*,.LENGTHUNIT.,$,.METRE.);`));
  assert.deepEqual(scene.file.georeference.mapConversion, {
    eastings: 155000000, northings: 463000000, orthogonalHeight: 12000, xAxisAbscissa: 0,
    xAxisOrdinate: 1, scale: 1, targetCrs: 'EPSG:28992' });
});
