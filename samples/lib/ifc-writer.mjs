// SPDX-License-Identifier: Apache-2.0
// Writes the building as an IFC4 file: one instance per component, then the relations.

import { X_AXES, Y_AXES, Y_NAMES } from './building.mjs';
import { DOOR_TYPE } from './architecture.mjs';
import { profileAxes } from './parts.mjs';
import { HEAD_TYPE, SYSTEMS } from './services.mjs';
import { volume } from './solids.mjs';
import { DERIVED, StepFile, boolean, enumeration, integer, typed } from './step.mjs';

const TIME_STAMP = '2024-01-01T00:00:00';
const TIME_STAMP_SECONDS = 1704067200;
const UNIT_VECTORS = [[1, 0, 0], [0, 1, 0], [0, 0, 1]];

/** Faces of a box, counter-clockwise from outside; bits 0, 1, 2 of a corner: high x, y, z. */
const BOX_FACES = [
  [0, 2, 3, 1], [4, 5, 7, 6], [0, 1, 5, 4], [2, 6, 7, 3], [0, 4, 6, 2], [1, 3, 7, 5],
];

const LAYERS = {
  'Exterior wall': [['Concrete C30', 160], ['Mineral wool', 40]],
  'Brick wall': [['Plaster', 15], ['Brick', 170], ['Plaster', 15]],
  Partition: [['Gypsum board', 15], ['Mineral wool', 70], ['Gypsum board', 15]],
};

/** Property set of each class that carries sizes, and the names of its properties. */
const SIZE_SETS = {
  IfcPipeSegment: ['Pset_PipeSegmentTypeCommon'],
  IfcPipeFitting: ['Sizes'],
  IfcDuctSegment: ['Pset_DuctSegmentTypeCommon', 'NominalDiameterOrWidth', 'NominalHeight'],
  IfcCableCarrierSegment: ['Sizes', 'NominalWidth', 'NominalHeight'],
};

/** Building coordinates in the frame of a component: turned ones have their x axis along +y. */
const inFrame = (v, turned) =>
  (turned ? [v[1], -v[0], v[2]] : v).map((x) => (x === 0 ? 0 : x));

const subtract = (a, b) => a.map((v, k) => v - b[k]);

class IfcWriter {
  constructor(building) {
    this.building = building;
    this.step = new StepFile();
    this.refs = new Map();
    this.placements = new Map();
    this.ports = new Map();
    this.types = new Map();
    this.openings = new Map();
  }

  write() {
    this.writeOwner();
    this.writeProject();
    this.writeSpatialTree();
    this.writeGrid();
    this.writeTypes();
    for (const stair of this.building.stairs) this.writeStair(stair);
    for (const component of this.building.components) this.writeComponent(component);
    for (const space of this.building.spaces) this.writeSpace(space);
    for (const covering of this.building.coverings) this.writeCovering(covering);
    this.writeFillings();
    this.writeContainment();
    this.writeTypeRelations();
    this.writeMaterials();
    this.writeProperties();
    this.writePorts();
    this.writeSystems();
    return this.step.toString({
      fileName: 'building.ifc',
      timeStamp: TIME_STAMP,
      description: 'ViewDefinition [DesignTransferView_V1.0]',
      author: 'kyclash',
      program: 'kyclash sample generator',
    });
  }

  // ---- helpers -------------------------------------------------------------------------------

  point(coordinates) {
    return this.step.share('IfcCartesianPoint', coordinates);
  }

  direction(ratios) {
    return this.step.share('IfcDirection', ratios);
  }

  /** Without directions the axes are those of the surrounding placement. */
  axes(origin, zAxis = null, xAxis = null) {
    return this.step.share('IfcAxis2Placement3D', this.point(origin),
      zAxis && this.direction(zAxis), xAxis && this.direction(xAxis));
  }

  /** Written out where the schema would let it be left away: some readers ask for it. */
  axes2d(origin = [0, 0]) {
    return this.step.share('IfcAxis2Placement2D', this.point(origin), this.direction([1, 0]));
  }

  placement(parent, ...axes) {
    return this.step.add('IfcLocalPlacement', parent, this.axes(...axes));
  }

