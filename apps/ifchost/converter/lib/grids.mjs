// SPDX-License-Identifier: Apache-2.0
// Axes of IfcGrid in world millimetres.

import { curveSegments, transformSegments } from './curves.mjs';
import { scale } from './math.mjs';
import { ref, refs, text } from './model.mjs';

function inMillimetres(segment, mm) {
  const out = { kind: segment.kind };
  for (const key of ['start', 'end', 'middle', 'center']) {
    if (segment[key]) out[key] = scale(segment[key], mm);
  }
  if (segment.kind === 'arc') out.radius = segment.radius * mm;
  return out;
}

function readAxis(model, axisId, family, world, units, warnings, gridId) {
  const line = model.line(axisId);
  const name = text(line?.AxisTag);
  const segments = curveSegments(model, ref(line?.AxisCurve), units.angle);
  if (segments.length === 0) {
    const kind = model.className(model.line(ref(line?.AxisCurve))) || 'missing curve';
    warnings.add('grid-axis', `grid axis "${name}" left out: ${kind}`, gridId);
    return null;
  }
  // Placements are rigid, so radii stay.
  const placed = transformSegments(segments, world, 1);
  return { name, family, segments: placed.map((s) => inMillimetres(s, units.length)) };
}

/** All grids as { product, axes } by express id of the grid. */
export function readGrids(model, placements, units, warnings) {
  const grids = [];
  for (const line of model.lines('IfcGrid')) {
    const world = placements.world(ref(line.ObjectPlacement));
    const axes = [];
    for (const family of ['U', 'V', 'W']) {
      for (const id of refs(line[`${family}Axes`])) {
        const axis = readAxis(model, id, family, world, units, warnings, line.expressID);
        if (axis) axes.push(axis);
      }
    }
    grids.push({ product: line.expressID, axes });
  }
  return grids;
}
