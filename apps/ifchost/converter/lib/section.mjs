// SPDX-License-Identifier: Apache-2.0
// Size and axis of the swept solid that a product's body consists of.

import { curveSegments } from './curves.mjs';
import {
  add, emptyBox, growBox, length, multiply, normalize, scale, subtract, transformDirection,
  transformPoint,
} from './math.mjs';
import { number, ref, refs, text } from './model.mjs';
import { axisPlacement, direction, transformationOperator } from './placement.mjs';

const MAX_DEPTH = 20;

/** Overall box of profiles given by parameters, centred on the profile's position. */
const PARAMETRIC = Object.freeze({
  IfcRectangleProfileDef: ['XDim', 'YDim'],
  IfcRoundedRectangleProfileDef: ['XDim', 'YDim'],
  IfcRectangleHollowProfileDef: ['XDim', 'YDim'],
  IfcIShapeProfileDef: ['OverallWidth', 'OverallDepth'],
  IfcUShapeProfileDef: ['FlangeWidth', 'Depth'],
  IfcTShapeProfileDef: ['FlangeWidth', 'Depth'],
  IfcCShapeProfileDef: ['Width', 'Depth'],
  IfcLShapeProfileDef: ['Width', 'Depth'],
  IfcTrapeziumProfileDef: ['BottomXDim', 'YDim'],
});

const RECTANGLES = new Set([
  'IfcRectangleProfileDef', 'IfcRoundedRectangleProfileDef', 'IfcRectangleHollowProfileDef',
]);

function boxOfSegments(segments) {
  const box = emptyBox();
  for (const s of segments) {
    for (const p of [s.start, s.middle, s.end]) growBox(box, p);
    if (s.kind === 'arc' && s.start === s.end) {
      growBox(box, subtract(s.center, [s.radius, s.radius, 0]));
      growBox(box, add(s.center, [s.radius, s.radius, 0]));
    }
  }
  return box;
}

function freeOutline(model, curveId, angleFactor) {
  const box = boxOfSegments(curveSegments(model, curveId, angleFactor));
  if (!Number.isFinite(box[0])) return null;
  return {
    width: box[3] - box[0],
    height: box[4] - box[1],
    center: [(box[0] + box[3]) / 2, (box[1] + box[4]) / 2, 0],
  };
}

/**
 * Shape and overall size of a profile in file units, `center` being the middle of its overall box
 * in the solid's frame; null for kinds without a simple size.
 */
function readProfile(model, id, angleFactor) {
  const line = model.line(id);
  if (!line) return null;
  const profileClass = model.className(line);
  const base = { profileClass, profileName: text(line.ProfileName), shape: 'other', radius: 0 };
  const placement = axisPlacement(model, ref(line.Position));
  const placed = {
    ...base,
    center: transformPoint(placement, [0, 0, 0]),
    xAxis: transformDirection(placement, [1, 0, 0]),
    wallThickness: number(line.WallThickness) ?? 0,
  };
  const radius = number(line.Radius);
  if (profileClass.startsWith('IfcCircle') && radius !== null) {
    return { ...placed, shape: 'circle', width: 2 * radius, height: 2 * radius, radius };
  }
  if (profileClass === 'IfcEllipseProfileDef') {
    const [a, b] = [number(line.SemiAxis1) ?? 0, number(line.SemiAxis2) ?? 0];
    return { ...placed, width: 2 * a, height: 2 * b };
  }
  if (PARAMETRIC[profileClass]) {
    const [width, height] = PARAMETRIC[profileClass].map((name) => number(line[name]) ?? 0);
    const shape = RECTANGLES.has(profileClass) ? 'rectangle' : 'other';
    return { ...placed, shape, width, height: height || width };
  }
  if (line.OuterCurve) {
    const outline = freeOutline(model, ref(line.OuterCurve), angleFactor);
    return outline && { ...base, ...outline, xAxis: [1, 0, 0], wallThickness: 0 };
  }
  return null;
}

const LEADS_TO_SWEPT_SOLID = new Set([
  'IfcExtrudedAreaSolid', 'IfcExtrudedAreaSolidTapered', 'IfcSweptDiskSolid',
  'IfcSweptDiskSolidPolygonal', 'IfcBooleanResult', 'IfcBooleanClippingResult', 'IfcCsgSolid',
  'IfcMappedItem',
]);