  /** The attributes that every rooted instance begins with. */
  root(guidName, name = null) {
    return [this.step.guid(guidName), this.owner, name, null];
  }

  relation(type, guidName, ...attributes) {
    return this.step.add(type, ...this.root(guidName), ...attributes);
  }

  storeyBase(name) {
    return this.building.storeys.find((storey) => storey.name === name).elevation;
  }

  // ---- project, storeys, grid ----------------------------------------------------------------

  writeOwner() {
    const { step } = this;
    const organisation = step.add('IfcOrganization', null, 'kyclash', null, null, null);
    const person = step.add('IfcPerson', null, 'kyclash', null, null, null, null, null, null);
    const user = step.add('IfcPersonAndOrganization', person, organisation, null);
    const application = step.add('IfcApplication', organisation, '1', 'kyclash sample generator',
      'kyclash-sample');
    this.owner = step.add('IfcOwnerHistory', user, application, null, enumeration('NOCHANGE'), null,
      null, null, integer(TIME_STAMP_SECONDS));
  }

  writeProject() {
    const { step } = this;
    const unit = (type, prefix, name) => step.add('IfcSIUnit', DERIVED, enumeration(type),
      prefix && enumeration(prefix), enumeration(name));
    const units = step.add('IfcUnitAssignment', [
      unit('LENGTHUNIT', 'MILLI', 'METRE'),
      unit('AREAUNIT', null, 'SQUARE_METRE'),
      unit('VOLUMEUNIT', null, 'CUBIC_METRE'),
      unit('PLANEANGLEUNIT', null, 'RADIAN'),
    ]);
    const model = step.add('IfcGeometricRepresentationContext', null, 'Model', integer(3), 1e-5,
      this.axes([0, 0, 0]), null);
    const view = (name) => step.add('IfcGeometricRepresentationSubContext', name, 'Model', DERIVED,
      DERIVED, DERIVED, DERIVED, model, null, enumeration('MODEL_VIEW'), null);
    this.bodyContext = view('Body');
    this.footPrintContext = view('FootPrint');
    this.project = step.add('IfcProject', ...this.root('Project', 'Sample building'), null, null,
      null, [model], units);
  }

  writeSpatialTree() {
    const { step } = this;
    const element = enumeration('ELEMENT');
    const sitePlace = this.placement(null, [0, 0, 0]);
    const site = step.add('IfcSite', ...this.root('Site', 'Site'), null, sitePlace, null, null,
      element, null, null, null, null, null);
    const housePlace = this.placement(sitePlace, [0, 0, 0]);
    this.house = step.add('IfcBuilding', ...this.root('Building', 'Building'), null, housePlace,
      null, null, element, null, null, null);
    const storeys = this.building.storeys.map(({ name, elevation }) => {
      const place = this.placement(housePlace, [0, 0, elevation]);
      const storey = step.add('IfcBuildingStorey', ...this.root(`Storey ${name}`, name), null,
        place, null, null, element, elevation);
      this.placements.set(name, place);
      this.refs.set(`Storey ${name}`, storey);
      return storey;
    });
    this.relation('IfcRelAggregates', 'Project parts', this.project, [site]);
    this.relation('IfcRelAggregates', 'Site parts', site, [this.house]);
    this.relation('IfcRelAggregates', 'Building parts', this.house, storeys);
    this.sitePlace = sitePlace;
    this.site = site;
  }

  writeGrid() {
    const { step } = this;
    const point2d = (x, y) => this.point([x, y]);
    const curves = [];
    const axis = (tag, curve) => {
      curves.push(curve);
      return step.add('IfcGridAxis', tag, curve, boolean(true));
    };
    const line = (tag, from, to) =>
      axis(tag, step.add('IfcPolyline', [point2d(...from), point2d(...to)]));
    const numbered = X_AXES.map((x, i) => line(String(i + 1), [x, -2000], [x, 15000]));
    const lettered = Y_AXES.map((y, j) => line(Y_NAMES[j], [-2000, y], [26000, y]));
    const arc = this.arcAxis([12000, 6000], 12000, Math.PI / 4, (3 * Math.PI) / 4);
    const rounded = [axis('R', arc)];
    const curveSet = step.add('IfcGeometricCurveSet', curves);
    const shape = step.add('IfcShapeRepresentation', this.footPrintContext, 'FootPrint',
      'GeometricCurveSet', [curveSet]);
    const grid = step.add('IfcGrid', ...this.root('Grid', 'Grid'), null,
      this.placement(this.sitePlace, [0, 0, 0]),
      step.add('IfcProductDefinitionShape', null, null, [shape]), numbered, lettered, rounded,
      enumeration('IRREGULAR'));
    this.relation('IfcRelContainedInSpatialStructure', 'Site content', [grid], this.site);
  }

