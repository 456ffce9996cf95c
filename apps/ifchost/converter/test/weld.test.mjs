// SPDX-License-Identifier: Apache-2.0
import assert from 'node:assert/strict';
import test from 'node:test';

import { isClosed, meshVolume } from '../lib/geometry.mjs';
import { weld } from '../lib/weld.mjs';

/** Triangles of a unit cube, every corner a vertex of its own. */
function unsharedCube(offset = 0) {
  const faces = [
    [[0, 0, 0], [0, 1, 0], [1, 1, 0], [1, 0, 0]], [[0, 0, 1], [1, 0, 1], [1, 1, 1], [0, 1, 1]],
    [[0, 0, 0], [1, 0, 0], [1, 0, 1], [0, 0, 1]], [[0, 1, 0], [0, 1, 1], [1, 1, 1], [1, 1, 0]],
    [[0, 0, 0], [0, 0, 1], [0, 1, 1], [0, 1, 0]], [[1, 0, 0], [1, 1, 0], [1, 1, 1], [1, 0, 1]],
  ];
  const corners = faces.flatMap(([a, b, c, d]) => [a, b, c, a, c, d]);
  const source = Float32Array.from(corners.flatMap((corner) => corner.map((v) => v + offset)));
  return { source, triangles: Uint32Array.from(corners.keys()) };
}

test('an unshared cube gets eight vertices and is closed', () => {
  const { source, triangles } = unsharedCube();
  const mesh = weld(source, 3, triangles, 1000);
  assert.equal(mesh.positions.length, 24);
  assert.equal(mesh.indices.length, 36);
  assert.equal(mesh.dropped, 0);
  assert.ok(isClosed(mesh.indices));
  assert.equal(meshVolume(mesh.positions, mesh.indices), 1e9);
});

test('the volume does not depend on where a closed mesh lies', () => {
  const { source, triangles } = unsharedCube(16);
  const mesh = weld(source, 3, triangles, 1);
  assert.ok(Math.abs(meshVolume(mesh.positions, mesh.indices) - 1) < 1e-9);
});

test('a mesh with a missing triangle is open', () => {
  const { source, triangles } = unsharedCube();
  assert.ok(!isClosed(weld(source, 3, triangles.slice(3), 1).indices));
});

test('vertices within the tolerance become one, those beyond it do not', () => {
  const source = Float32Array.from([0, 0, 0, 1, 0, 0, 0, 1, 0, 1.0005, 0, 0, 1, 1, 0, 0, 1.002, 0]);
  const mesh = weld(source, 3, Uint32Array.from([0, 1, 2, 3, 4, 5]), 1, 0.001);
  assert.equal(mesh.positions.length / 3, 5);
  assert.equal(mesh.indices[3], mesh.indices[1]);
  assert.notEqual(mesh.indices[5], mesh.indices[2]);
});

test('vertices on both sides of a cell border are joined', () => {
  // Cells are 64 tolerances wide, so a border is at 64.
  const source = Float32Array.from([0, 0, 0, 63.75, 0, 0, 0, 9, 0, 64.25, 0, 0, 64, 9, 0, 0, 9, 0]);
  const mesh = weld(source, 3, Uint32Array.from([0, 1, 2, 3, 4, 5]), 1, 1);
  assert.equal(mesh.indices[3], mesh.indices[1]);
});

test('a triangle with two corners in one vertex is dropped and counted', () => {
  const source = Float32Array.from([0, 0, 0, 5, 0, 0, 0, 5, 0, 5, 0, 0]);
  const mesh = weld(source, 3, Uint32Array.from([0, 1, 2, 1, 3, 0]), 1);
  assert.equal(mesh.dropped, 1);
  assert.equal(mesh.indices.length, 3);
});

test('vertices that no triangle uses are left out', () => {
  const source = Float32Array.from([9, 9, 9, 0, 0, 0, 1, 0, 0, 0, 1, 0]);
  const mesh = weld(source, 3, Uint32Array.from([1, 2, 3]), 1);
  assert.deepEqual([...mesh.indices], [0, 1, 2]);
  assert.deepEqual([...mesh.positions.slice(0, 3)], [0, 0, 0]);
});

test('the two zeros are one position', () => {
  const source = Float32Array.from([0, 0, 0, 1, 0, 0, 0, 1, 0, -0, -0, -0, 0, 1, 0, 0, 0, 1]);
  const mesh = weld(source, 3, Uint32Array.from([0, 1, 2, 3, 4, 5]), 1);
  assert.equal(mesh.indices[3], 0);
  assert.ok(mesh.positions.every((v) => !Object.is(v, -0)));
});

test('a part of a hundred metres is welded as coarsely as float32 makes it', () => {
  const far = Math.fround(50000);
  const next = Math.fround(50000.004);
  assert.notEqual(far, next);
  const source = Float32Array.from([0, 0, 0, far, 0, 0, 0, 9, 0, next, 0, 0, far, 9, 0, 0, 9, 0]);
  const mesh = weld(source, 3, Uint32Array.from([0, 1, 2, 3, 4, 5]), 1);
  assert.equal(mesh.indices[3], mesh.indices[1]);
});
