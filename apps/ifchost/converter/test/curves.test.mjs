// SPDX-License-Identifier: Apache-2.0
import assert from 'node:assert/strict';
import test from 'node:test';

import { arcThrough, curveSegments } from '../lib/curves.mjs';
import { UNITS, guid, ifcText, near, openText, sceneOf } from '../test-support/tiny-ifc.mjs';

const HALF = Math.SQRT1_2;

test('the arc through three points has their centre, radius and middle', () => {
  const arc = arcThrough([1, 0, 5], [-HALF, HALF, 5], [0, -1, 5]);
  assert.equal(arc.kind, 'arc');
  assert.equal(near(arc.center, [0, 0, 5], 1e-12), '');
  assert.equal(near([arc.radius], [1], 1e-12), '');
  // Three quarters of a circle from +x over +y: halfway at 135 degrees.
  assert.equal(near(arc.middle, [-HALF, HALF, 5], 1e-12), '');
});

test('the short way round is kept as well, clockwise too', () => {
  const arc = arcThrough([0, 1, 0], [HALF, HALF, 0], [1, 0, 0]);
  assert.equal(near(arc.middle, [HALF, HALF, 0], 1e-12), '');
});

test('three points on a line make a line', () => {
  assert.equal(arcThrough([0, 0, 0], [1, 1, 0], [3, 3, 0]).kind, 'line');
});

async function segmentsOf(lines, angle = 1) {
  return curveSegments(await openText(ifcText(lines)), 20, angle);
}

test('a trimmed circle in degrees goes the way of its sense', async () => {
  const lines = (sense) => `
#20=IFCTRIMMEDCURVE(#21,(IFCPARAMETERVALUE(90.)),(IFCPARAMETERVALUE(0.)),.${sense}.,.PARAMETER.);
#21=IFCCIRCLE(#8,10.);`;
  const degree = Math.PI / 180;
  const [back] = await segmentsOf(lines('F'), degree);
  assert.equal(near(back.start, [0, 10, 0]) + near(back.end, [10, 0, 0]), '');
  assert.equal(near(back.middle, [10 * HALF, 10 * HALF, 0]), '');
  const [forward] = await segmentsOf(lines('T'), degree);
  assert.equal(near(forward.middle, [-10 * HALF, -10 * HALF, 0]), '');
});

test('a circle trimmed by points needs no angle unit', async () => {
  const [arc] = await segmentsOf(`
#20=IFCTRIMMEDCURVE(#21,(#22),(#23),.T.,.CARTESIAN.);
#21=IFCCIRCLE(#8,10.);
#22=IFCCARTESIANPOINT((10.,0.));
#23=IFCCARTESIANPOINT((0.,10.));`);
  assert.equal(near(arc.middle, [10 * HALF, 10 * HALF, 0]), '');
});

test('a whole circle starts where it ends', async () => {
  const [circle] = await segmentsOf('#20=IFCCIRCLE(#8,10.);');
  assert.deepEqual(circle.start, circle.end);
  assert.equal(near(circle.middle, [-10, 0, 0]), '');
});

test('an indexed curve mixes lines and arcs', async () => {
  const segments = await segmentsOf(`
#20=IFCINDEXEDPOLYCURVE(#21,(IFCLINEINDEX((1,2,3)),IFCARCINDEX((3,4,5))),$);
#21=IFCCARTESIANPOINTLIST2D(((0.,0.),(5.,0.),(10.,0.),(20.,10.),(10.,20.)));`);
  assert.deepEqual(segments.map((s) => s.kind), ['line', 'line', 'arc']);
  assert.equal(near(segments[2].center, [10, 10, 0]), '');
  assert.equal(near([segments[2].radius], [10]), '');
});

test('an indexed curve without segments joins its points', async () => {
  const segments = await segmentsOf(`
#20=IFCINDEXEDPOLYCURVE(#21,$,$);
#21=IFCCARTESIANPOINTLIST2D(((0.,0.),(10.,0.),(20.,10.)));`);
  assert.equal(segments.length, 2);
});

test('a composite curve turns segments of the other sense round', async () => {
  const segments = await segmentsOf(`
#20=IFCCOMPOSITECURVE((#21,#22),.F.);
#21=IFCCOMPOSITECURVESEGMENT(.CONTINUOUS.,.T.,#23);
#22=IFCCOMPOSITECURVESEGMENT(.CONTINUOUS.,.F.,#24);
#23=IFCPOLYLINE((#9,#25));
#24=IFCPOLYLINE((#26,#25));
#25=IFCCARTESIANPOINT((5.,0.));
#26=IFCCARTESIANPOINT((5.,7.));`);
  assert.deepEqual(segments.map((s) => [s.start, s.end]), [
    [[0, 0, 0], [5, 0, 0]], [[5, 0, 0], [5, 7, 0]]]);
});

test('grid axes are placed in the world, in millimetres, lines and arcs', async () => {
  const { scene } = await sceneOf(ifcText(`
#10=IFCGRID(${guid()},$,'grid',$,$,#11,$,(#20),(#21),$,$);
#11=IFCLOCALPLACEMENT($,#12);
#12=IFCAXIS2PLACEMENT3D(#13,$,#14);
#13=IFCCARTESIANPOINT((100.,0.,3.));
#14=IFCDIRECTION((0.,1.,0.));
#20=IFCGRIDAXIS('A',#22,.T.);
#21=IFCGRIDAXIS('R1',#24,.T.);
#22=IFCPOLYLINE((#9,#23));
#23=IFCCARTESIANPOINT((5.,0.));
#24=IFCTRIMMEDCURVE(#25,(#26),(#27),.T.,.CARTESIAN.);
#25=IFCCIRCLE(#8,10.);
#26=IFCCARTESIANPOINT((10.,0.));
#27=IFCCARTESIANPOINT((0.,10.));`, { unit: UNITS.metre }));
  assert.equal(scene.grids.length, 1);
  const [a, r] = scene.grids[0].axes;
  assert.deepEqual([a.name, a.family, r.name, r.family], ['A', 'U', 'R1', 'V']);
  // The grid's x is the world's y.
  assert.equal(near(a.segments[0].end, [100000, 5000, 3000]), '');
  assert.equal(near(r.segments[0].end, [90000, 0, 3000]), '');
  assert.equal(near([...r.segments[0].center, r.segments[0].radius], [100000, 0, 3000, 10000]), '');
});

test('a grid axis of a kind that is not understood is left out with a warning', async () => {
  const { scene } = await sceneOf(ifcText(`
#10=IFCGRID(${guid()},$,'grid',$,$,$,$,(#20),(),$,$);
#20=IFCGRIDAXIS('A',#22,.T.);`));
  assert.equal(scene.grids[0].axes.length, 0);
  assert.equal(scene.warnings[0].code, 'grid-axis');
  assert.match(scene.warnings[0].text, /"A"/);
});
