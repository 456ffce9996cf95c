// SPDX-License-Identifier: Apache-2.0
// Puts the parts together: from an opened file to the scene that is written.

import { Geometries } from './geometry.mjs';
import { readGrids } from './grids.mjs';
import { emptyBox, growBox } from './math.mjs';
import { Materials } from './materials.mjs';
import { text } from './model.mjs';
import { Placements } from './placement.mjs';
import { ProductReader } from './products.mjs';
import { PropertySets } from './properties.mjs';
import {
  readConnections, readPorts, readRelations, readSystems, searchUp,
} from './relations.mjs';
import { readGeoreference, readSpatial } from './spatial.mjs';
import { readUnits } from './units.mjs';
import { Warnings } from './warnings.mjs';

const ORIGINATING_SYSTEM = 5; // position in FILE_NAME

/** Turns pairs of express ids into pairs of product indices; what is missing gets a warning. */
class Linker {
  constructor(indexOf, warnings) {
    this.indexOf = indexOf;
    this.warnings = warnings;
  }

  pair(first, second, relation) {
    const [a, b] = [this.indexOf.get(first), this.indexOf.get(second)];
    if (a !== undefined && b !== undefined) return [a, b];
    this.warnings.add('broken-relation', `relation #${relation} names a product that is missing`);
    return null;
  }

  pairs(list) {
    return list.map(([first, second, relation]) => this.pair(first, second, relation))
      .filter(Boolean);
  }
}

function linkConnections(connections, linker) {
  const seen = new Set();
  const out = [];
  for (const { first, second, kind, relation } of connections) {
    const pair = linker.pair(first, second, relation);
    if (!pair || pair[0] === pair[1]) continue;
    const [a, b] = pair[0] < pair[1] ? pair : [pair[1], pair[0]];
    const key = `${kind} ${a} ${b}`;
    if (!seen.has(key)) out.push({ first: a, second: b, kind });
    seen.add(key);
  }
  return out;
}

function linkRelations(model, relations, products, warnings) {
  const indexOf = new Map(products.map((product, index) => [product.expressId, index]));
  const linker = new Linker(indexOf, warnings);
  const { ports, elementOf } = readPorts(model, relations);
  const aggregates = [];
  products.forEach((product, index) => {
    if (product.parent >= 0 && product.role !== 'port') aggregates.push([product.parent, index]);
  });
  return {
    voids: linker.pairs(relations.voids),
    fills: linker.pairs(relations.fills),
    aggregates,
    coverings: linker.pairs(relations.coverings),
    connections: linkConnections(readConnections(model, elementOf), linker),
    ports: ports.map(({ port, element, flowDirection }) => {
      const pair = linker.pair(port, element, port);
      return pair && { port: pair[0], element: pair[1], flowDirection };
    }).filter(Boolean),
  };
}

function overall(products) {
  const box = emptyBox();
  for (const product of products) {
    if (product.role === 'element' && product.box) {
      growBox(box, product.box.slice(0, 3));
      growBox(box, product.box.slice(3));
    }
  }
  return Number.isFinite(box[0]) ? box : undefined;
}

function largestCoordinate(products) {
  return products.reduce(
    (largest, product) => (product.box ?? []).reduce((m, v) => Math.max(m, Math.abs(v)), largest), 0);
}

function indexByExpressId(records) {
  return new Map(records.map((record, index) => [record.expressId, index]));
}

/**
 * Reads the whole file. `onPhase(name, done, total)` is told how far it is. The warnings'
 * `product` is an index in the returned products, or -1.
 */
export function readScene(model, options, onPhase) {
  const warnings = options.warnings ?? new Warnings();
  const units = readUnits(model, warnings);
  const placements = new Placements(model, warnings);
  onPhase('relations', 0, 1);
  const relations = readRelations(model);
  const { sites, buildings, storeys } = readSpatial(model, relations, placements, units);
  const storeyIndex = indexByExpressId(storeys);
  const { systems, indexOf: systemIndex } = readSystems(model, relations);
  const geometries = new Geometries(model, units.length);
  const reader = new ProductReader({
    model, relations, placements, units, warnings, geometries, storeyIndex, systemIndex,
    materials: new Materials(model), sets: new PropertySets(model, units),
  });
  reader.readAll((done, total) => onPhase('products', done, total));
  reader.checkVolumes();
  const { products } = reader;
  const grids = readGrids(model, placements, units, warnings).map(({ product, axes }) => ({
    product: reader.indexOf.get(product) ?? -1,
    storey: searchUp(relations, product, (at) => storeyIndex.get(at)) ?? -1,
    axes,
  }));
  const linked = linkRelations(model, relations, products, warnings);
  return {
    file: {
      ...fileInfo(model, units, options),
      georeference: {
        ...readGeoreference(model, units, warnings),
        largestCoordinate: largestCoordinate(products),
      },
      box: overall(products),
    },
    sites, buildings, storeys, products, systems, grids,
    relations: linked,
    warnings: warnings.list().map(
      (w) => ({ ...w, product: w.product ? reader.indexOf.get(w.product) ?? -1 : -1 })),
    meshes: geometries.meshes,
    instances: reader.instances,
    properties: reader.properties,
  };
}

function fileInfo(model, units, options) {
  const project = model.line(model.ids('IfcProject')[0]);
  return {
    schema: model.schema,
    projectGuid: text(project?.GlobalId),
    projectName: text(project?.Name),
    application: model.headerText(model.W.FILE_NAME, ORIGINATING_SYSTEM),
    lengthUnit: units.lengthName,
    lengthUnitInMm: units.length,
    circleSegments: options.circleSegments,
    converter: `${options.version} web-ifc ${model.readerVersion()}`,
  };
}
