// SPDX-License-Identifier: Apache-2.0
// Curves of grid axes, profiles and sweeps as line and arc segments in file units.

import {
  add, cross, dot, length, normalize, scale, subtract, transformPoint,
} from './math.mjs';
import { number, numbers, ref, refs, text } from './model.mjs';
import { axisPlacement, direction, point } from './placement.mjs';

// Position of Segments among the attributes of IfcIndexedPolyCurve.
const SEGMENTS_ARGUMENT = 1;

const TWO_PI = 2 * Math.PI;
const MAX_DEPTH = 20;
// Chords for curves that are neither lines nor circles.
const ELLIPSE_CHORDS = 32;

function lineSegment(start, end) {
  return { kind: 'line', start, end, middle: scale(add(start, end), 0.5) };
}

function arcOnCircle(matrix, radius, from, sweep) {
  const at = (angle) =>
    transformPoint(matrix, [radius * Math.cos(angle), radius * Math.sin(angle), 0]);
  const whole = Math.abs(Math.abs(sweep) - TWO_PI) < 1e-12;
  const start = at(from);
  return {
    kind: 'arc',
    start,
    end: whole ? start : at(from + sweep),
    middle: at(from + sweep / 2),
    center: transformPoint(matrix, [0, 0, 0]),
    radius,
  };
}

/** The arc from a over b to c; a line when the three are on one. */
export function arcThrough(a, b, c) {
  const u = subtract(b, a);
  const v = subtract(c, a);
  const normal = cross(u, v);
  const area = dot(normal, normal);
  if (!(area > 1e-18 * dot(u, u) * dot(v, v))) return lineSegment(a, c);
  const toCenter = scale(
    cross(subtract(scale(v, dot(u, u)), scale(u, dot(v, v))), normal), 1 / (2 * area));
  return arcAround(add(a, toCenter), a, b, c);
}

function arcAround(center, a, b, c) {
  const radius = length(subtract(a, center));
  const x = normalize(subtract(a, center), [1, 0, 0]);
  const normal = normalize(cross(subtract(b, a), subtract(c, b)), [0, 0, 1]);
  const y = cross(normal, x);
  const d = subtract(c, center);
  let sweep = Math.atan2(dot(d, y), dot(d, x));
  if (sweep <= 0) sweep += TWO_PI;
  const half = add(scale(x, Math.cos(sweep / 2)), scale(y, Math.sin(sweep / 2)));
  return { kind: 'arc', start: a, end: c, middle: add(center, scale(half, radius)), center, radius };
}

function polyline(points) {
  const out = [];
  for (let i = 1; i < points.length; ++i) out.push(lineSegment(points[i - 1], points[i]));
  return out;
}

function listPoints(model, id) {
  const list = model.line(id)?.CoordList;
  if (!Array.isArray(list)) return [];
  return list.map((item) => {
    const [x = 0, y = 0, z = 0] = numbers(item);
    return [x, y, z];
  });
}

function indexedPolyCurve(model, line) {
  const points = listPoints(model, ref(line.Points));
  const segments = model.typedLists(line.expressID, SEGMENTS_ARGUMENT);
  if (segments.length === 0) return polyline(points);
  const out = [];
  for (const { typeName, values } of segments) {
    const corners = values.map((index) => points[index - 1]).filter(Boolean);
    const isArc = typeName === 'IFCARCINDEX' && corners.length === 3;
    out.push(...(isArc ? [arcThrough(...corners)] : polyline(corners)));
  }
  return out;
}

/** Trim as { parameter, point }: the parameter in radians or line lengths, or null. */
function readTrim(model, list, parameterFactor) {
  const trim = { parameter: null, point: null };
  for (const item of Array.isArray(list) ? list : []) {
    if (ref(item)) trim.point = point(model, ref(item));
    else if (number(item) !== null) trim.parameter = number(item) * parameterFactor;
  }
  return trim;
}

function angleOn(matrix, p) {
  const d = subtract(p, [matrix[3], matrix[7], matrix[11]]);
  return Math.atan2(dot(d, [matrix[1], matrix[5], matrix[9]]),
    dot(d, [matrix[0], matrix[4], matrix[8]]));
}