  arcAxis(centre, radius, from, to) {
    const { step } = this;
    const circle = step.add('IfcCircle', this.axes2d(centre), radius);
    const trim = (angle) => [typed('IfcParameterValue', angle)];
    return step.add('IfcTrimmedCurve', circle, trim(from), trim(to), boolean(true),
      enumeration('PARAMETER'));
  }

  // ---- shapes --------------------------------------------------------------------------------

  outlineCurve(points) {
    const refs = points.map((p) => this.point(p));
    return this.step.add('IfcPolyline', [...refs, refs[0]]);
  }

  profile(part, centre) {
    const { step } = this;
    const area = enumeration('AREA');
    const [u, v] = profileAxes(part.axis);
    if (part.draw === 'round') {
      return step.share('IfcCircleProfileDef', area, null, this.axes2d(), part.solid.radius);
    }
    if (part.draw === 'outline') {
      const points = part.outline.map(([a, b]) => [a - centre[u], b - centre[v]]);
      return step.add('IfcArbitraryClosedProfileDef', area, null, this.outlineCurve(points));
    }
    const [du, dv] = [u, v].map((k) => part.solid.max[k] - part.solid.min[k]);
    if (part.draw === 'frame') {
      const ring = (inset) => {
        const [a, b] = [du / 2 - inset, dv / 2 - inset];
        return this.outlineCurve([[-a, -b], [a, -b], [a, b], [-a, b]]);
      };
      return step.add('IfcArbitraryProfileDefWithVoids', area, null, ring(0), [ring(part.width)]);
    }
    return step.share('IfcRectangleProfileDef', area, null, this.axes2d(), du, dv);
  }

  /** Extrusion of a part, in the frame whose origin and x axis are given (z stays up). */
  extrusion(part, origin, turned) {
    const { axis, solid } = part;
    const isRound = solid.shape === 'cylinder';
    const from = isRound ? solid.from : solid.min[axis];
    const depth = (isRound ? solid.to : solid.max[axis]) - from;
    const centre = isRound ? [...solid.centre] : solid.min.map((v, k) => (v + solid.max[k]) / 2);
    centre[axis] = from;
    const place = this.axes(inFrame(subtract(centre, origin), turned),
      ...[axis, profileAxes(axis)[0]].map((k) => inFrame(UNIT_VECTORS[k], turned)));
    return this.step.add('IfcExtrudedAreaSolid', this.profile(part, centre), place,
      this.direction([0, 0, 1]), depth);
  }

  facetedBrep({ solid: { min, max } }, origin) {
    const { step } = this;
    const corner = (i) => this.point(subtract(
      [i & 1 ? max[0] : min[0], i & 2 ? max[1] : min[1], i & 4 ? max[2] : min[2]], origin));
    const shell = BOX_FACES.map((loop) => step.add('IfcFace', [
      step.add('IfcFaceOuterBound', step.add('IfcPolyLoop', loop.map(corner)), boolean(true))]));
    return step.add('IfcFacetedBrep', step.add('IfcClosedShell', shell));
  }

  mappedItem(part) {
    const { step } = this;
    const target = step.share('IfcCartesianTransformationOperator3D', null, null,
      this.point([0, 0, 0]), null, null);
    return step.add('IfcMappedItem', this.types.get(part.typeName).map, target);
  }

  shape(parts, origin, turned = false) {
    const { step } = this;
    const kinds = { brep: 'Brep', mapped: 'MappedRepresentation' };
    const items = parts.map((part) => {
      if (part.draw === 'brep') return this.facetedBrep(part, origin);
      if (part.draw === 'mapped') return this.mappedItem(part);
      return this.extrusion(part, origin, turned);
    });
    return step.add('IfcShapeRepresentation', this.bodyContext, 'Body',
      kinds[parts[0].draw] ?? 'SweptSolid', items);
  }

