// SPDX-License-Identifier: Apache-2.0
// Relations between products, and what follows from them: parents, storeys, systems.

import { ref, refs, text } from './model.mjs';

// Deeper nesting than this occurs only where a file refers to itself in a circle.
const MAX_DEPTH = 100;

function pushTo(map, key, value) {
  const list = map.get(key);
  if (list) list.push(value);
  else map.set(key, [value]);
}

/** Express-id relations of a whole file. */
export function readRelations(model) {
  const relations = {
    container: new Map(), // product -> spatial element that contains it
    referencedIn: new Map(), // product -> first spatial element that references it
    whole: new Map(), // part -> aggregate or nest
    wholeKind: new Map(), // part -> "aggregate" or "nest"
    host: new Map(), // opening -> element
    opening: new Map(), // filling -> opening
    voids: [],
    fills: [],
    coverings: [],
    typeOf: new Map(), // product -> type object
    propertySets: new Map(), // product -> ids of property and quantity sets
    materials: new Map(), // product or type -> material definitions
    groups: new Map(), // product -> groups
  };
  readDecomposition(model, relations);
  readOpenings(model, relations);
  readDefinitions(model, relations);
  readGroups(model, relations);
  return relations;
}

function readDecomposition(model, relations) {
  for (const line of model.lines('IfcRelContainedInSpatialStructure')) {
    for (const id of refs(line.RelatedElements)) {
      relations.container.set(id, ref(line.RelatingStructure));
    }
  }
  for (const line of model.lines('IfcRelReferencedInSpatialStructure')) {
    for (const id of refs(line.RelatedElements)) {
      if (!relations.referencedIn.has(id)) {
        relations.referencedIn.set(id, ref(line.RelatingStructure));
      }
    }
  }
  const decompose = (className, kind) => {
    for (const line of model.lines(className)) {
      for (const id of refs(line.RelatedObjects)) {
        if (relations.whole.has(id)) continue;
        relations.whole.set(id, ref(line.RelatingObject));
        relations.wholeKind.set(id, kind);
      }
    }
  };
  decompose('IfcRelAggregates', 'aggregate');
  decompose('IfcRelNests', 'nest');
}

function readOpenings(model, relations) {
  for (const line of model.lines('IfcRelVoidsElement')) {
    const [opening, host] = [ref(line.RelatedOpeningElement), ref(line.RelatingBuildingElement)];
    relations.host.set(opening, host);
    relations.voids.push([opening, host, line.expressID]);
  }
  for (const line of model.lines('IfcRelFillsElement')) {
    const [opening, filling] = [ref(line.RelatingOpeningElement), ref(line.RelatedBuildingElement)];
    relations.opening.set(filling, opening);
    relations.fills.push([opening, filling, line.expressID]);
  }
  for (const line of model.lines('IfcRelCoversBldgElements')) {
    for (const id of refs(line.RelatedCoverings)) {
      relations.coverings.push([ref(line.RelatingBuildingElement), id, line.expressID]);
    }
  }
}

function readDefinitions(model, relations) {
  for (const line of model.lines('IfcRelDefinesByType')) {
    for (const id of refs(line.RelatedObjects)) relations.typeOf.set(id, ref(line.RelatingType));
  }
  for (const line of model.lines('IfcRelDefinesByProperties')) {
    const definition = line.RelatingPropertyDefinition;
    const sets = Array.isArray(definition) ? refs(definition) : [ref(definition)];
    for (const id of refs(line.RelatedObjects)) {
      for (const set of sets) pushTo(relations.propertySets, id, set);
    }
  }
  for (const line of model.lines('IfcRelAssociatesMaterial')) {
    for (const id of refs(line.RelatedObjects)) {
      pushTo(relations.materials, id, ref(line.RelatingMaterial));
    }
  }
}

// Groups of loads and results are analysis data, assets and inventories are facility management.
const NO_SYSTEMS = new Set([
  'IfcStructuralLoadGroup', 'IfcStructuralLoadCase', 'IfcStructuralResultGroup',
  'IfcStructuralAnalysisModel', 'IfcZone', 'IfcAsset', 'IfcInventory', 'IfcCondition',
]);

