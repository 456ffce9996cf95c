// SPDX-License-Identifier: Apache-2.0
// Meshes of products: read, converted to IFC axes and millimetres, welded, shared by content.

import crypto from 'node:crypto';

import { emptyBox, growBox, multiply, transformPoint } from './math.mjs';
import { weld } from './weld.mjs';

// Vertices come as x, y, z and a normal.
const VERTEX_STRIDE = 6;

// The reader keeps every geometry that it made. Past this many bytes its cache is dropped, so that
// memory stays bounded however large the model is.
const CACHE_BYTES = 256 * 1024 * 1024;

// The reader's world is y-up: its x, y, z are x, z, -y here.
const FROM_Y_UP = Object.freeze([1, 0, 0, 0, 0, 0, -1, 0, 0, 1, 0, 0, 0, 0, 0, 1]);

/**
 * Row-major matrix from mesh millimetres to world millimetres, out of the reader's column-major
 * y-up one in file units of `unit` millimetres.
 */
export function instanceTransform(flat, unit) {
  const rows = new Array(16);
  for (let row = 0; row < 4; ++row) {
    for (let column = 0; column < 4; ++column) rows[row * 4 + column] = flat[column * 4 + row];
  }
  const turned = multiply(FROM_Y_UP, rows).map((value) => value + 0);
  for (const at of [3, 7, 11]) turned[at] *= unit;
  turned.splice(12, 4, 0, 0, 0, 1);
  return turned;
}

/** Signed volume of a closed mesh; for an open one it depends on where the frame's origin is. */
export function meshVolume(positions, indices) {
  let sum = 0;
  for (let t = 0; t < indices.length; t += 3) {
    const [a, b, c] = [indices[t] * 3, indices[t + 1] * 3, indices[t + 2] * 3];
    sum += positions[a] * (positions[b + 1] * positions[c + 2] - positions[b + 2] * positions[c + 1])
      + positions[a + 1] * (positions[b + 2] * positions[c] - positions[b] * positions[c + 2])
      + positions[a + 2] * (positions[b] * positions[c + 1] - positions[b + 1] * positions[c]);
  }
  return sum / 6;
}

/** Whether every edge is used as often in one direction as in the other. */
export function isClosed(indices) {
  const balance = new Map();
  for (let t = 0; t < indices.length; t += 3) {
    for (let k = 0; k < 3; ++k) {
      const [a, b] = [indices[t + k], indices[t + ((k + 1) % 3)]];
      const [key, step] = a < b ? [a * 2 ** 26 + b, 1] : [b * 2 ** 26 + a, -1];
      const value = (balance.get(key) ?? 0) + step;
      if (value === 0) balance.delete(key);
      else balance.set(key, value);
    }
  }
  return balance.size === 0;
}

const determinant = (m) =>
  m[0] * (m[5] * m[10] - m[6] * m[9]) - m[1] * (m[4] * m[10] - m[6] * m[8]) +
  m[2] * (m[4] * m[9] - m[5] * m[8]);

/** Meshes of one file. Equal meshes are stored once, wherever they occur. */
export class Geometries {
  #byContent = new Map();
  #readBytes = 0;

  constructor(model, unit) {
    this.model = model;
    this.unit = unit;
    this.meshes = []; // { positions, indices, box, volume, closed }
  }

  /**
   * Reads a product's mesh as { instances, box, volume, closed, dropped }; `instances` are
   * { geometry, transform }. Throws what the reader throws.
   */
  read(productId) {
    const { api, handle } = this.model;
    // Unscaled, because units are ours to apply: the reader's own factor has no say then.
    const flatMesh = api.GetFlatMesh(handle, productId, false);
    const result = { instances: [], box: emptyBox(), volume: 0, closed: true, dropped: 0 };
    try {
      for (let i = 0; i < flatMesh.geometries.size(); ++i) {
        this.#addInstance(flatMesh.geometries.get(i), result);
      }
    } finally {
      flatMesh.geometries.delete?.();
    }
    this.#limitMemory();
    return result;
  }

  #addInstance(placed, result) {
    const { geometry, dropped } = this.#geometry(placed.geometryExpressID);
    result.dropped += dropped;
    if (geometry < 0) return;
    const transform = instanceTransform(placed.flatTransformation, this.unit);
    if (!transform.every(Number.isFinite)) throw new Error('a placement is not finite');
    const mesh = this.meshes[geometry];
    for (let i = 0; i < mesh.positions.length; i += 3) {
      const p = mesh.positions;
      growBox(result.box, transformPoint(transform, [p[i], p[i + 1], p[i + 2]]));
    }
    // With its sign: where a transform mirrors, the reader has turned the triangles over before.
    result.volume += mesh.volume * determinant(transform);
    result.closed &&= mesh.closed;
    result.instances.push({ geometry, transform });
  }

  /**
   * Index of the mesh that now goes by the reader's geometry id, or -1 when it has no triangle.
   * The id alone does not tell: a wall with openings keeps the id of its uncut body.
   */
  #geometry(id) {
    const { api, handle } = this.model;
    const geometry = api.GetGeometry(handle, id);
    try {
      const vertices = api.GetVertexArray(geometry.GetVertexData(), geometry.GetVertexDataSize());
      const triangles = api.GetIndexArray(geometry.GetIndexData(), geometry.GetIndexDataSize());
      this.#readBytes += vertices.byteLength + triangles.byteLength;
      return this.#shared(vertices, triangles);
    } finally {
      geometry.delete();
    }
  }

  #shared(vertices, triangles) {
    const bytes = (array) => Buffer.from(array.buffer, array.byteOffset, array.byteLength);
    const hash = crypto.createHash('sha256')
      .update(String(vertices.length)).update(bytes(vertices)).update(bytes(triangles));
    const key = hash.digest('base64');
    let known = this.#byContent.get(key);
    if (!known) {
      known = this.#store(vertices, triangles);
      this.#byContent.set(key, known);
    }
    return known;
  }

  #store(vertices, triangles) {
    if (!vertices.every(Number.isFinite)) throw new Error('a vertex is not finite');
    const vertexCount = Math.floor(vertices.length / VERTEX_STRIDE);
    if (!triangles.every((index) => index < vertexCount)) {
      throw new Error('a triangle has a corner that does not exist');
    }
    const { positions, indices, dropped } = weld(vertices, VERTEX_STRIDE, triangles, this.unit);
    if (indices.length === 0) return { geometry: -1, dropped };
    const box = emptyBox();
    for (let i = 0; i < positions.length; i += 3) {
      growBox(box, [positions[i], positions[i + 1], positions[i + 2]]);
    }
    const volume = meshVolume(positions, indices);
    this.meshes.push({ positions, indices, box, volume, closed: isClosed(indices) });
    return { geometry: this.meshes.length - 1, dropped };
  }

  #limitMemory() {
    if (this.#readBytes < CACHE_BYTES) return;
    this.model.api.ResetCache(this.model.handle);
    this.#readBytes = 0;
  }
}
