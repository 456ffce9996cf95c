// SPDX-License-Identifier: Apache-2.0
// The list of all products: texts, relations upward, meshes, and why some have none.

import { scale, transformPoint } from './math.mjs';
import { number, ref, refs, text } from './model.mjs';
import { declaredVolume, nominalDiameter, propertiesOf } from './properties.mjs';
import { definedType, groupsOf, searchUp } from './relations.mjs';
import { readSection } from './section.mjs';

// A mesh this far from the declared volume is worth a warning: mostly an opening was not cut.
const VOLUME_TOLERANCE = 0.02;

// A declared volume this many powers of ten off is no matter of openings but of units.
const ABSURD_DECADES = 2;

// Classes (with their subclasses) by role; the first that applies counts.
const ROLES = [
  ['port', 'IfcPort'],
  ['grid', 'IfcGrid'],
  ['annotation', 'IfcAnnotation'],
  ['virtual', 'IfcVirtualElement'],
  ['opening', 'IfcFeatureElementSubtraction'],
  ['space', 'IfcSpace'],
  ['space', 'IfcSpatialZone'],
  ['spatial', 'IfcSpatialStructureElement'],
  ['spatial', 'IfcSpatialElement'],
  ['element', 'IfcElement'],
  ['element', 'IfcProxy'],
];

const ROLE_NOTES = Object.freeze({
  port: 'a port is no body',
  grid: 'a grid is no body',
  annotation: 'an annotation is no body',
  virtual: 'a virtual element is no body',
  space: 'a space is no body',
  spatial: 'a spatial container is no body',
  other: 'not a building element',
});

function rolesById(model) {
  const roles = new Map();
  for (const [role, className] of ROLES) {
    for (const id of model.ids(className)) if (!roles.has(id)) roles.set(id, role);
  }
  return roles;
}

function typeFields(model, relations, id) {
  const type = model.line(relations.typeOf.get(id));
  if (!type) return {};
  return {
    typeClass: model.className(type),
    typeName: text(type.Name),
    typeGuid: text(type.GlobalId),
    inheritedType: definedType(type.PredefinedType),
  };
}

/** Whether the product has a representation that could be a body. */
function hasBody(model, line) {
  const shape = model.line(ref(line.Representation));
  return refs(shape?.Representations).some((id) => {
    const representation = model.line(id);
    const identifier = text(representation?.RepresentationIdentifier);
    return !NO_BODY_REPRESENTATIONS.has(identifier) && refs(representation?.Items).length > 0;
  });
}

const NO_BODY_REPRESENTATIONS = new Set([
  'Axis', 'FootPrint', 'Box', 'Profile', 'Annotation', 'Reference', 'CoG', 'Clearance', 'Lighting',
  'SurveyPoints',
]);

function volumeText(difference, isCut) {
  const percent = Math.abs(difference * 100).toFixed(1);
  const side = difference > 0 ? 'larger' : 'smaller';
  const hint = isCut && difference > 0 ? '; an opening may not have been cut' : '';
  return `the mesh is ${percent} % ${side} than the declared volume${hint}`;
}

export class ProductReader {
  constructor(context) {
    Object.assign(this, context);
    // model, relations, placements, units, materials, sets, geometries, warnings, storeyIndex,
    // systemIndex
    this.instances = []; // { geometry, transform, product }
    this.properties = []; // { set, name, value, kind, number }
    this.products = [];
  }

  readAll(onProgress) {
    const roles = rolesById(this.model);
    const ids = this.model.ids('IfcProduct');
    ids.forEach((id, index) => {
      const line = this.model.line(id);
      if (line) this.#read(line, roles.get(id) ?? 'other');
      else this.warnings.add('broken-line', `#${id} cannot be read and is left out`);
      onProgress(index + 1, ids.length);
    });
    this.indexOf = new Map(this.products.map((product, index) => [product.expressId, index]));
    this.#linkParents();
    this.#checkGuids();
  }