  productShape(parts, origin, turned) {
    return this.step.add('IfcProductDefinitionShape', null, null,
      [this.shape(parts, origin, turned)]);
  }

  writeTypes() {
    const { step } = this;
    for (const type of [DOOR_TYPE, HEAD_TYPE]) {
      const map = step.add('IfcRepresentationMap', this.axes([0, 0, 0]),
        this.shape(type.parts, [0, 0, 0]));
      this.types.set(type.name, { map });
    }
    const common = (type) => [...this.root(type.name, type.name), null, null,
      [this.types.get(type.name).map], null, null];
    this.types.get(DOOR_TYPE.name).ref = step.add('IfcDoorType', ...common(DOOR_TYPE),
      enumeration('DOOR'), enumeration('SINGLE_SWING_LEFT'), boolean(true), null);
    this.types.get(HEAD_TYPE.name).ref = step.add('IfcFireSuppressionTerminalType',
      ...common(HEAD_TYPE), enumeration('SPRINKLER'));
  }

  // ---- components ----------------------------------------------------------------------------

  /** Where a component's own frame stands, in building coordinates. */
  originOf(component) {
    const [first] = component.parts;
    if (first.draw === 'mapped') return first.at;
    if (first.draw === 'round') {
      const origin = [...first.solid.centre];
      origin[first.axis] = first.solid.from;
      return origin;
    }
    const { min, max } = first.solid;
    // The x axis of a turned frame is +y, its y axis -x: the body lies on its positive side.
    return component.turned ? [max[0], min[1], min[2]] : [...min];
  }

  /** Attributes that follow the tag, by class. */
  ownAttributes(component) {
    const type = enumeration(component.type);
    if (component.ifcClass === 'IfcDoor') {
      return [...component.overall, type, enumeration(component.operation), null];
    }
    if (component.ifcClass === 'IfcWindow') {
      return [...component.overall, type, enumeration('SINGLE_PANEL'), null];
    }
    if (component.ifcClass === 'IfcStairFlight') {
      const { risers, treads, riser, tread } = component.stairs;
      return [integer(risers), integer(treads), riser, tread, type];
    }
    return [type];
  }

  writeComponent(component) {
    const origin = this.originOf(component);
    const base = this.storeyBase(component.storey);
    const turned = component.turned === true;
    const place = this.placement(this.placements.get(component.storey),
      subtract(origin, [0, 0, base]), ...(turned ? [[0, 0, 1], [0, 1, 0]] : []));
    const ref = this.step.add(component.ifcClass, ...this.root(component.name, component.name),
      null, place, this.productShape(component.parts, origin, turned), null,
      ...this.ownAttributes(component));
    this.refs.set(component.name, ref);
    this.placements.set(component.name, place);
    for (const opening of component.openings ?? []) {
      this.writeOpening(component, ref, place, origin, turned, opening);
    }
    (component.ports ?? []).forEach((at, index) => {
      this.writePort(component, index, place, subtract(at, origin));
    });
  }

  writeOpening(component, host, hostPlace, origin, turned, { name, box }) {
    const place = this.placement(hostPlace, inFrame(subtract(box.min, origin), turned));
    const thinnest = component.ifcClass === 'IfcSlab' ? 2 : component.turned ? 0 : 1;
    const part = { draw: 'box', axis: thinnest, solid: { shape: 'block', ...box, holes: [] } };
    const ref = this.step.add('IfcOpeningElement', ...this.root(name, name), null, place,
      this.productShape([part], box.min, turned), null, enumeration('OPENING'));
    this.openings.set(name, ref);
    this.relation('IfcRelVoidsElement', `${name} voids`, host, ref);
  }

  writeStair({ name, storey }) {
    const ref = this.step.add('IfcStair', ...this.root(name, name), null,
      this.placement(this.placements.get(storey), [0, 0, 0]), null, null,
      enumeration('HALF_TURN_STAIR'));
    this.refs.set(name, ref);
  }

