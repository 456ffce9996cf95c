// SPDX-License-Identifier: Apache-2.0
// Writes a STEP physical file: instances in order of creation, equal helper instances shared.

import { createHash } from 'node:crypto';

const GUID_ALPHABET = '0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz_$';
const GUID_SEED = 'kyclash sample building';

class Ref {
  constructor(id) {
    this.id = id;
  }
}

class Raw {
  constructor(text) {
    this.text = text;
  }
}

/** The value of an attribute that a subtype derives. */
export const DERIVED = new Raw('*');

export const enumeration = (name) => new Raw(`.${name}.`);
export const integer = (value) => new Raw(String(value));
export const boolean = (value) => new Raw(value ? '.T.' : '.F.');

/** A value of a select type, which STEP writes with the name of its defined type. */
export const typed = (type, value) => new Raw(`${type.toUpperCase()}(${format(value)})`);

function formatReal(value) {
  if (!Number.isFinite(value)) throw new Error(`not a STEP real: ${value}`);
  // Rounding keeps sums such as 0.1 + 0.2 from leaving digits that differ between machines.
  const rounded = Math.round(value * 1e6) / 1e6;
  const text = String(Object.is(rounded, -0) ? 0 : rounded).toUpperCase();
  return /[.E]/.test(text) ? text.replace(/^(-?\d+)E/, '$1.E') : `${text}.`;
}

function formatString(text) {
  let out = '';
  for (const run of text.match(/[\x20-\x7e]+|[^\x20-\x7e]+/g) ?? []) {
    if (run.charCodeAt(0) >= 0x20 && run.charCodeAt(0) <= 0x7e) {
      out += run.replaceAll('\\', '\\\\').replaceAll("'", "''");
      continue;
    }
    let hex = '';
    for (let i = 0; i < run.length; ++i) {
      hex += run.charCodeAt(i).toString(16).toUpperCase().padStart(4, '0');
    }
    out += `\\X2\\${hex}\\X0\\`;
  }
  return `'${out}'`;
}

function format(value) {
  if (value === null || value === undefined) return '$';
  if (value instanceof Ref) return `#${value.id}`;
  if (value instanceof Raw) return value.text;
  if (Array.isArray(value)) return `(${value.map(format).join(',')})`;
  if (typeof value === 'number') return formatReal(value);
  if (typeof value === 'string') return formatString(value);
  throw new Error(`no STEP form for ${value}`);
}

/** The 128 bits behind a name's GlobalId: the same name always gives the same ones. */
function guidBits(name) {
  const digest = createHash('sha256').update(`${GUID_SEED}\n${name}`).digest('hex');
  return BigInt(`0x${digest.slice(0, 32)}`);
}

/** GlobalId in the 22-character form: two bits in the first character, six in each other. */
export function globalId(name) {
  let bits = guidBits(name);
  let text = '';
  for (let i = 0; i < 22; ++i) {
    text = GUID_ALPHABET[Number(bits & 63n)] + text;
    bits >>= 6n;
  }
  return text;
}

/** The same id as 8-4-4-4-12 lower-case hexadecimal digits. */
export function uuid(name) {
  const hex = guidBits(name).toString(16).padStart(32, '0');
  return hex.replace(/^(.{8})(.{4})(.{4})(.{4})(.{12})$/, '$1-$2-$3-$4-$5');
}

export class StepFile {
  constructor() {
    this.lines = [];
    this.shared = new Map();
    this.usedNames = new Set();
  }

  /** Adds one instance; numbers become reals (use `integer` where the schema wants one). */
  add(type, ...attributes) {
    return this.#append(`${type.toUpperCase()}(${attributes.map(format).join(',')})`);
  }

  /** As `add`, but an equal instance written before is used again. */
  share(type, ...attributes) {
    const body = `${type.toUpperCase()}(${attributes.map(format).join(',')})`;
    if (!this.shared.has(body)) this.shared.set(body, this.#append(body));
    return this.shared.get(body);
  }

  /** GlobalId of a rooted instance; a name may be used once. */
  guid(name) {
    if (this.usedNames.has(name)) throw new Error(`two instances named "${name}"`);
    this.usedNames.add(name);
    return globalId(name);
  }

  #append(body) {
    this.lines.push(`#${this.lines.length + 1}=${body};`);
    return new Ref(this.lines.length);
  }

  toString({ fileName, timeStamp, description, author, program }) {
    const header = [
      'ISO-10303-21;',
      'HEADER;',
      `FILE_DESCRIPTION((${formatString(description)}),'2;1');`,
      `FILE_NAME(${formatString(fileName)},${formatString(timeStamp)},(${formatString(author)}),` +
        `(${formatString(author)}),${formatString(program)},${formatString(program)},'none');`,
      "FILE_SCHEMA(('IFC4'));",
      'ENDSEC;',
      'DATA;',
    ];
    return [...header, ...this.lines, 'ENDSEC;', 'END-ISO-10303-21;', ''].join('\n');
  }
}