function trimmedCircle(model, line, basis, angleFactor) {
  const matrix = axisPlacement(model, ref(basis.Position));
  const radius = number(basis.Radius) ?? 0;
  const angle = (list) => {
    const trim = readTrim(model, list, angleFactor);
    const byPoint = text(line.MasterRepresentation) === 'CARTESIAN';
    if (trim.point && (byPoint || trim.parameter === null)) return angleOn(matrix, trim.point);
    return trim.parameter ?? 0;
  };
  const from = angle(line.Trim1);
  let sweep = (angle(line.Trim2) - from) % TWO_PI;
  const forward = line.SenseAgreement?.value !== false;
  if (forward && sweep <= 0) sweep += TWO_PI;
  if (!forward && sweep >= 0) sweep -= TWO_PI;
  return [arcOnCircle(matrix, radius, from, sweep)];
}

function trimmedLine(model, line, basis) {
  const origin = point(model, ref(basis.Pnt));
  const vector = model.line(ref(basis.Dir));
  const step = scale(direction(model, ref(vector?.Orientation), [1, 0, 0]),
    number(vector?.Magnitude) ?? 1);
  const end = (list) => {
    const trim = readTrim(model, list, 1);
    return trim.point ?? add(origin, scale(step, trim.parameter ?? 0));
  };
  return [lineSegment(end(line.Trim1), end(line.Trim2))];
}

function compositeCurve(model, line, angleFactor, depth) {
  const out = [];
  for (const id of refs(line.Segments)) {
    const segment = model.line(id);
    const parts = curveSegments(model, ref(segment?.ParentCurve), angleFactor, depth + 1);
    if (segment?.SameSense?.value === false) out.push(...reverseSegments(parts));
    else out.push(...parts);
  }
  return out;
}

/** The same path from its end to its beginning. */
function reverseSegments(segments) {
  return segments.map((s) => ({ ...s, start: s.end, end: s.start })).reverse();
}

function ellipse(model, line) {
  const matrix = axisPlacement(model, ref(line.Position));
  const [a, b] = [number(line.SemiAxis1) ?? 0, number(line.SemiAxis2) ?? 0];
  const points = Array.from({ length: ELLIPSE_CHORDS + 1 }, (_, i) => {
    const angle = (TWO_PI * (i % ELLIPSE_CHORDS)) / ELLIPSE_CHORDS;
    return transformPoint(matrix, [a * Math.cos(angle), b * Math.sin(angle), 0]);
  });
  return polyline(points);
}

/**
 * Segments of a curve in file units; an empty list for a kind that is not understood. An unbounded
 * line counts for its direction vector's length.
 */
export function curveSegments(model, id, angleFactor, depth = 0) {
  const line = depth > MAX_DEPTH ? null : model.line(id);
  switch (model.className(line)) {
    case 'IfcPolyline': return polyline(refs(line.Points).map((p) => point(model, p)));
    case 'IfcIndexedPolyCurve': return indexedPolyCurve(model, line);
    case 'IfcCompositeCurve':
    case 'Ifc2DCompositeCurve':
      return compositeCurve(model, line, angleFactor, depth);
    case 'IfcCircle':
      return [arcOnCircle(axisPlacement(model, ref(line.Position)), number(line.Radius) ?? 0, 0,
        TWO_PI)];
    case 'IfcEllipse': return ellipse(model, line);
    case 'IfcLine': return trimmedLine(model, { Trim1: [{ value: 0 }], Trim2: [{ value: 1 }] }, line);
    case 'IfcTrimmedCurve': {
      const basis = model.line(ref(line.BasisCurve));
      const name = model.className(basis);
      if (name === 'IfcCircle') return trimmedCircle(model, line, basis, angleFactor);
      if (name === 'IfcLine') return trimmedLine(model, line, basis);
      return [];
    }
    default: return [];
  }
}

/** The segments moved by a matrix that may scale evenly by `factor`. */
export function transformSegments(segments, matrix, factor) {
  return segments.map((s) => {
    const out = { kind: s.kind };
    for (const key of ['start', 'end', 'middle', 'center']) {
      if (s[key]) out[key] = transformPoint(matrix, s[key]);
    }
    if (s.kind === 'arc') out.radius = s.radius * factor;
    return out;
  });
}