  writeSpace({ name, label, storey, parts }) {
    const origin = parts[0].solid.min;
    const place = this.placement(this.placements.get(storey),
      subtract(origin, [0, 0, this.storeyBase(storey)]));
    const ref = this.step.add('IfcSpace', ...this.root(name, name), null, place,
      this.productShape(parts, origin), label, enumeration('ELEMENT'), enumeration('INTERNAL'),
      null);
    this.refs.set(name, ref);
  }

  writeCovering({ name, covers }) {
    const ref = this.step.add('IfcCovering', ...this.root(name, name), null,
      this.placement(this.placements.get(covers), [0, 0, 0]), null, null,
      enumeration('INSULATION'));
    this.refs.set(name, ref);
    this.relation('IfcRelCoversBldgElements', `${name} covers`, this.refs.get(covers), [ref]);
  }

  // ---- relations -----------------------------------------------------------------------------

  writeFillings() {
    for (const { name, fills } of this.building.components) {
      if (!fills) continue;
      this.relation('IfcRelFillsElement', `${name} fills`, this.openings.get(fills.opening),
        this.refs.get(name));
    }
  }

  writeContainment() {
    for (const { name } of this.building.storeys) {
      const here = (item) => item.storey === name && !item.assembly;
      const { components, stairs, coverings, spaces } = this.building;
      const content = [...components, ...stairs, ...coverings].filter(here);
      this.relation('IfcRelContainedInSpatialStructure', `Storey ${name} content`,
        content.map((item) => this.refs.get(item.name)), this.refs.get(`Storey ${name}`));
      const rooms = spaces.filter(here);
      if (rooms.length > 0) {
        this.relation('IfcRelAggregates', `Storey ${name} rooms`, this.refs.get(`Storey ${name}`),
          rooms.map((room) => this.refs.get(room.name)));
      }
    }
    for (const { name } of this.building.stairs) {
      const parts = this.building.components.filter((part) => part.assembly === name);
      this.relation('IfcRelAggregates', `${name} parts`, this.refs.get(name),
        parts.map((part) => this.refs.get(part.name)));
    }
  }

  writeTypeRelations() {
    for (const [name, { ref }] of this.types) {
      const users = this.building.components.filter((component) => component.shapeType === name);
      this.relation('IfcRelDefinesByType', `${name} users`,
        users.map((user) => this.refs.get(user.name)), ref);
    }
  }

  material(name) {
    return this.step.share('IfcMaterial', name, null, null);
  }

  layerSet(name, layers) {
    const refs = layers.map(([material, thickness]) => this.step.add('IfcMaterialLayer',
      this.material(material), thickness, null, null, null, null, null));
    return this.step.add('IfcMaterialLayerSet', refs, name, null);
  }

  writeMaterials() {
    const groups = (key) => groupBy(this.building.components.filter((c) => c[key]), key);
    const associate = (label, users, material) => this.relation('IfcRelAssociatesMaterial',
      `${label} material`, users.map((user) => this.refs.get(user.name)), material);
    for (const [name, users] of groups('material')) associate(name, users, this.material(name));
    for (const [name, users] of groups('layers')) {
      const usage = this.step.add('IfcMaterialLayerSetUsage', this.layerSet(name, LAYERS[name]),
        enumeration('AXIS2'), enumeration('POSITIVE'), 0, null);
      associate(name, users, usage);
    }
    for (const { name, thickness } of this.building.coverings) {
      associate(name, [{ name }], this.layerSet(name, [['Mineral wool', thickness]]));
    }
  }

  /** One property set for all components with the same values. */
  propertySet(setName, key, properties, users) {
    const values = properties.map(([name, type, value]) => this.step.share(
      'IfcPropertySingleValue', name, null, type === 'IfcBoolean'
        ? typed(type, boolean(value)) : typed(type, value), null));
    const set = this.step.add('IfcPropertySet', ...this.root(`${setName} ${key}`, setName), values);
    this.relation('IfcRelDefinesByProperties', `${setName} ${key} users`,
      users.map((user) => this.refs.get(user.name)), set);
  }

