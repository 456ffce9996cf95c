// SPDX-License-Identifier: Apache-2.0
import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import crypto from 'node:crypto';
import fs from 'node:fs';
import os from 'node:os';
import path from 'node:path';
import test, { after } from 'node:test';
import { fileURLToPath } from 'node:url';

import { guessEncoding } from '../lib/input.mjs';
import { wellFormed } from '../lib/model.mjs';
import { box, ifcText } from '../test-support/tiny-ifc.mjs';

const SCRIPT = fileURLToPath(new URL('../convert.mjs', import.meta.url));
const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'convert-test-'));
after(() => fs.rmSync(folder, { recursive: true }));

const TEXT = ifcText(box(10, 'IFCWALL', [0, 0, 0], [4, 2, 3], ',$'));

function convert(content, name = 'in.ifc', more = []) {
  const input = path.join(folder, name);
  fs.writeFileSync(input, content);
  const output = path.join(folder, `${name}.kyscene`);
  fs.rmSync(output, { force: true });
  const run = spawnSync(process.execPath,
    [SCRIPT, `--input=${input}`, `--output=${output}`, ...more], { encoding: 'utf8' });
  return { ...run, output, written: fs.existsSync(output) };
}

function documentOf(output) {
  const bytes = fs.readFileSync(output);
  const at = Number(bytes.readBigUInt64LE(24));
  return JSON.parse(bytes.toString('utf8', at, at + Number(bytes.readBigUInt64LE(32))));
}

test('the same file gives the same bytes every time', () => {
  const first = fs.readFileSync(convert(TEXT).output);
  const second = fs.readFileSync(convert(TEXT).output);
  assert.ok(first.equals(second));
});

test('the package says its size and ends in its checksum and the end mark', () => {
  const bytes = fs.readFileSync(convert(TEXT).output);
  assert.equal(Number(bytes.readBigUInt64LE(16)), bytes.length);
  assert.equal(bytes.toString('latin1', bytes.length - 8), 'KYSCEND\n');
  const digest = crypto.createHash('sha256').update(bytes.subarray(0, bytes.length - 40)).digest();
  assert.ok(digest.equals(bytes.subarray(bytes.length - 40, bytes.length - 8)));
});

test('nothing but the package is left behind', () => {
  convert(TEXT, 'alone.ifc');
  const left = fs.readdirSync(folder).filter((name) => name.startsWith('alone'));
  assert.deepEqual(left.sort(), ['alone.ifc', 'alone.ifc.kyscene']);
});

test('every product of the file is in the package, with or without a mesh', () => {
  const { products } = documentOf(convert(TEXT).output);
  assert.deepEqual(products.map((p) => [p.ifcClass, p.meshState]), [['IfcWall', 'meshed']]);
});

for (const [what, content, message] of [
  ['an empty file', '', /not an IFC file/],
  ['a text that is no IFC', 'hello', /not an IFC file/],
  ['a file that is cut short', TEXT.slice(0, -40), /cut short/],
  ['a file that names no schema', TEXT.replace(/FILE_SCHEMA.*;\n/, ''), /no FILE_SCHEMA/],
  ['a file whose texts do not end', TEXT.replace("'IFCWALL-10'", "'IFCWALL-10"), /damaged/],
  ['a file with an empty schema', TEXT.replace("'IFC4'", "''"), /names none/],
  ['a schema that is not known', TEXT.replace("'IFC4'", "'AUTOMOTIVE_DESIGN'"), /schema/],
]) {
  test(`${what} is refused with code 3`, () => {
    const run = convert(content);
    assert.equal(run.status, 3);
    assert.match(run.stderr, /^error /m);
    assert.match(run.stderr, message);
    assert.ok(!run.written);
  });
}

test('an input of more than 2 GiB is refused with code 3', () => {
  const input = path.join(folder, 'large.ifc');
  fs.writeFileSync(input, '');
  fs.truncateSync(input, 2 ** 31 + 1);  // takes no room on the disk
  const run = spawnSync(process.execPath,
    [SCRIPT, `--input=${input}`, `--output=${folder}/x`], { encoding: 'utf8' });
  fs.rmSync(input);
  assert.equal(run.status, 3);
  assert.match(run.stderr, /larger than 2 GiB/);
});

test('an input that is not there is refused with code 3', () => {
  const run = spawnSync(process.execPath,
    [SCRIPT, '--input=/no/such.ifc', `--output=${folder}/x`], { encoding: 'utf8' });
  assert.equal(run.status, 3);
  assert.match(run.stderr, /ENOENT/);
});

test('an output that cannot be written gives code 5', () => {
  const input = path.join(folder, 'in.ifc');
  fs.writeFileSync(input, TEXT);
  const run = spawnSync(process.execPath,
    [SCRIPT, `--input=${input}`, '--output=/no/such/folder/x'], { encoding: 'utf8' });
  assert.equal(run.status, 5);
});

for (const argument of ['--circle-segments=2', '--circle-segments=x', '--odd']) {
  test(`${argument} is wrong use, code 2`, () => {
    assert.equal(convert(TEXT, 'in.ifc', [argument]).status, 2);
  });
}

const NAMED = TEXT.replace("'IFCWALL-10'", "'@'");

test('escaped and plain UTF-8 texts are read', () => {
  assert.equal(documentOf(convert(NAMED.replace('@', '\\X2\\5899\\X0\\')).output).products[0].name,
    '墙');
  assert.equal(documentOf(convert(NAMED.replace('@', '墙')).output).products[0].name, '墙');
});

test('raw two-byte Chinese is recognised, with a warning', () => {
  const [before, after] = NAMED.split('@');
  // 墙体 in GBK.
  const content = Buffer.concat(
    [Buffer.from(before), Buffer.from([0xc7, 0xbd, 0xcc, 0xe5]), Buffer.from(after)]);
  const { products, warnings } = documentOf(convert(content).output);
  assert.equal(products[0].name, '墙体');
  assert.equal(warnings[0].code, 'text-encoding');
});

test('raw western letters are recognised', () => {
  const [before, after] = NAMED.split('@');
  const content = Buffer.from(`${before}Wände, Türen${after}`, 'latin1');
  assert.equal(documentOf(convert(content).output).products[0].name, 'Wände, Türen');
});

test('runs of even length speak for Chinese', () => {
  assert.equal(guessEncoding(Buffer.from([0x41, 0xc7, 0xbd, 0x41])), 'gb18030');
  assert.equal(guessEncoding(Buffer.from([0x41, 0xe4, 0x41])), 'windows-1252');
});

test('a lone half of a surrogate pair does not reach the package', () => {
  assert.equal(wellFormed('a\ud800b\udc00c\u{20000}'), 'a\ufffdb\ufffdc\u{20000}');
});
