// SPDX-License-Identifier: Apache-2.0
// Row-major 4x4 matrices and small vectors, as plain arrays of numbers.

export const IDENTITY = Object.freeze([1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1]);

export function multiply(a, b) {
  const out = new Array(16);
  for (let row = 0; row < 4; ++row) {
    for (let column = 0; column < 4; ++column) {
      let sum = 0;
      for (let k = 0; k < 4; ++k) sum += a[row * 4 + k] * b[k * 4 + column];
      out[row * 4 + column] = sum;
    }
  }
  return out;
}

export function transformPoint(m, [x, y, z]) {
  return [
    m[0] * x + m[1] * y + m[2] * z + m[3],
    m[4] * x + m[5] * y + m[6] * z + m[7],
    m[8] * x + m[9] * y + m[10] * z + m[11],
  ];
}

export function transformDirection(m, [x, y, z]) {
  return [
    m[0] * x + m[1] * y + m[2] * z,
    m[4] * x + m[5] * y + m[6] * z,
    m[8] * x + m[9] * y + m[10] * z,
  ];
}

/** The matrix whose columns are the axes and the origin. */
export function fromAxes(x, y, z, origin) {
  return [
    x[0], y[0], z[0], origin[0],
    x[1], y[1], z[1], origin[1],
    x[2], y[2], z[2], origin[2],
    0, 0, 0, 1,
  ];
}

export const add = (a, b) => [a[0] + b[0], a[1] + b[1], a[2] + b[2]];
export const subtract = (a, b) => [a[0] - b[0], a[1] - b[1], a[2] - b[2]];
export const scale = (a, f) => [a[0] * f, a[1] * f, a[2] * f];
export const dot = (a, b) => a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
export const length = (a) => Math.hypot(a[0], a[1], a[2]);
export const cross = (a, b) => [
  a[1] * b[2] - a[2] * b[1],
  a[2] * b[0] - a[0] * b[2],
  a[0] * b[1] - a[1] * b[0],
];

/** The unit vector along `a`, or `fallback` when `a` has no direction. */
export function normalize(a, fallback) {
  const size = length(a);
  return size > 0 && Number.isFinite(size) ? scale(a, 1 / size) : fallback;
}

export function emptyBox() {
  return [Infinity, Infinity, Infinity, -Infinity, -Infinity, -Infinity];
}

export function growBox(box, [x, y, z]) {
  if (x < box[0]) box[0] = x;
  if (y < box[1]) box[1] = y;
  if (z < box[2]) box[2] = z;
  if (x > box[3]) box[3] = x;
  if (y > box[4]) box[4] = y;
  if (z > box[5]) box[5] = z;
}