  writeProperties() {
    const { components } = this.building;
    for (const external of [true, false]) {
      this.propertySet('Pset_WallCommon', external ? 'external' : 'internal',
        [['IsExternal', 'IfcBoolean', external]],
        components.filter((c) => c.ifcClass === 'IfcWall' && c.external === external));
    }
    for (const [key, users] of groupBy(components.filter(hasSizes), sizeKey)) {
      const [setName, ...names] = SIZE_SETS[users[0].ifcClass];
      const values = users[0].diameter ? [users[0].diameter] : users[0].size;
      const labels = users[0].diameter ? ['NominalDiameter'] : names;
      this.propertySet(setName, key,
        labels.map((label, i) => [label, 'IfcPositiveLengthMeasure', values[i]]), users);
    }
    const insulated = components.filter((c) => c.insulation);
    for (const [thickness, users] of groupBy(insulated, 'insulation')) {
      this.propertySet('Insulation', String(thickness),
        [['InsulationThickness', 'IfcPositiveLengthMeasure', thickness]], users);
    }
    for (const wall of components.filter((c) => c.openings?.length > 0)) this.writeVolume(wall);
  }

  /** Net volume, so that a reader can tell whether it cut every opening. */
  writeVolume(component) {
    const { step } = this;
    const net = component.parts.reduce((sum, part) => sum + volume(part.solid), 0) / 1e9;
    const quantity = step.add('IfcQuantityVolume', 'NetVolume', null, null, net, null);
    const setName = component.ifcClass === 'IfcSlab' ? 'Qto_SlabBaseQuantities'
      : 'Qto_WallBaseQuantities';
    const set = step.add('IfcElementQuantity', ...this.root(`${component.name} volume`, setName),
      null, [quantity]);
    this.relation('IfcRelDefinesByProperties', `${component.name} volume user`,
      [this.refs.get(component.name)], set);
  }

  // ---- ports and systems ---------------------------------------------------------------------

  writePort(component, index, hostPlace, at) {
    const name = `Port ${component.name} ${index + 1}`;
    const ref = this.step.add('IfcDistributionPort', ...this.root(name, `Port ${index + 1}`), null,
      this.placement(hostPlace, at), null, enumeration('SOURCEANDSINK'),
      enumeration(portType(component)), enumeration(SYSTEMS[component.system].type));
    this.ports.set(name, ref);
  }

  writePorts() {
    for (const { name, ports } of this.building.components) {
      if (!ports?.length) continue;
      const refs = ports.map((_, index) => this.ports.get(`Port ${name} ${index + 1}`));
      this.relation('IfcRelNests', `${name} ports`, this.refs.get(name), refs);
    }
    for (const { a, portA, b, portB } of this.building.connections) {
      const [from, to] = [`Port ${a.name} ${portA + 1}`, `Port ${b.name} ${portB + 1}`];
      this.relation('IfcRelConnectsPorts', `${from} to ${to}`, this.ports.get(from),
        this.ports.get(to), null);
    }
  }

  writeSystems() {
    const { step } = this;
    for (const [key, { name, objectType, type }] of Object.entries(SYSTEMS)) {
      const members = this.building.components.filter((component) => component.system === key);
      const system = step.add('IfcDistributionSystem', ...this.root(`System ${key}`, name),
        objectType, null, enumeration(type));
      this.relation('IfcRelAssignsToGroup', `System ${key} members`,
        members.map((member) => this.refs.get(member.name)), null, system);
      this.relation('IfcRelServicesBuildings', `System ${key} building`, system, [this.house]);
    }
  }
}

function groupBy(items, key) {
  const keyOf = typeof key === 'function' ? key : (item) => item[key];
  const groups = new Map();
  for (const item of items) {
    const value = keyOf(item);
    if (!groups.has(value)) groups.set(value, []);
    groups.get(value).push(item);
  }
  return groups;
}

function portType({ ifcClass }) {
  if (ifcClass.startsWith('IfcPipe')) return 'PIPE';
  if (['IfcSanitaryTerminal', 'IfcFireSuppressionTerminal'].includes(ifcClass)) return 'PIPE';
  return ifcClass.startsWith('IfcCable') ? 'CABLECARRIER' : 'DUCT';
}

const hasSizes = (component) =>
  SIZE_SETS[component.ifcClass] && (component.diameter || component.size);
const sizeKey = ({ ifcClass, diameter, size }) => `${ifcClass} ${diameter ?? size.join('x')}`;

export const writeIfc = (building) => new IfcWriter(building).write();
