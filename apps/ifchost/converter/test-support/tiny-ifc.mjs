// SPDX-License-Identifier: Apache-2.0
// Small IFC files as text, and the scenes that come out of them.

import { IfcModel, loadReader } from '../lib/model.mjs';
import { readScene } from '../lib/scene.mjs';

export const UNITS = Object.freeze({
  millimetre: '#3=IFCSIUNIT(*,.LENGTHUNIT.,.MILLI.,.METRE.);',
  metre: '#3=IFCSIUNIT(*,.LENGTHUNIT.,$,.METRE.);',
  foot: `#3=IFCCONVERSIONBASEDUNIT(#900,.LENGTHUNIT.,'FOOT',#901);
#900=IFCDIMENSIONALEXPONENTS(1,0,0,0,0,0,0);
#901=IFCMEASUREWITHUNIT(IFCLENGTHMEASURE(0.3048),#902);
#902=IFCSIUNIT(*,.LENGTHUNIT.,$,.METRE.);`,
  inch: `#3=IFCCONVERSIONBASEDUNIT(#900,.LENGTHUNIT.,'INCH',#901);
#900=IFCDIMENSIONALEXPONENTS(1,0,0,0,0,0,0);
#901=IFCMEASUREWITHUNIT(IFCLENGTHMEASURE(25.4),#902);
#902=IFCSIUNIT(*,.LENGTHUNIT.,.MILLI.,.METRE.);`,
});

/** A whole file: project #1, units #2 and #3, context #5, world placement #6; yours from #10. */
export function ifcText(lines, { schema = 'IFC4', unit = UNITS.millimetre, more = '' } = {}) {
  return `ISO-10303-21;
HEADER;
FILE_DESCRIPTION((''),'2;1');
FILE_NAME('tiny','2024-01-01T00:00:00',(''),(''),'','Tiny CAD','');
FILE_SCHEMA(('${schema}'));
ENDSEC;
DATA;
#1=IFCPROJECT('0000000000000000000001',$,'Tiny',$,$,$,$,(#5),#2);
#2=IFCUNITASSIGNMENT((#3${more}));
${unit}
#5=IFCGEOMETRICREPRESENTATIONCONTEXT($,'Model',3,1.E-5,#6,$);
#6=IFCAXIS2PLACEMENT3D(#7,$,$);
#7=IFCCARTESIANPOINT((0.,0.,0.));
#8=IFCAXIS2PLACEMENT2D(#9,$);
#9=IFCCARTESIANPOINT((0.,0.));
${lines}
ENDSEC;
END-ISO-10303-21;
`;
}

let guidCount = 100;
export const guid = () => `'${String(guidCount++).padStart(22, '0')}'`;

/**
 * Lines of a box product: `id` to id + 8, with the profile centred on `at` (its bottom's middle)
 * and size [x, y, z]. `placement` may be the id of an IfcLocalPlacement to use instead.
 */
export function box(id, className, at, size, tail = '') {
  const [x, y, z] = at.map((v) => v.toFixed(6));
  const [w, d, h] = size.map((v) => v.toFixed(6));
  return `#${id}=${className}(${guid()},$,'${className}-${id}',$,$,#${id + 1},#${id + 4},$${tail});
#${id + 1}=IFCLOCALPLACEMENT($,#${id + 2});
#${id + 2}=IFCAXIS2PLACEMENT3D(#${id + 3},$,$);
#${id + 3}=IFCCARTESIANPOINT((${x},${y},${z}));
#${id + 4}=IFCPRODUCTDEFINITIONSHAPE($,$,(#${id + 5}));
#${id + 5}=IFCSHAPEREPRESENTATION(#5,'Body','SweptSolid',(#${id + 6}));
#${id + 6}=IFCEXTRUDEDAREASOLID(#${id + 7},#6,#${id + 8},${h});
#${id + 7}=IFCRECTANGLEPROFILEDEF(.AREA.,$,#8,${w},${d});
#${id + 8}=IFCDIRECTION((0.,0.,1.));`;
}

export async function openText(text, circleSegments = 24) {
  return IfcModel.open(loadReader(), Buffer.from(text, 'utf8'), circleSegments);
}

/** The scene of an IFC text, and its products by express id. */
export async function sceneOf(text, circleSegments = 24) {
  const model = await openText(text, circleSegments);
  const scene = readScene(model, { circleSegments, version: 'test' }, () => {});
  model.close();
  const byId = (id) => scene.products.find((product) => product.expressId === id);
  return { scene, byId };
}

/** Whether all numbers agree within `tolerance`; the difference in words otherwise. */
export function near(actual, expected, tolerance = 1e-3) {
  const fits = actual?.length === expected.length &&
    expected.every((value, i) => Math.abs(actual[i] - value) <= tolerance);
  return fits ? '' : `${JSON.stringify(actual)} instead of ${JSON.stringify(expected)}`;
}