function readGroups(model, relations) {
  for (const line of model.lines('IfcRelAssignsToGroup')) {
    const group = ref(line.RelatingGroup);
    if (NO_SYSTEMS.has(model.className(model.line(group)))) continue;
    for (const id of refs(line.RelatedObjects)) pushTo(relations.groups, id, group);
  }
}

/** The systems that are used, as records, and their indices by express id. */
export function readSystems(model, relations) {
  const ids = [...new Set([...relations.groups.values()].flat())].sort((a, b) => a - b);
  const systems = [];
  const indexOf = new Map();
  for (const id of ids) {
    const line = model.line(id);
    if (!line) continue;
    indexOf.set(id, systems.length);
    systems.push({
      expressId: id,
      guid: text(line.GlobalId),
      ifcClass: model.className(line),
      name: text(line.Name),
      longName: text(line.LongName),
      objectType: text(line.ObjectType),
      predefinedType: definedType(line.PredefinedType),
    });
  }
  return { systems, indexOf };
}

/** A predefined type, with "says nothing" as "". */
export function definedType(value) {
  const type = text(value);
  return type === 'NOTDEFINED' ? '' : type;
}

/** The first thing on the way up from `id` (itself first) for which `found` gives a value. */
export function searchUp(relations, id, found) {
  let at = id;
  for (let depth = 0; at && depth < MAX_DEPTH; ++depth) {
    const value = found(at);
    if (value !== undefined) return value;
    at = relations.container.get(at) ?? relations.whole.get(at) ?? relations.host.get(at) ??
      relations.opening.get(at) ?? relations.referencedIn.get(at);
  }
  return undefined;
}

/** Groups of a product, those of the wholes that it belongs to included. */
export function groupsOf(relations, id) {
  const out = [];
  let at = id;
  for (let depth = 0; at && depth < MAX_DEPTH; ++depth) {
    for (const group of relations.groups.get(at) ?? []) {
      if (!out.includes(group)) out.push(group);
    }
    at = relations.whole.get(at);
  }
  return out;
}

/** Ports with their elements and flow directions, from either way of attaching them. */
export function readPorts(model, relations) {
  const elementOf = new Map();
  for (const line of model.lines('IfcRelConnectsPortToElement')) {
    elementOf.set(ref(line.RelatingPort), ref(line.RelatedElement));
  }
  const ports = [];
  for (const line of model.lines('IfcPort')) {
    const element = elementOf.get(line.expressID) ?? relations.whole.get(line.expressID);
    if (!element) continue;
    elementOf.set(line.expressID, element);
    const flowDirection = definedType(line.FlowDirection);
    ports.push({ port: line.expressID, element, flowDirection });
  }
  return { ports, elementOf };
}

/** Connected pairs as { first, second, kind, relation } of express ids. */
export function readConnections(model, elementOf) {
  const out = [];
  const add = (first, second, kind, relation) => {
    if (first !== second) out.push({ first, second, kind, relation });
  };
  for (const line of model.lines('IfcRelConnectsPorts')) {
    const [a, b] = [ref(line.RelatingPort), ref(line.RelatedPort)].map((p) => elementOf.get(p) ?? 0);
    add(a, b, 'port', line.expressID);
    const realizing = ref(line.RealizingElement);
    if (realizing) {
      add(a, realizing, 'realizing', line.expressID);
      add(b, realizing, 'realizing', line.expressID);
    }
  }
  for (const line of model.lines('IfcRelConnectsElements')) {
    const name = model.className(line);
    const kind = name === 'IfcRelConnectsPathElements' ? 'path' : 'element';
    const [a, b] = [ref(line.RelatingElement), ref(line.RelatedElement)];
    add(a, b, kind, line.expressID);
    for (const realizing of refs(line.RealizingElements)) {
      add(a, realizing, 'realizing', line.expressID);
      add(b, realizing, 'realizing', line.expressID);
    }
  }
  return out;
}
