// SPDX-License-Identifier: Apache-2.0

import assert from 'node:assert/strict';
import { test } from 'node:test';

import { StepFile, enumeration, globalId, integer, typed, uuid } from './step.mjs';

const lineOf = (...attributes) => {
  const file = new StepFile();
  file.add('IfcThing', ...attributes);
  return file.lines[0];
};

test('reals keep their point and whole numbers have none', () => {
  assert.equal(lineOf(6000, 0.5, -0, integer(3)), '#1=IFCTHING(6000.,0.5,0.,3);');
  assert.equal(lineOf(1e-6, 1e22), '#1=IFCTHING(0.000001,1.E+22);');
});

test('strings escape quotes and backslashes and write other characters as UTF-16', () => {
  assert.equal(lineOf("a'b\\c"), "#1=IFCTHING('a''b\\\\c');");
  assert.equal(lineOf('SA 送风'), "#1=IFCTHING('SA \\X2\\900198CE\\X0\\');");
});

test('null, lists, enumerations and select values have their own forms', () => {
  assert.equal(lineOf(null, [1, 2], enumeration('AREA'), typed('IfcLabel', 'x')),
    "#1=IFCTHING($,(1.,2.),.AREA.,IFCLABEL('x'));");
});

test('equal shared instances are written once', () => {
  const file = new StepFile();
  assert.equal(file.share('IfcPoint', [1, 2]), file.share('IfcPoint', [1, 2]));
  assert.notEqual(file.share('IfcPoint', [1, 3]), file.share('IfcPoint', [1, 2]));
  assert.equal(file.lines.length, 2);
});

test('a GlobalId is stable and encodes the bits of the hexadecimal id in 22 characters', () => {
  const alphabet = '0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz_$';
  for (const name of ['Wall', 'Door', 'Column F1 1/A']) {
    const id = globalId(name);
    assert.match(id, /^[0-3][0-9A-Za-z_$]{21}$/);
    assert.equal(id, globalId(name));
    const bits = [...id].reduce((sum, c) => sum * 64n + BigInt(alphabet.indexOf(c)), 0n);
    assert.equal(uuid(name).replaceAll('-', ''), bits.toString(16).padStart(32, '0'));
  }
});

test('a name can be given to one instance only', () => {
  const file = new StepFile();
  file.guid('Wall');
  assert.throws(() => file.guid('Wall'), /two instances named "Wall"/);
});
