// SPDX-License-Identifier: Apache-2.0
// Exact solids (blocks with rectangular holes, cylinders along an axis) and questions about them.
//
// Growing a solid by d moves every face by d along its outward normal with mitred corners: a
// block's box grows by d and its holes shrink by d; a cylinder gets radius + d and length + 2 d.

/** Box with holes cut out of it; a hole that opens a side reaches beyond the box there. */
export const block = (min, max, holes = []) => ({ shape: 'block', min, max, holes });

/** Cylinder along coordinate axis 0, 1 or 2; `centre` holds a point of its axis. */
export const cylinder = (axis, centre, radius, from, to) => ({
  shape: 'cylinder', axis, centre, radius, from: Math.min(from, to), to: Math.max(from, to),
});

const AXES = [0, 1, 2];
const growBox = (box, d) => ({ min: box.min.map((v) => v - d), max: box.max.map((v) => v + d) });
const isEmpty = (box) => AXES.some((k) => box.min[k] >= box.max[k]);

export function grow(solid, d) {
  if (solid.shape === 'cylinder') {
    return { ...solid, radius: solid.radius + d, from: solid.from - d, to: solid.to + d };
  }
  const holes = solid.holes.map((hole) => growBox(hole, -d)).filter((hole) => !isEmpty(hole));
  return { ...solid, ...growBox(solid, d), holes };
}

export function bounds(solid) {
  if (solid.shape === 'block') return { min: [...solid.min], max: [...solid.max] };
  const min = solid.centre.map((c) => c - solid.radius);
  const max = solid.centre.map((c) => c + solid.radius);
  min[solid.axis] = solid.from;
  max[solid.axis] = solid.to;
  return { min, max };
}

export function unite(boxes) {
  return boxes.reduce((a, b) => ({
    min: a.min.map((v, k) => Math.min(v, b.min[k])),
    max: a.max.map((v, k) => Math.max(v, b.max[k])),
  }));
}

const overlap = (a, b) => ({
  min: a.min.map((v, k) => Math.max(v, b.min[k])),
  max: a.max.map((v, k) => Math.min(v, b.max[k])),
});

/** Closed boxes: sharing a face, an edge or a corner counts as meeting. */
const boxesMeet = (a, b) => AXES.every((k) => a.min[k] <= b.max[k] && b.min[k] <= a.max[k]);
const isInside = (inner, outer) =>
  AXES.every((k) => inner.min[k] > outer.min[k] && inner.max[k] < outer.max[k]);

/** The boxes, side by side, that make up a block with holes. */
function cellsOf(solid) {
  if (solid.holes.length === 0) return [solid];
  const cuts = AXES.map((k) => {
    const all = [solid.min[k], solid.max[k], ...solid.holes.flatMap((h) => [h.min[k], h.max[k]])];
    const inner = all.filter((v) => v >= solid.min[k] && v <= solid.max[k]);
    return [...new Set(inner)].sort((a, b) => a - b);
  });
  const cells = [];
  for (let i = 0; i + 1 < cuts[0].length; ++i) {
    for (let j = 0; j + 1 < cuts[1].length; ++j) {
      for (let k = 0; k + 1 < cuts[2].length; ++k) {
        const min = [cuts[0][i], cuts[1][j], cuts[2][k]];
        const max = [cuts[0][i + 1], cuts[1][j + 1], cuts[2][k + 1]];
        const middle = min.map((v, n) => (v + max[n]) / 2);
        const cut = solid.holes.some((hole) =>
          AXES.every((n) => middle[n] > hole.min[n] && middle[n] < hole.max[n]));
        if (!cut) cells.push({ shape: 'block', min, max, holes: [] });
      }
    }
  }
  return cells;
}

/** Whether a solid lies strictly inside one convex piece. */
function isSwallowed(solid, piece) {
  const box = bounds(solid);
  if (piece.shape === 'block') return isInside(box, piece);
  if (box.min[piece.axis] <= piece.from || box.max[piece.axis] >= piece.to) return false;
  const across = AXES.filter((k) => k !== piece.axis);
  if (solid.shape === 'cylinder' && solid.axis === piece.axis) {
    const gap = Math.hypot(...across.map((k) => solid.centre[k] - piece.centre[k]));
    return gap + solid.radius < piece.radius;
  }
  const reach = across.map((k) =>
    Math.max(Math.abs(box.min[k] - piece.centre[k]), Math.abs(box.max[k] - piece.centre[k])));
  return Math.hypot(...reach) < piece.radius;
}

const piecesOf = (solid) => (solid.shape === 'block' ? cellsOf(solid) : [solid]);

export function volume(solid) {
  if (solid.shape === 'cylinder') {
    return Math.PI * solid.radius ** 2 * (solid.to - solid.from);
  }
  const size = (cell) => AXES.reduce((v, k) => v * (cell.max[k] - cell.min[k]), 1);
  return cellsOf(solid).reduce((sum, cell) => sum + size(cell), 0);
}

