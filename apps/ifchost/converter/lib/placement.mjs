// SPDX-License-Identifier: Apache-2.0
// Placements and transformation operators as matrices in file units.

import {
  IDENTITY, cross, dot, fromAxes, multiply, normalize, scale, subtract,
} from './math.mjs';
import { number, numbers, ref } from './model.mjs';

// Deeper chains than this occur only where a file refers to itself in a circle.
const MAX_DEPTH = 200;

export function point(model, id) {
  const [x = 0, y = 0, z = 0] = numbers(model.line(id)?.Coordinates);
  return [x, y, z];
}

export function direction(model, id, fallback) {
  const ratios = numbers(model.line(id)?.DirectionRatios);
  if (ratios.length < 2) return fallback;
  return normalize([ratios[0], ratios[1], ratios[2] ?? 0], fallback);
}

/** x made perpendicular to z; another direction where the two are parallel. */
function perpendicular(x, z) {
  const flat = normalize(subtract(x, scale(z, dot(x, z))), null);
  if (flat) return flat;
  const spare = Math.abs(z[0]) < 0.9 ? [1, 0, 0] : [0, 1, 0];
  return normalize(subtract(spare, scale(z, dot(spare, z))), [1, 0, 0]);
}

/** Matrix of an IfcAxis2Placement3D or IfcAxis2Placement2D; identity when there is none. */
export function axisPlacement(model, id) {
  const line = model.line(id);
  if (!line) return IDENTITY;
  const origin = point(model, ref(line.Location));
  const z = line.Axis === undefined ? [0, 0, 1] : direction(model, ref(line.Axis), [0, 0, 1]);
  const x = perpendicular(direction(model, ref(line.RefDirection), [1, 0, 0]), z);
  return fromAxes(x, cross(z, x), z, origin);
}

/** Matrix of an IfcCartesianTransformationOperator and its subtypes. */
export function transformationOperator(model, id) {
  const line = model.line(id);
  if (!line) return IDENTITY;
  const z = direction(model, ref(line.Axis3), [0, 0, 1]);
  const x = perpendicular(direction(model, ref(line.Axis1), [1, 0, 0]), z);
  let y = cross(z, x);
  const wantedY = direction(model, ref(line.Axis2), y);
  if (dot(wantedY, y) < 0) y = scale(y, -1);
  const sx = number(line.Scale) ?? 1;
  const sy = number(line.Scale2) ?? sx;
  const sz = number(line.Scale3) ?? sx;
  return fromAxes(scale(x, sx), scale(y, sy), scale(z, sz), point(model, ref(line.LocalOrigin)));
}

/** World matrices of object placements, computed once each. */
export class Placements {
  #known = new Map();

  constructor(model, warnings) {
    this.model = model;
    this.warnings = warnings;
  }

  /** World matrix of an IfcObjectPlacement; identity when there is none. */
  world(id, depth = 0) {
    if (!id) return IDENTITY;
    const known = this.#known.get(id);
    if (known) return known;
    if (depth > MAX_DEPTH) {
      this.warnings.add('placement-circle', `placement #${id} is placed relative to itself`);
      return IDENTITY;
    }
    const matrix = this.#compute(id, depth);
    this.#known.set(id, matrix);
    return matrix;
  }

  #compute(id, depth) {
    const line = this.model.line(id);
    const name = this.model.className(line);
    if (name === 'IfcLocalPlacement') {
      const parent = this.world(ref(line.PlacementRelTo), depth + 1);
      return multiply(parent, axisPlacement(this.model, ref(line.RelativePlacement)));
    }
    if (name === 'IfcLinearPlacement' && ref(line.CartesianPosition)) {
      return axisPlacement(this.model, ref(line.CartesianPosition));
    }
    this.warnings.add('placement-kind', `placement #${id} (${name || 'missing'}) is not understood`);
    return IDENTITY;
  }
}
