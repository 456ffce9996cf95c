// SPDX-License-Identifier: Apache-2.0
import assert from 'node:assert/strict';
import test from 'node:test';

import { readUnits } from '../lib/units.mjs';
import { Warnings } from '../lib/warnings.mjs';
import { UNITS, box, ifcText, near, openText, sceneOf } from '../test-support/tiny-ifc.mjs';

async function unitsOf(options) {
  const warnings = new Warnings();
  const model = await openText(ifcText('', options));
  return { units: readUnits(model, warnings), warnings: warnings.list() };
}

for (const [name, mm] of [['millimetre', 1], ['metre', 1000], ['foot', 304.8], ['inch', 25.4]]) {
  test(`a box in a file in ${name} has its declared corners in millimetres`, async () => {
    const { scene, byId } = await sceneOf(
      ifcText(box(10, 'IFCWALL', [10, 20, 30], [4, 2, 3], ',$'), { unit: UNITS[name] }));
    assert.equal(scene.file.lengthUnitInMm, mm);
    const expected = [8, 19, 30, 12, 21, 33].map((v) => v * mm);
    assert.equal(near(byId(10).box, expected), '');
    assert.equal(near([byId(10).meshVolume / mm ** 3], [24], 1e-4), '');
  });
}

test('an inch of 2.54 centimetres is 25.4 mm', async () => {
  const unit = UNITS.inch.replace('25.4', '2.54').replace('.MILLI.', '.CENTI.');
  assert.equal((await unitsOf({ unit })).units.length, 25.4);
});

test('a prefix of a square or cubic metre counts with its power', async () => {
  const { units } = await unitsOf({
    unit: `${UNITS.metre}
#20=IFCSIUNIT(*,.AREAUNIT.,.CENTI.,.SQUARE_METRE.);
#21=IFCSIUNIT(*,.VOLUMEUNIT.,.DECI.,.CUBIC_METRE.);`,
    more: ',#20,#21',
  });
  assert.equal(units.area, 100);
  assert.equal(units.volume, 1e6);
});

test('degrees become radians', async () => {
  const { units } = await unitsOf({
    unit: `${UNITS.metre}
#20=IFCCONVERSIONBASEDUNIT(#23,.PLANEANGLEUNIT.,'DEGREE',#21);
#21=IFCMEASUREWITHUNIT(IFCPLANEANGLEMEASURE(0.0174532925199433),#22);
#22=IFCSIUNIT(*,.PLANEANGLEUNIT.,$,.RADIAN.);
#23=IFCDIMENSIONALEXPONENTS(0,0,0,0,0,0,0);`,
    more: ',#20',
  });
  assert.equal(units.angle, 0.0174532925199433);
});

test('a unit that is not assigned to the project does not count', async () => {
  const { units } = await unitsOf({
    unit: `${UNITS.millimetre}\n#20=IFCSIUNIT(*,.LENGTHUNIT.,.DECI.,.METRE.);`,
  });
  assert.equal(units.length, 1);
});

test('a file without a length unit is taken for metres, with a warning', async () => {
  const { units, warnings } = await unitsOf({ unit: '#3=IFCSIUNIT(*,.MASSUNIT.,.KILO.,.GRAM.);' });
  assert.equal(units.length, 1000);
  assert.equal(warnings[0].code, 'no-length-unit');
});
