// SPDX-License-Identifier: Apache-2.0
// Property and quantity sets as flat lists of single values.

import { number, ref, refs, text } from './model.mjs';
import { factorFor, measureKind } from './units.mjs';

export const MAX_VALUE_LENGTH = 256;
const CUT_MARK = '\u2026';
const MAX_DEPTH = 5;

/** The text, cut to the limit and marked when it is longer; never inside a surrogate pair. */
export function bounded(value) {
  if (value.length <= MAX_VALUE_LENGTH) return value;
  let end = MAX_VALUE_LENGTH - 1;
  const last = value.charCodeAt(end - 1);
  if (last >= 0xd800 && last <= 0xdbff) --end;
  return value.slice(0, end) + CUT_MARK;
}

const QUANTITY = Object.freeze({
  IfcQuantityLength: ['LengthValue', 'length'],
  IfcQuantityArea: ['AreaValue', 'area'],
  IfcQuantityVolume: ['VolumeValue', 'volume'],
  IfcQuantityCount: ['CountValue', 'number'],
  IfcQuantityWeight: ['WeightValue', 'number'],
  IfcQuantityTime: ['TimeValue', 'number'],
  IfcQuantityNumber: ['NumberValue', 'number'],
});

/** Reads sets by id, each once; a set is a list of { set, name, value, kind, number }. */
export class PropertySets {
  #known = new Map();

  constructor(model, units) {
    this.model = model;
    this.units = units;
  }

  read(setId) {
    let entries = this.#known.get(setId);
    if (!entries) {
      entries = this.#readSet(setId);
      this.#known.set(setId, entries);
    }
    return entries;
  }

  #readSet(setId) {
    const line = this.model.line(setId);
    if (!line) return [];
    const out = [];
    const add = (entry) => out.push({ set: bounded(text(line.Name)), ...entry });
    for (const id of refs(line.HasProperties)) this.#property(id, '', add, 0);
    for (const id of refs(line.Quantities)) this.#quantity(id, '', add, 0);
    return out;
  }

  #property(id, prefix, add, depth) {
    const line = this.model.line(id);
    if (!line || depth > MAX_DEPTH) return;
    const name = bounded(prefix + text(line.Name));
    switch (this.model.className(line)) {
      case 'IfcPropertySingleValue': add({ name, ...this.#value(line.NominalValue, ref(line.Unit)) });
        break;
      case 'IfcPropertyEnumeratedValue': add({ name, ...this.#list(line.EnumerationValues) });
        break;
      case 'IfcPropertyListValue': add({ name, ...this.#list(line.ListValues) });
        break;
      case 'IfcPropertyBoundedValue':
        add({ name, ...this.#list([line.LowerBoundValue, line.UpperBoundValue]) });
        break;
      case 'IfcComplexProperty':
        for (const part of refs(line.HasProperties)) this.#property(part, `${name}.`, add, depth + 1);
        break;
      default:
    }
  }

  #list(values) {
    const texts = (Array.isArray(values) ? values : []).map(text);
    return { value: bounded(texts.join(',')), kind: 'text', number: 0 };
  }

  #value(value, unitId) {
    const plain = bounded(text(value));
    if (value?.name === 'IFCBOOLEAN' || value?.name === 'IFCLOGICAL') {
      return this.#boolean(value, plain);
    }
    const amount = typeof (value?._representationValue ?? value?.value) === 'number' ?
      number(value) : null;
    if (amount === null) return { value: plain, kind: 'text', number: 0 };
    const kind = measureKind(value.name) || 'number';
    return { value: plain, kind, number: this.#convert(amount, kind, unitId) };
  }

  #boolean(value, plain) {
    const known = typeof value.value === 'boolean' || /^[TF]$/.test(plain);
    if (!known) return { value: plain, kind: 'text', number: 0 };
    const isTrue = value.value === true || plain === 'T';
    return { value: isTrue ? 'true' : 'false', kind: 'boolean', number: isTrue ? 1 : 0 };
  }

  #convert(amount, kind, unitId) {
    if (kind === 'number') return amount;
    const converted = amount * factorFor(this.model, this.units, kind, unitId);
    return Number.isFinite(converted) ? converted : 0;
  }

  #quantity(id, prefix, add, depth) {
    const line = this.model.line(id);
    if (!line || depth > MAX_DEPTH) return;
    const name = bounded(prefix + text(line.Name));
    const className = this.model.className(line);
    if (className === 'IfcPhysicalComplexQuantity') {
      for (const part of refs(line.HasQuantities)) this.#quantity(part, `${name}.`, add, depth + 1);
      return;
    }
    const [attribute, kind] = QUANTITY[className] ?? [];
    const amount = attribute ? number(line[attribute]) : null;
    if (amount === null) return;
    const converted = this.#convert(amount, kind, ref(line.Unit));
    add({ name, value: text(line[attribute]), kind, number: converted, quantity: true });
  }
}

/** All entries of a product, then those of its type that the product does not set itself. */
export function propertiesOf(sets, model, relations, id) {
  const own = (relations.propertySets.get(id) ?? []).flatMap((set) => sets.read(set));
  const type = model.line(relations.typeOf.get(id));
  if (!type) return own;
  const set = new Set(own.map((entry) => `${entry.set}\n${entry.name}`));
  const inherited = refs(type.HasPropertySets).flatMap((setId) => sets.read(setId));
  return own.concat(inherited.filter((entry) => !set.has(`${entry.set}\n${entry.name}`)));
}

/** The declared volume under one of the usual quantity names, cubic millimetres, or undefined. */
export function declaredVolume(entries, name) {
  return entries.find((e) => e.quantity && e.kind === 'volume' && e.name === name && e.number > 0)
    ?.number;
}

const DIAMETER_NAMES = [
  'nominaldiameter', 'nominaldiameters', 'nominalsize', 'diameter', 'outsidediameter',
  'outerdiameter', '公称直径', '直径',
];

const plainName = (name) => name.toLowerCase().replace(/[ _-]/g, '');

/** The nominal diameter under the best of its usual names, in millimetres, or undefined. */
export function nominalDiameter(entries) {
  for (const wanted of DIAMETER_NAMES) {
    const found = entries.find(
      (e) => e.kind === 'length' && e.number > 0 && plainName(e.name) === wanted);
    if (found) return found.number;
  }
  return undefined;
}
