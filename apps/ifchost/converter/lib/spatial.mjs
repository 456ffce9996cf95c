// SPDX-License-Identifier: Apache-2.0
// Sites, buildings, storeys, and where the file lies on the earth.

import { length, scale, transformPoint } from './math.mjs';
import { number, numbers, ref, refs, text } from './model.mjs';
import { axisPlacement, direction } from './placement.mjs';
import { unitOf } from './units.mjs';

function originOf(line, placements, units) {
  const id = ref(line.ObjectPlacement);
  return id ? scale(transformPoint(placements.world(id), [0, 0, 0]), units.length) : undefined;
}

function inMm(value, units) {
  const amount = number(value);
  return amount === null ? undefined : amount * units.length;
}

function spatialRecord(model, line, placements, units, elevation) {
  return {
    expressId: line.expressID,
    guid: text(line.GlobalId),
    name: text(line.Name),
    longName: text(line.LongName),
    elevation: inMm(elevation, units),
    origin: originOf(line, placements, units),
  };
}

/** Index of the nearest record of `records` above a spatial element, or -1. */
function indexAbove(relations, id, records) {
  let at = id;
  for (let depth = 0; at && depth < 20; ++depth) {
    at = relations.whole.get(at);
    const index = records.findIndex((record) => record.expressId === at);
    if (index >= 0) return index;
  }
  return -1;
}

/** { sites, buildings, storeys } with storeys in ascending order of their base. */
export function readSpatial(model, relations, placements, units) {
  const sites = [...model.lines('IfcSite')].map(
    (line) => spatialRecord(model, line, placements, units, line.RefElevation));
  const buildings = [...model.lines('IfcBuilding')].map((line) => ({
    ...spatialRecord(model, line, placements, units, line.ElevationOfRefHeight),
    parent: indexAbove(relations, line.expressID, sites),
  }));
  const storeys = [...model.lines('IfcBuildingStorey')].map((line) => {
    const { origin, ...record } = spatialRecord(model, line, placements, units, line.Elevation);
    const placementZ = origin?.[2];
    const baseZ = placementZ ?? record.elevation ?? 0;
    const building = indexAbove(relations, line.expressID, buildings);
    return { ...record, placementZ, baseZ, building };
  });
  storeys.sort((a, b) => a.baseZ - b.baseZ || a.expressId - b.expressId);
  return { sites, buildings, storeys };
}

/** Degrees from degrees, minutes, seconds and millionths of a second; undefined without any. */
export function degrees(parts) {
  if (parts.length < 3) return undefined;
  const [d, m, s, micro = 0] = parts;
  return d + m / 60 + (s + micro / 1e6) / 3600;
}

/** Eastings and northings are in the map's unit, which mostly is not the model's. */
function readMapConversion(model, units) {
  const line = model.line(model.ids('IfcMapConversion')[0]);
  if (!line) return undefined;
  const crs = model.line(ref(line.TargetCRS));
  const mapUnit = unitOf(model, ref(crs?.MapUnit))?.factor ?? units.length;
  return {
    eastings: (number(line.Eastings) ?? 0) * mapUnit,
    northings: (number(line.Northings) ?? 0) * mapUnit,
    orthogonalHeight: (number(line.OrthogonalHeight) ?? 0) * mapUnit,
    xAxisAbscissa: number(line.XAxisAbscissa) ?? 1,
    xAxisOrdinate: number(line.XAxisOrdinate) ?? 0,
    scale: number(line.Scale) ?? 1,
    targetCrs: text(crs?.Name),
  };
}

/** Contexts of the project; the first with a true north gives it. */
function readContexts(model, warnings) {
  const project = model.line(model.ids('IfcProject')[0]);
  let trueNorth;
  for (const id of refs(project?.RepresentationContexts)) {
    const context = model.line(id);
    if (ref(context?.TrueNorth)) {
      trueNorth ??= direction(model, ref(context.TrueNorth), undefined);
    }
    const world = axisPlacement(model, ref(context?.WorldCoordinateSystem));
    const offset = length([world[3], world[7], world[11]]);
    const turned = 3 - (world[0] + world[5] + world[10]);
    if (offset > 0 || turned > 1e-9) {
      warnings.add('world-coordinate-system',
        `context #${id} has a world coordinate system of its own, which is not applied`);
    }
  }
  return trueNorth;
}

export function readGeoreference(model, units, warnings) {
  const site = [...model.lines('IfcSite')].find((line) => numbers(line.RefLatitude).length >= 3);
  return {
    mapConversion: readMapConversion(model, units),
    latitude: degrees(numbers(site?.RefLatitude)),
    longitude: degrees(numbers(site?.RefLongitude)),
    trueNorth: readContexts(model, warnings),
  };
}
