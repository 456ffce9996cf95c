// SPDX-License-Identifier: Apache-2.0
// Joins the unshared vertices of a triangle list.

/**
 * Vertices closer than this along each axis become one, in millimetres. It is a hundredth of what
 * the check has to keep, and wide enough to close what the reader's cutting of openings leaves.
 * Parts so large that float32 is coarser than that get a tolerance to match.
 */
const WELD_TOLERANCE_MM = 0.001;

// Cells this much wider than the tolerance make most searches look into a single one.
const CELL_PER_TOLERANCE = 64;

/** Looks up vertices by the cells of a grid. */
class VertexGrid {
  #cells = new Map();

  constructor(positions, tolerance) {
    this.positions = positions;
    this.tolerance = tolerance;
    this.width = tolerance * CELL_PER_TOLERANCE;
  }

  /** The lowest vertex within tolerance of the point, or -1. */
  find(x, y, z) {
    const t = this.tolerance;
    const cell = (value) => Math.floor(value / this.width);
    const [i1, j1, k1] = [cell(x + t), cell(y + t), cell(z + t)];
    let best = -1;
    for (let i = cell(x - t); i <= i1; ++i) {
      for (let j = cell(y - t); j <= j1; ++j) {
        for (let k = cell(z - t); k <= k1; ++k) {
          for (const vertex of this.#cells.get(`${i},${j},${k}`) ?? []) {
            if ((best < 0 || vertex < best) && this.#near(vertex, x, y, z)) best = vertex;
          }
        }
      }
    }
    return best;
  }

  #near(vertex, x, y, z) {
    const p = this.positions;
    const t = this.tolerance;
    return Math.abs(p[vertex * 3] - x) <= t && Math.abs(p[vertex * 3 + 1] - y) <= t &&
      Math.abs(p[vertex * 3 + 2] - z) <= t;
  }

  insert(vertex, x, y, z) {
    const cell = (value) => Math.floor(value / this.width);
    const key = `${cell(x)},${cell(y)},${cell(z)}`;
    const members = this.#cells.get(key);
    if (members) members.push(vertex);
    else this.#cells.set(key, [vertex]);
  }
}

/**
 * First pass: equal float32 positions, by an open-addressing hash table. It is cheap and leaves
 * little to the second one.
 */
function exactGroups(source, stride, count) {
  let slots = 16;
  while (slots < count * 2) slots *= 2;
  const table = new Int32Array(slots).fill(-1);
  const bits = new Int32Array(Float32Array.from(source, (value) => value + 0).buffer);
  const group = new Uint32Array(count);
  const first = [];
  const same = (a, b) => bits[a] === bits[b] && bits[a + 1] === bits[b + 1] &&
    bits[a + 2] === bits[b + 2];
  for (let i = 0; i < count; ++i) {
    const at = i * stride;
    let hash = Math.imul(bits[at], 0x9e3779b1) ^ Math.imul(bits[at + 1], 0x85ebca6b) ^
      Math.imul(bits[at + 2], 0xc2b2ae35);
    hash ^= hash >>> 15;
    let slot = hash & (slots - 1);
    while (table[slot] >= 0 && !same(first[table[slot]] * stride, at)) {
      slot = (slot + 1) & (slots - 1);
    }
    if (table[slot] < 0) {
      table[slot] = first.length;
      first.push(i);
    }
    group[i] = table[slot];
  }
  return { group, first };
}

// Two units in the last place of a float32 coordinate, relative to its size.
const FLOAT32_SLACK = 2 ** -22;

function defaultTolerance(source, stride, unit) {
  let largest = 0;
  for (let at = 0; at + 2 < source.length; at += stride) {
    largest = Math.max(largest, Math.abs(source[at]), Math.abs(source[at + 1]),
      Math.abs(source[at + 2]));
  }
  return Math.max(WELD_TOLERANCE_MM, largest * unit * FLOAT32_SLACK);
}

/**
 * Returns { positions, indices, dropped }: welded float64 positions in millimetres (source times
 * `unit`), triangles without those that have two corners in one vertex (`dropped` of them), and
 * without unused vertices. The result depends on the order of the source only.
 */
export function weld(source, stride, triangles, unit,
  tolerance = defaultTolerance(source, stride, unit)) {
  const { group, first } = exactGroups(source, stride, Math.floor(source.length / stride));
  const positions = [];
  const grid = new VertexGrid(positions, tolerance);
  const merged = first.map((vertex) => {
    const at = vertex * stride;
    const [x, y, z] = [source[at] * unit, source[at + 1] * unit, source[at + 2] * unit];
    const known = grid.find(x, y, z);
    if (known >= 0) return known;
    const index = positions.length / 3;
    positions.push(x + 0, y + 0, z + 0);  // + 0 makes the two zeros one
    grid.insert(index, x, y, z);
    return index;
  });
  return compact(positions, triangles, (vertex) => merged[group[vertex]]);
}

function compact(positions, triangles, vertexOf) {
  const renumbered = new Int32Array(positions.length / 3).fill(-1);
  const kept = [];
  const indices = [];
  let dropped = 0;
  const place = (vertex) => {
    if (renumbered[vertex] < 0) {
      renumbered[vertex] = kept.length / 3;
      kept.push(positions[vertex * 3], positions[vertex * 3 + 1], positions[vertex * 3 + 2]);
    }
    return renumbered[vertex];
  };
  for (let t = 0; t + 2 < triangles.length; t += 3) {
    const corners = [0, 1, 2].map((k) => vertexOf(triangles[t + k]));
    if (corners[0] === corners[1] || corners[1] === corners[2] || corners[2] === corners[0]) {
      ++dropped;
    } else {
      indices.push(...corners.map(place));
    }
  }
  return {
    positions: Float64Array.from(kept),
    indices: Uint32Array.from(indices),
    dropped,
  };
}
