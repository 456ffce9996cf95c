// SPDX-License-Identifier: Apache-2.0
// Drawn parts of a component. Each names how the file describes it and carries its exact solid.

import { block, cylinder } from './solids.mjs';

/** How far a hole that opens a side reaches beyond the body: more than any growth. */
const BEYOND = 1000;

/** The axes of the profile plane of an extrusion along `axis`, right-handed with it. */
export const profileAxes = (axis) => [(axis + 1) % 3, (axis + 2) % 3];

/** Box from x0..x1, y0..y1, z0..z1, drawn as a rectangle extruded along `axis`. */
export function box(axis, [x0, x1], [y0, y1], [z0, z1]) {
  return { draw: 'box', axis, solid: block([x0, y0, z0], [x1, y1, z1]) };
}

/** The same solid drawn as a boundary of six faces. */
export const facetedBox = (...args) => ({ ...box(2, ...args), draw: 'brep' });

/** Round bar between two points that differ in one coordinate. */
export function round(from, to, radius) {
  const axis = [0, 1, 2].find((k) => from[k] !== to[k]);
  return { draw: 'round', axis, solid: cylinder(axis, from, radius, from[axis], to[axis]) };
}

/**
 * Rectangle with corners cut away, extruded along `axis`: L and T pieces. A notch names its
 * corner by the signs of the two profile directions and its size along them.
 */
export function notched(axis, ranges, notches) {
  const part = box(axis, ...ranges);
  const [u, v] = profileAxes(axis);
  const { min, max } = part.solid;
  const at = (su, sv) => notches.find((n) => n.corner[0] === su && n.corner[1] === sv)?.size;
  const outline = [];
  const corner = (su, sv, swap) => {
    const point = [su < 0 ? min[u] : max[u], sv < 0 ? min[v] : max[v]];
    const size = at(su, sv);
    if (!size) return outline.push(point);
    const inner = [point[0] - su * size[0], point[1] - sv * size[1]];
    const [first, last] = [[point[0], inner[1]], [inner[0], point[1]]];
    return outline.push(...(swap ? [last, inner, first] : [first, inner, last]));
  };
  corner(-1, -1, false);
  corner(1, -1, true);
  corner(1, 1, false);
  corner(-1, 1, true);
  const holes = notches.map(({ corner: [su, sv], size }) => {
    const hole = { min: min.map((x) => x - BEYOND), max: max.map((x) => x + BEYOND) };
    if (su < 0) hole.max[u] = min[u] + size[0];
    else hole.min[u] = max[u] - size[0];
    if (sv < 0) hole.max[v] = min[v] + size[1];
    else hole.min[v] = max[v] - size[1];
    return hole;
  });
  return { draw: 'outline', axis, outline, solid: block(min, max, holes) };
}

/** Rectangular frame of a given width around a through opening along `axis`. */
export function frame(axis, ranges, width) {
  const part = box(axis, ...ranges);
  const hole = { min: [...part.solid.min], max: [...part.solid.max] };
  for (const k of profileAxes(axis)) {
    hole.min[k] += width;
    hole.max[k] -= width;
  }
  hole.min[axis] -= BEYOND;
  hole.max[axis] += BEYOND;
  return { draw: 'frame', axis, width, solid: block(part.solid.min, part.solid.max, [hole]) };
}

/**
 * Stair flight along x: stepped above and below, `thickness` measured downward from each tread.
 * `direction` is +1 or -1; `foot` is the height below which nothing is built.
 */
export function flight({ start, direction, treads, going, riser, thickness, y, base, foot }) {
  const end = start + direction * treads * going;
  const low = Math.max(base + riser - thickness, foot);
  const min = [Math.min(start, end), y[0], low];
  const max = [Math.max(start, end), y[1], base + treads * riser];
  const xAt = (i) => start + direction * i * going;
  const under = (i) => Math.max(base + i * riser - thickness, foot);
  const upper = [];
  const lower = [];
  const holes = [];
  const beside = (from, to) => [Math.min(from, to), Math.max(from, to)];
  for (let i = 1; i <= treads; ++i) {
    const top = base + i * riser;
    upper.push([top, xAt(i - 1)], [top, xAt(i)]);
    lower.push([under(i), xAt(i - 1)], [under(i), xAt(i)]);
    const [a0, a1] = beside(start - direction * BEYOND, xAt(i));
    if (i < treads) {
      holes.push({ min: [a0, y[0] - BEYOND, top], max: [a1, y[1] + BEYOND, max[2] + BEYOND] });
    }
    const [b0, b1] = beside(xAt(i - 1), end + direction * BEYOND);
    if (under(i) > low) {
      holes.push({ min: [b0, y[0] - BEYOND, low - BEYOND], max: [b1, y[1] + BEYOND, under(i)] });
    }
  }
  const ring = [...upper, ...lower.reverse()];
  const bends = ring.filter(([z, x], i) => {
    const [pz, px] = ring[(i + ring.length - 1) % ring.length];
    const [nz, nx] = ring[(i + 1) % ring.length];
    return !((pz === z && nz === z) || (px === x && nx === x));
  });
  // In the profile plane of an extrusion along y, which is (z, x), a ring with a positive area
  // runs counter-clockwise.
  const area = bends.reduce((sum, [u, v], i) => {
    const [nu, nv] = bends[(i + 1) % bends.length];
    return sum + u * nv - nu * v;
  }, 0);
  const outline = area > 0 ? bends : bends.reverse();
  return { draw: 'outline', axis: 1, outline, solid: block(min, max, holes) };
}

/** An instance of a shape drawn once for its type, set down at `at` (a z-up shape). */
export const mapped = (typeName, at, solid) => ({ draw: 'mapped', axis: 2, typeName, at, solid });