/** Swept solids under a representation item, with the matrix from their frame to the product's. */
function* sweptSolids(model, id, matrix, depth = 0) {
  const className = depth > MAX_DEPTH ? '' : model.classNameOf(id);
  if (!LEADS_TO_SWEPT_SOLID.has(className)) return;
  const line = model.line(id);
  if (!line) return;
  switch (className) {
    case 'IfcExtrudedAreaSolid':
    case 'IfcExtrudedAreaSolidTapered':
    case 'IfcSweptDiskSolid':
    case 'IfcSweptDiskSolidPolygonal':
      yield { line, className, matrix };
      break;
    case 'IfcBooleanResult':
    case 'IfcBooleanClippingResult':
      yield* sweptSolids(model, ref(line.FirstOperand), matrix, depth + 1);
      break;
    case 'IfcCsgSolid':
      yield* sweptSolids(model, ref(line.TreeRootExpression), matrix, depth + 1);
      break;
    default: yield* mappedSolids(model, line, matrix, depth + 1);
  }
}

function* mappedSolids(model, line, matrix, depth) {
  const source = model.line(ref(line.MappingSource));
  const target = transformationOperator(model, ref(line.MappingTarget));
  const origin = axisPlacement(model, ref(source?.MappingOrigin));
  const inner = multiply(multiply(matrix, target), origin);
  const representation = model.line(ref(source?.MappedRepresentation));
  for (const item of refs(representation?.Items)) yield* sweptSolids(model, item, inner, depth);
}

/** Ids of the items of a product's body representation. */
function bodyItems(model, product) {
  const shape = model.line(ref(product.Representation));
  const representations = refs(shape?.Representations).map((id) => model.line(id)).filter(Boolean);
  const body = representations.find((r) => text(r.RepresentationIdentifier) === 'Body');
  return refs(body?.Items);
}

function extrusion(model, solid, units) {
  const profile = readProfile(model, ref(solid.line.SweptArea), units.angle);
  if (!profile) return null;
  const frame = multiply(solid.matrix, axisPlacement(model, ref(solid.line.Position)));
  const depth = number(solid.line.Depth) ?? 0;
  const along = scale(direction(model, ref(solid.line.ExtrudedDirection), [0, 0, 1]), depth);
  return {
    ...profile,
    start: transformPoint(frame, profile.center),
    end: transformPoint(frame, add(profile.center, along)),
    xAxis: transformDirection(frame, profile.xAxis),
  };
}

function sweptDisk(model, solid, units) {
  const radius = number(solid.line.Radius) ?? 0;
  const path = curveSegments(model, ref(solid.line.Directrix), units.angle);
  if (path.length === 0) return null;
  const inner = number(solid.line.InnerRadius) ?? radius;
  return {
    profileClass: solid.className, profileName: '', shape: 'circle',
    width: 2 * radius, height: 2 * radius, radius, wallThickness: radius - inner,
    start: transformPoint(solid.matrix, path[0].start),
    end: transformPoint(solid.matrix, path[path.length - 1].end),
    xAxis: transformDirection(solid.matrix, [1, 0, 0]),
    pathLength: path.reduce((sum, s) => sum + segmentLength(s), 0),
  };
}

function segmentLength(s) {
  if (s.kind === 'line') return length(subtract(s.end, s.start));
  if (s.start === s.end) return 2 * Math.PI * s.radius;
  // Half of the arc is seen from its centre under the angle of this chord.
  const half = length(subtract(s.middle, s.start));
  return 4 * s.radius * Math.asin(Math.min(1, half / (2 * s.radius)));
}

/**
 * Section of the first swept solid of a product, in millimetres and world frame, or null. `world`
 * is the product's placement in file units.
 */
export function readSection(model, product, world, units) {
  let found = null;
  let solidCount = 0;
  for (const item of bodyItems(model, product)) {
    for (const solid of sweptSolids(model, item, world)) {
      ++solidCount;
      const isDisk = solid.className.startsWith('IfcSweptDisk');
      found ??= isDisk ? sweptDisk(model, solid, units) : extrusion(model, solid, units);
    }
  }
  return found && toMillimetres(found, solidCount, units.length);
}

function toMillimetres(found, solidCount, mm) {
  // A mapped product may be scaled; the x axis carries that factor.
  const f = mm * (length(found.xAxis) || 1);
  const span = length(subtract(found.end, found.start)) * mm;
  return {
    shape: found.shape,
    profileClass: found.profileClass,
    profileName: found.profileName,
    width: found.width * f,
    height: found.height * f,
    radius: found.radius * f,
    wallThickness: found.wallThickness * f,
    length: found.pathLength === undefined ? span : found.pathLength * f,
    start: scale(found.start, mm),
    end: scale(found.end, mm),
    xAxis: normalize(found.xAxis, [1, 0, 0]),
    solidCount,
  };
}
