// SPDX-License-Identifier: Apache-2.0
// Works out, from the exact solids alone, every pair that each rule set must report, and holds
// the outcome against the clashes and near misses that were placed on purpose.

import { CATEGORY, RULE_SETS, pairOffsets } from './lib/rules.mjs';
import { bounds, distance, meeting, unite } from './lib/solids.mjs';
import { globalId, uuid } from './lib/step.mjs';

/**
 * How far, in millimetres, a pair must lie from its threshold, so that the facets of a round
 * mesh and single-precision coordinates cannot change the outcome. Pairs marked `exact` are flat
 * faces whose position a mesh holds exactly; touching flat faces lie 4 mm from a tolerance of
 * 2 mm a side, so the margin there is a little less.
 */
const MARGIN = { builtin: 5, spacing: 5, tolerance: 3.5 };

const bodyOf = (component) => component.parts.map((part) => part.solid);
const pairKey = (a, b) => [a.name, b.name].sort().join(' | ');
const round1 = (value) => Math.round(value * 10) / 10;
const roundBox = (box) => [...box.min, ...box.max].map(round1);

function* pairs(components) {
  for (let i = 0; i < components.length; ++i) {
    for (let j = i + 1; j < components.length; ++j) yield [components[i], components[j]];
  }
}

/** Components that belong together are never tested: a filling and its host, joined ports. */
function relatedPairs(building) {
  const byName = building.byName;
  const keys = new Set(building.connections.map(({ a, b }) => pairKey(a, b)));
  for (const component of building.components) {
    if (component.fills) keys.add(pairKey(component, byName.get(component.fills.host)));
    if (!component.assembly) continue;
    for (const other of building.components) {
      if (other.assembly === component.assembly) keys.add(pairKey(component, other));
    }
  }
  return keys;
}

function outcome(ruleName, a, b, isExact) {
  const pair = pairOffsets(RULE_SETS[ruleName], a, b);
  if (!pair) return null;
  const [bodyA, bodyB] = [bodyOf(a), bodyOf(b)];
  const region = meeting(bodyA, pair[0], bodyB, pair[1]);
  const margin = MARGIN[ruleName];
  const firm = [-margin, margin].every((d) => {
    const part = d / 2;
    const other = meeting(bodyA, pair[0] + part, bodyB, pair[1] + part);
    return (other === null) === (region === null);
  });
  if (!firm && !isExact) {
    throw new Error(`${a.name} / ${b.name}: within ${margin} mm of its threshold (${ruleName})`);
  }
  return region && { offsets: pair, region: roundBox(region) };
}

const isFar = (a, b) => [0, 1, 2].some((k) =>
  a.box.min[k] > b.box.max[k] + 450 || b.box.min[k] > a.box.max[k] + 450);

/** Every pair that some rule set reports, as { a, b, reports } in the order of the building. */
function findPairs(building) {
  const exact = new Set(building.planned.concat(building.nearMisses).filter((p) => p.exact)
    .map((p) => [p.a, p.b].sort().join(' | ')));
  const related = relatedPairs(building);
  const all = building.components.map((component) =>
    ({ component, box: unite(bodyOf(component).map(bounds)) }));
  const found = new Map();
  for (const [first, second] of pairs(all)) {
    if (isFar(first, second)) continue;
    const [a, b] = [first.component, second.component];
    const key = pairKey(a, b);
    if (related.has(key)) continue;
    const reports = {};
    for (const name of Object.keys(RULE_SETS)) {
      const report = outcome(name, a, b, exact.has(key));
      if (report) reports[name] = report;
    }
    if (Object.keys(reports).length > 0) found.set(key, { a, b, reports });
  }
  return found;
}

function checkPlan(building, found) {
  const planned = new Set();
  for (const plan of building.planned) {
    const key = [plan.a, plan.b].sort().join(' | ');
    if (planned.has(key)) throw new Error(`${plan.name}: the pair is planned twice`);
    planned.add(key);
    const got = Object.keys(found.get(key)?.reports ?? {}).join(' ');
    if (got !== plan.reportedBy.join(' ')) {
      throw new Error(`${plan.name}: meant for "${plan.reportedBy.join(' ')}", is "${got}"`);
    }
  }
  for (const [key, { reports }] of found) {
    if (!planned.has(key)) {
      throw new Error(`not planned: ${key} (${Object.keys(reports).join(' ')})`);
    }
  }
}

function checkedDistance(building, { name, a, b, gap }) {
  const [one, other] = [building.byName.get(a), building.byName.get(b)];
  if (!one || !other) throw new Error(`${name}: no component "${one ? b : a}"`);
  const actual = round1(distance(bodyOf(one), bodyOf(other)));
  if (Math.abs(actual - gap) > 0.05) {
    throw new Error(`${name}: meant to be ${gap} mm apart, is ${actual} mm`);
  }
  return actual;
}

const endOf = (component) => ({
  guid: globalId(component.name),
  name: component.name,
  category: CATEGORY[component.kind].join('/'),
  floor: component.storey,
});

function describeClash(building, found, plan) {
  const a = building.byName.get(plan.a);
  const b = building.byName.get(plan.b);
  const gap = checkedDistance(building, plan);
  const { reports } = found.get(pairKey(a, b));
  const swapped = found.get(pairKey(a, b)).a !== a;
  const rules = {};
  for (const [name, { offsets, region }] of Object.entries(reports)) {
    rules[name] = { offsets: swapped ? [...offsets].reverse() : offsets, region };
  }
  return {
    name: plan.name,
    a: endOf(a),
    b: endOf(b),
    kind: gap === 0 ? 'hard' : 'clearance',
    gap,
    floors: [...new Set([a.storey, b.storey])],
    region: rules[Object.keys(rules)[0]].region,
    builtin: 'builtin' in rules,
    rules,
    why: plan.why,
  };
}

const describeMiss = (building, plan) => ({
  name: plan.name,
  a: endOf(building.byName.get(plan.a)),
  b: endOf(building.byName.get(plan.b)),
  gap: checkedDistance(building, plan),
  why: plan.why,
});

function describeComponent(component) {
  const description = {
    guid: globalId(component.name),
    uuid: uuid(component.name),
    name: component.name,
    ifcClass: component.ifcClass,
    category: CATEGORY[component.kind].join('/'),
    floor: component.storey,
    box: roundBox(unite(bodyOf(component).map(bounds))),
  };
  if (component.diameter) description.nominalDiameter = component.diameter;
  return description;
}

/** The whole expected file as a plain object; throws when plan and calculation disagree. */
export function expectedClashes(building) {
  const found = findPairs(building);
  checkPlan(building, found);
  const rules = Object.entries(RULE_SETS).map(([name, { text, scope }]) => [name, { text, scope }]);
  return {
    units: 'millimetre',
    ruleSets: Object.fromEntries(rules),
    floors: building.storeys.map(({ name, elevation }) => ({ name, elevation })),
    clashes: building.planned.map((plan) => describeClash(building, found, plan)),
    nearMisses: building.nearMisses.map((plan) => describeMiss(building, plan)),
    notChecked: building.notChecked.map(({ name, ifcClass, why }) =>
      ({ guid: globalId(name), name, ifcClass, why })),
    components: building.components.map(describeComponent),
  };
}
