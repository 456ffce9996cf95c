// SPDX-License-Identifier: Apache-2.0
// Material names behind every kind of material definition.

import { ref, refs, text } from './model.mjs';

const MAX_DEPTH = 10;

// By class: the attributes that lead on to further definitions.
const NEXT = Object.freeze({
  IfcMaterialLayerSetUsage: ['ForLayerSet'],
  IfcMaterialLayerSet: ['MaterialLayers'],
  IfcMaterialLayer: ['Material'],
  IfcMaterialLayerWithOffsets: ['Material'],
  IfcMaterialProfileSetUsage: ['ForProfileSet'],
  IfcMaterialProfileSetUsageTapering: ['ForProfileSet', 'ForProfileEndSet'],
  IfcMaterialProfileSet: ['MaterialProfiles'],
  IfcMaterialProfile: ['Material'],
  IfcMaterialProfileWithOffsets: ['Material'],
  IfcMaterialConstituentSet: ['MaterialConstituents'],
  IfcMaterialConstituent: ['Material'],
  IfcMaterialList: ['Materials'],
});

/** Material names by definition; each definition is walked once. */
export class Materials {
  #known = new Map();

  constructor(model) {
    this.model = model;
  }

  names(definitionId) {
    let names = this.#known.get(definitionId);
    if (!names) {
      names = [];
      this.#collect(definitionId, names, 0);
      this.#known.set(definitionId, names);
    }
    return names;
  }

  #collect(id, names, depth) {
    const line = depth > MAX_DEPTH ? null : this.model.line(id);
    if (!line) return;
    const className = this.model.className(line);
    if (className === 'IfcMaterial') {
      const name = text(line.Name);
      if (name && !names.includes(name)) names.push(name);
      return;
    }
    for (const attribute of NEXT[className] ?? []) {
      const value = line[attribute];
      for (const next of Array.isArray(value) ? refs(value) : [ref(value)]) {
        this.#collect(next, names, depth + 1);
      }
    }
  }

  /** Names for a product: its own definitions, else those of its type. */
  ofProduct(relations, id) {
    const type = relations.typeOf.get(id);
    const definitions = relations.materials.get(id) ?? relations.materials.get(type) ?? [];
    return [...new Set(definitions.flatMap((definition) => this.names(definition)))];
  }
}
