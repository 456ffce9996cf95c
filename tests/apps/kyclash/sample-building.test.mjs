// SPDX-License-Identifier: Apache-2.0
// Checks the sample building with the built-in rules and compares what it finds with the clashes
// that the building was constructed to have. The command's path comes in the variable KYCLASH.
import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { mkdtempSync, readFileSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { after, before, test } from 'node:test';
import { fileURLToPath } from 'node:url';

const samples = fileURLToPath(new URL('../../../samples/', import.meta.url));
const expected = JSON.parse(readFileSync(join(samples, 'expected-clashes.json'), 'utf8'));
const pairKey = (one, other) => [one.guid, other.guid].sort().join(' ');

let cache;
let report;

before(() => {
  cache = mkdtempSync(join(tmpdir(), 'kyclash-sample-'));
  report = check(['--circle-segments', '24']);
});
after(() => rmSync(cache, { recursive: true, force: true }));

function check(options) {
  const model = join(samples, 'building.ifc');
  const fixed = ['--rules', 'built-in', '--json', '--cache-dir', cache];
  const args = ['check', model, ...fixed, ...options];
  return JSON.parse(execFileSync(process.env.KYCLASH, args, { encoding: 'utf8' }));
}

const foundClashes = () => report.floors.flatMap((floor) => floor.clashes);
const planned = expected.clashes.filter((clash) => clash.rules.builtin);

test('finds exactly the planned clashes', () => {
  assert.ok(planned.length >= 10, 'the plan has clashes to find');
  const want = planned.map((clash) => pairKey(clash.a, clash.b)).sort();
  const found = foundClashes()
    .map((clash) => pairKey(clash.main, clash.second))
    .sort();
  assert.deepEqual(found, want);
});

test('puts every clash point inside the planned region', () => {
  const byPair = new Map(planned.map((clash) => [pairKey(clash.a, clash.b), clash]));
  for (const clash of foundClashes()) {
    const { name, rules } = byPair.get(pairKey(clash.main, clash.second));
    clash.point.forEach((coordinate, axis) => {
      // Positions are written with two decimals.
      const low = rules.builtin.region[axis] - 0.01;
      const high = rules.builtin.region[axis + 3] + 0.01;
      assert.ok(coordinate >= low && coordinate <= high, `${name}: ${clash.point}`);
    });
  }
});

test('gives the components of every clash the planned category', () => {
  const category = new Map(planned.flatMap(({ a, b }) => [a, b]).map((c) => [c.guid, c.category]));
  for (const { main, second } of foundClashes()) {
    assert.equal(main.category, category.get(main.guid));
    assert.equal(second.category, category.get(second.guid));
  }
});

test('accounts for every product', () => {
  for (const model of report.models) {
    const skipped = Object.values(model.skipped).reduce((sum, count) => sum + count, 0);
    assert.equal(model.checked + skipped, model.products);
  }
});

test('says the same on a second run from the cache', () => {
  const again = check(['--circle-segments', '24']);
  assert.deepEqual(again.floors, report.floors);
});

test('checks one floor only when asked to', () => {
  const upper = check(['--floor', 'F2']);
  const wanted = planned.filter(({ a, b }) => a.floor === 'F2' || b.floor === 'F2');
  const found = upper.floors.flatMap((floor) => floor.clashes);
  assert.deepEqual(
    found.map((clash) => pairKey(clash.main, clash.second)).sort(),
    wanted.map((clash) => pairKey(clash.a, clash.b)).sort(),
  );
});

function failure(args) {
  try {
    execFileSync(process.env.KYCLASH, args, { stdio: 'pipe', encoding: 'utf8' });
  } catch (error) {
    return error;
  }
  return assert.fail('the command succeeded');
}

test('ends with 1 and names a file that cannot be read', () => {
  const { status, stderr } = failure(['check', '/no/such/model.ifc', '--cache-dir', cache]);
  assert.equal(status, 1);
  assert.match(stderr, /\/no\/such\/model\.ifc/);
});

test('ends with 2 for wrong use and unknown floors', () => {
  assert.equal(failure(['check']).status, 2);
  assert.equal(failure(['check', '--no-such-option', 'x.ifc']).status, 2);
  const model = join(samples, 'building.ifc');
  const { status, stderr } = failure(['check', model, '--floor', 'F9', '--cache-dir', cache]);
  assert.equal(status, 2);
  assert.match(stderr, /F9[\s\S]*F1/);
});
