// SPDX-License-Identifier: Apache-2.0
// The building as plain data: storeys, grid, components with exact solids, systems, relations.

import { addArchitecture } from './architecture.mjs';
import { addPlan } from './plan.mjs';
import { addServices } from './services.mjs';
import { addStructure } from './structure.mjs';

export const X_AXES = [0, 6000, 12000, 18000, 24000];
export const Y_AXES = [0, 5000, 8000, 13000];
export const Y_NAMES = ['A', 'B', 'C', 'D'];
/** The occupied floors, lowest first, with their elevations. */
export const FLOORS = [['F1', 0], ['F2', 3600]];

class Building {
  constructor() {
    this.storeys = [
      { name: 'F1', elevation: 0 },
      { name: 'F2', elevation: 3600 },
      { name: 'Roof', elevation: 7200 },
    ];
    this.components = [];
    this.byName = new Map();
    this.connections = [];
    this.coverings = [];
    this.stairs = [];
    this.spaces = [];
    this.notChecked = [];
    this.planned = [];
    this.nearMisses = [];
  }

  /**
   * Adds a component: `name`, `ifcClass`, `type` (predefined type), `kind` (key of the category
   * table), `storey`, `parts`; and as they apply `openings`, `fills`, `assembly`, `material`,
   * `system`, `ports` (points), `diameter`, `size`, `insulation`, `external`.
   */
  add(component) {
    if (this.byName.has(component.name)) throw new Error(`two named ${component.name}`);
    this.components.push(component);
    this.byName.set(component.name, component);
    return component;
  }

  /** Joins ports of one system that lie at the same point. */
  connectPorts() {
    const open = new Map();
    for (const component of this.components) {
      (component.ports ?? []).forEach((point, index) => {
        const key = `${component.system} ${point.join(' ')}`;
        const other = open.get(key);
        if (!other) open.set(key, { name: component.name, index });
        else {
          this.connections.push({ a: this.byName.get(other.name), portA: other.index,
            b: component, portB: index });
          open.delete(key);
        }
      });
    }
  }
}

export function makeBuilding() {
  const building = new Building();
  addStructure(building);
  addArchitecture(building);
  addServices(building);
  building.connectPorts();
  addPlan(building);
  return building;
}
