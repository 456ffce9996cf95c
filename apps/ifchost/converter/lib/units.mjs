// SPDX-License-Identifier: Apache-2.0
// The file's units as factors to millimetres, their powers, and radians.

import { number, ref, refs, text } from './model.mjs';

const PREFIX = Object.freeze({
  EXA: 1e18, PETA: 1e15, TERA: 1e12, GIGA: 1e9, MEGA: 1e6, KILO: 1e3, HECTO: 1e2, DECA: 1e1,
  DECI: 1e-1, CENTI: 1e-2, MILLI: 1e-3, MICRO: 1e-6, NANO: 1e-9, PICO: 1e-12, FEMTO: 1e-15,
  ATTO: 1e-18,
});

// Millimetres (their powers) in one unit without prefix. The prefix of a square or cubic metre
// belongs to the metre, so it counts with the power.
const SI_BASE = Object.freeze({
  LENGTHUNIT: { name: 'METRE', factor: 1e3, power: 1 },
  AREAUNIT: { name: 'SQUARE_METRE', factor: 1e6, power: 2 },
  VOLUMEUNIT: { name: 'CUBIC_METRE', factor: 1e9, power: 3 },
  PLANEANGLEUNIT: { name: 'RADIAN', factor: 1, power: 1 },
});

// 0.001 * 1000 and the like must be exactly 1 for the usual prefixes.
const round = (value) => Number(value.toPrecision(15));

/** Factor and name of one unit line, or null when it is not one of the kinds above. */
export function unitOf(model, id) {
  const line = model.line(id);
  if (!line) return null;
  const kind = text(line.UnitType);
  const base = SI_BASE[kind];
  if (!base) return null;
  if (model.className(line) === 'IfcSIUnit') {
    const prefix = text(line.Prefix);
    const factor = round(base.factor * (PREFIX[prefix] ?? 1) ** base.power);
    return { kind, factor, name: prefix + (text(line.Name) || base.name) };
  }
  const measure = model.line(ref(line.ConversionFactor));
  const amount = number(measure?.ValueComponent);
  const inner = measure ? unitOf(model, ref(measure.UnitComponent)) : null;
  if (amount === null || !(amount > 0) || !inner) return null;
  return { kind, factor: round(amount * inner.factor), name: text(line.Name) };
}

/** Units of the project; what the file leaves open is metre, its powers, and radian. */
export function readUnits(model, warnings) {
  const units = { length: 1e3, area: 1e6, volume: 1e9, angle: 1, lengthName: 'METRE' };
  const project = model.line(model.ids('IfcProject')[0]);
  const assignment = model.line(ref(project?.UnitsInContext));
  let hasLength = false;
  for (const id of refs(assignment?.Units)) {
    const unit = unitOf(model, id);
    if (!unit) continue;
    if (unit.kind === 'LENGTHUNIT') {
      units.length = unit.factor;
      units.lengthName = unit.name;
      hasLength = true;
    } else if (unit.kind === 'AREAUNIT') units.area = unit.factor;
    else if (unit.kind === 'VOLUMEUNIT') units.volume = unit.factor;
    else units.angle = unit.factor;
  }
  if (!hasLength) {
    warnings.add('no-length-unit', 'the file names no length unit; metre is assumed');
  }
  return units;
}

const KIND_OF_UNIT = Object.freeze({
  LENGTHUNIT: 'length', AREAUNIT: 'area', VOLUMEUNIT: 'volume', PLANEANGLEUNIT: 'angle',
});
const KIND_OF_MEASURE = Object.freeze({
  IFCLENGTHMEASURE: 'length', IFCPOSITIVELENGTHMEASURE: 'length',
  IFCNONNEGATIVELENGTHMEASURE: 'length', IFCAREAMEASURE: 'area', IFCVOLUMEMEASURE: 'volume',
  IFCPLANEANGLEMEASURE: 'angle', IFCPOSITIVEPLANEANGLEMEASURE: 'angle',
});

/** "length", "area", "volume", "angle" or "" for the measure type of a value. */
export const measureKind = (measureType) => KIND_OF_MEASURE[measureType] ?? '';

/** Factor for a value of `kind`; a unit of its own wins over the project's. */
export function factorFor(model, units, kind, unitId) {
  const own = unitId ? unitOf(model, unitId) : null;
  return own && KIND_OF_UNIT[own.kind] === kind ? own.factor : units[kind];
}