  #read(line, role) {
    const id = line.expressID;
    const product = {
      expressId: id,
      guid: text(line.GlobalId),
      ifcClass: this.model.className(line),
      name: text(line.Name),
      description: text(line.Description),
      objectType: text(line.ObjectType),
      tag: text(line.Tag),
      longName: text(line.LongName),
      ...this.#types(line),
      role,
      storey: this.#storey(id),
      materials: this.materials.ofProduct(this.relations, id),
      systems: this.#systems(id),
      overallWidth: this.#lengthOf(line.OverallWidth),
      overallHeight: this.#lengthOf(line.OverallHeight),
    };
    this.#place(product, line);
    this.#addProperties(product);
    this.#addMesh(product, line);
    this.products.push(product);
  }

  #types(line) {
    const { inheritedType, ...fields } = typeFields(this.model, this.relations, line.expressID);
    return { ...fields, predefinedType: definedType(line.PredefinedType) || inheritedType };
  }

  #storey(id) {
    return searchUp(this.relations, id, (at) => this.storeyIndex.get(at)) ?? -1;
  }

  #systems(id) {
    return groupsOf(this.relations, id).map((group) => this.systemIndex.get(group))
      .filter((index) => index !== undefined);
  }

  #lengthOf(value) {
    const amount = number(value);
    return amount === null ? undefined : amount * this.units.length;
  }

  #place(product, line) {
    const placement = ref(line.ObjectPlacement);
    if (!placement) return;
    const world = this.placements.world(placement);
    product.origin = scale(transformPoint(world, [0, 0, 0]), this.units.length);
    if (product.role === 'element' || product.role === 'opening') {
      product.section = readSection(this.model, line, world, this.units) ?? undefined;
    }
  }

  #addProperties(product) {
    const entries = propertiesOf(this.sets, this.model, this.relations, product.expressId);
    product.firstProperty = this.properties.length;
    product.propertyCount = entries.length;
    for (const entry of entries) this.properties.push(entry);
    product.grossVolume = declaredVolume(entries, 'GrossVolume');
    product.netVolume = declaredVolume(entries, 'NetVolume');
    product.nominalDiameter = nominalDiameter(entries);
  }

  #addMesh(product, line) {
    product.firstInstance = this.instances.length;
    product.instanceCount = 0;
    // A site or a building may carry terrain or a mass model; without one it is a container.
    const mayHaveBody = product.role === 'element' || product.role === 'opening' ||
      product.role === 'spatial';
    if (!mayHaveBody) return this.#noMesh(product, 'notABody', ROLE_NOTES[product.role]);
    if (!hasBody(this.model, line)) {
      if (product.role === 'spatial') return this.#noMesh(product, 'notABody', ROLE_NOTES.spatial);
      return this.#noMesh(product, 'noRepresentation', 'the file gives it no body');
    }
    return this.#readMesh(product);
  }

  #readMesh(product) {
    let mesh;
    try {
      mesh = this.geometries.read(product.expressId);
    } catch (error) {
      return this.#noMesh(product, 'failed', `the reader failed: ${error?.message ?? error}`);
    }
    if (mesh.instances.length === 0) {
      return this.#noMesh(product, 'empty', 'the reader made no triangle of its body');
    }
    if (product.role === 'spatial') product.role = 'element';
    product.meshState = 'meshed';
    product.instanceCount = mesh.instances.length;
    const index = this.products.length;
    for (const instance of mesh.instances) this.instances.push({ ...instance, product: index });
    product.box = mesh.box;
    product.meshVolume = mesh.volume;
    product.closed = mesh.closed;
    return undefined;
  }

  #noMesh(product, state, note) {
    product.meshState = state;
    product.meshNote = note;
  }

  #linkParents() {
    for (const product of this.products) {
      const whole = this.relations.whole.get(product.expressId);
      const index = this.indexOf.get(whole);
      const isPart = index !== undefined && this.products[index].role !== 'spatial' &&
        this.products[index].role !== 'space';
      product.parent = isPart ? index : -1;
    }
  }

  /**
   * Some programs write volumes in the cube of the length unit whatever the file says, which is
   * off by powers of a thousand. Such values are taken for what they are.
   */
  #correctVolumeUnit(product) {
    const declared = product.netVolume ?? product.grossVolume;
    if (declared === undefined || !(product.meshVolume > 0)) return;
    const correction = this.units.length ** 3 / this.units.volume;
    const isOff = (volume) => Math.abs(Math.log10(volume / product.meshVolume)) > ABSURD_DECADES;
    if (!isOff(declared) || isOff(declared * correction)) return;
    if (product.netVolume !== undefined) product.netVolume *= correction;
    if (product.grossVolume !== undefined) product.grossVolume *= correction;
    this.warnings.add('volume-unit', 'the declared volume is in the cube of the length unit',
      product.expressId);
  }

  /** Warns where the mesh is not as large as the file says it should be. */
  checkVolumes() {
    const cut = new Set(this.relations.voids.map(([, host]) => host));
    for (const product of this.products) {
      if (product.meshVolume === undefined || !product.closed) continue;
      this.#correctVolumeUnit(product);
      // The gross volume is that before cutting.
      const gross = cut.has(product.expressId) ? undefined : product.grossVolume;
      const declared = product.netVolume ?? gross;
      if (declared === undefined) continue;
      const difference = (product.meshVolume - declared) / declared;
      if (Math.abs(difference) > VOLUME_TOLERANCE) {
        this.warnings.add('volume-differs', volumeText(difference, cut.has(product.expressId)),
          product.expressId);
      }
    }
  }

  #checkGuids() {
    const seen = new Map();
    for (const product of this.products) {
      if (product.guid === '') {
        this.warnings.add('no-guid', 'the product has no GlobalId', product.expressId);
      } else if (seen.has(product.guid)) {
        this.warnings.add('duplicate-guid',
          `GlobalId ${product.guid} is also that of #${seen.get(product.guid)}`, product.expressId);
      } else {
        seen.set(product.guid, product.expressId);
      }
    }
  }
}