const gapToRange = (value, from, to) => Math.max(from - value, 0, value - to);

function boxMeetsCylinder(box, cyl) {
  if (box.min[cyl.axis] > cyl.to || box.max[cyl.axis] < cyl.from) return false;
  const gaps = AXES.filter((k) => k !== cyl.axis)
    .map((k) => gapToRange(cyl.centre[k], box.min[k], box.max[k]));
  return Math.hypot(...gaps) <= cyl.radius;
}

function parallelCylindersMeet(a, b) {
  if (a.from > b.to || b.from > a.to) return false;
  const gaps = AXES.filter((k) => k !== a.axis).map((k) => a.centre[k] - b.centre[k]);
  return Math.hypot(...gaps) <= a.radius + b.radius;
}

/**
 * Cuts both by planes across the direction that neither runs along. Such a plane meets each in a
 * rectangle, and the two rectangles meet for the heights in one range per cylinder.
 */
function crossingCylindersMeet(a, b) {
  const height = 3 - a.axis - b.axis;
  const reach = (cyl, other) => {
    const gap = gapToRange(cyl.centre[other.axis], other.from, other.to);
    return cyl.radius < gap ? -1 : Math.sqrt(cyl.radius ** 2 - gap ** 2);
  };
  const reachA = reach(a, b);
  const reachB = reach(b, a);
  if (reachA < 0 || reachB < 0) return false;
  return Math.abs(a.centre[height] - b.centre[height]) <= reachA + reachB;
}

function piecesMeet(a, b) {
  if (!boxesMeet(bounds(a), bounds(b))) return false;
  if (a.shape === 'block' && b.shape === 'block') return true;
  if (a.shape === 'block') return boxMeetsCylinder(a, b);
  if (b.shape === 'block') return boxMeetsCylinder(b, a);
  return a.axis === b.axis ? parallelCylindersMeet(a, b) : crossingCylindersMeet(a, b);
}

/**
 * Where two bodies (lists of solids) grown by their offsets meet: a box around all they share,
 * or null. One lying wholly inside the other does not count, because their surfaces do not meet.
 */
export function meeting(bodyA, offsetA, bodyB, offsetB) {
  const found = [];
  for (const partA of bodyA) {
    const grownA = grow(partA, offsetA);
    for (const partB of bodyB) {
      const grownB = grow(partB, offsetB);
      if (!boxesMeet(bounds(grownA), bounds(grownB))) continue;
      const piecesA = piecesOf(grownA);
      const piecesB = piecesOf(grownB);
      if (piecesB.some((piece) => isSwallowed(grownA, piece))) continue;
      if (piecesA.some((piece) => isSwallowed(grownB, piece))) continue;
      for (const a of piecesA) {
        for (const b of piecesB) {
          if (piecesMeet(a, b)) found.push(overlap(bounds(a), bounds(b)));
        }
      }
    }
  }
  return found.length === 0 ? null : unite(found);
}

function nearestPoint(piece, point) {
  if (piece.shape === 'block') {
    return point.map((v, k) => Math.min(Math.max(v, piece.min[k]), piece.max[k]));
  }
  const nearest = [...piece.centre];
  nearest[piece.axis] = Math.min(Math.max(point[piece.axis], piece.from), piece.to);
  const across = AXES.filter((k) => k !== piece.axis);
  const distance = Math.hypot(...across.map((k) => point[k] - piece.centre[k]));
  const scale = distance <= piece.radius ? 1 : piece.radius / distance;
  for (const k of across) nearest[k] += (point[k] - piece.centre[k]) * scale;
  return nearest;
}

/** Alternating projection onto two convex pieces; it settles on their nearest points. */
function pieceDistance(a, b) {
  const boundsA = bounds(a);
  let onB = nearestPoint(b, boundsA.min.map((v, k) => (v + boundsA.max[k]) / 2));
  let onA = nearestPoint(a, onB);
  let last = Infinity;
  for (let i = 0; i < 2000; ++i) {
    onB = nearestPoint(b, onA);
    onA = nearestPoint(a, onB);
    const now = Math.hypot(...onA.map((v, k) => v - onB[k]));
    if (last - now < 1e-9) break;
    last = now;
  }
  return Math.hypot(...onA.map((v, k) => v - onB[k]));
}

/** Plain distance of two bodies in millimetres, 0 when they touch or overlap. */
export function distance(bodyA, bodyB) {
  const piecesB = bodyB.flatMap(piecesOf);
  return Math.min(...bodyA.flatMap(piecesOf).map((a) =>
    Math.min(...piecesB.map((b) => pieceDistance(a, b)))));
}
