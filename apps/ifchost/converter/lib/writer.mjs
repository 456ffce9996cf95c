// SPDX-License-Identifier: Apache-2.0
// Writes a scene package; docs/scene-package.md describes the format.

import crypto from 'node:crypto';
import fs from 'node:fs';

import { ConvertError, ExitCode } from './errors.mjs';

const FORMAT_VERSION = 1;

const MAGIC = 'KYSCENE\n';
const END_MAGIC = 'KYSCEND\n';
const HEADER_SIZE = 128;
const ALIGNMENT = 16;
const GEOMETRY_RECORD = 96;
const INSTANCE_RECORD = 136;
const PROPERTY_RECORD = 24;
const CHUNK_BYTES = 1 << 22;

const PROPERTY_KINDS = ['text', 'number', 'length', 'area', 'volume', 'angle', 'boolean'];

/** JSON with empty texts, empty lists and undefined left out: readers know the defaults. */
function compactJson(value) {
  return JSON.stringify(value, (key, item) => {
    if (item === '' || (Array.isArray(item) && item.length === 0 && key !== '')) return undefined;
    return item;
  });
}

const IN_BINARY_ONLY = new Set(['closed']);

function productRecord(product) {
  return Object.fromEntries(
    Object.entries(product).filter(([key, value]) =>
      !IN_BINARY_ONLY.has(key) && !(typeof value === 'number' && value < 0 && REFERENCE.has(key))));
}

// References that are left out when they point nowhere.
const REFERENCE = new Set(['storey', 'parent', 'building', 'product']);

/** Texts of the properties, each once. */
class StringTable {
  #index = new Map();
  list = [];

  add(value) {
    let index = this.#index.get(value);
    if (index === undefined) {
      index = this.list.length;
      this.#index.set(value, index);
      this.list.push(value);
    }
    return index;
  }
}

function propertySection(properties, strings) {
  const out = Buffer.alloc(properties.length * PROPERTY_RECORD);
  properties.forEach((property, i) => {
    const at = i * PROPERTY_RECORD;
    out.writeUInt32LE(strings.add(property.set), at);
    out.writeUInt32LE(strings.add(property.name), at + 4);
    out.writeUInt32LE(strings.add(property.value), at + 8);
    out.writeUInt32LE(PROPERTY_KINDS.indexOf(property.kind), at + 12);
    out.writeDoubleLE(property.number, at + 16);
  });
  return out;
}

function geometrySection(meshes) {
  const out = Buffer.alloc(meshes.length * GEOMETRY_RECORD);
  let vertex = 0;
  let index = 0;
  meshes.forEach((mesh, i) => {
    const at = i * GEOMETRY_RECORD;
    out.writeBigUInt64LE(BigInt(vertex), at);
    out.writeBigUInt64LE(BigInt(mesh.positions.length / 3), at + 8);
    out.writeBigUInt64LE(BigInt(index), at + 16);
    out.writeBigUInt64LE(BigInt(mesh.indices.length), at + 24);
    mesh.box.forEach((value, k) => out.writeDoubleLE(value, at + 32 + k * 8));
    out.writeDoubleLE(mesh.volume, at + 80);
    vertex += mesh.positions.length / 3;
    index += mesh.indices.length;
  });
  return out;
}

function instanceSection(instances) {
  const out = Buffer.alloc(instances.length * INSTANCE_RECORD);
  instances.forEach(({ geometry, product, transform }, i) => {
    const at = i * INSTANCE_RECORD;
    out.writeUInt32LE(geometry, at);
    out.writeUInt32LE(product, at + 4);
    transform.forEach((value, k) => out.writeDoubleLE(value, at + 8 + k * 8));
  });
  return out;
}

function doublesLE(array) {
  const out = Buffer.alloc(array.length * 8);
  array.forEach((value, i) => out.writeDoubleLE(value, i * 8));
  return out;
}

function uint32LE(array) {
  const out = Buffer.alloc(array.length * 4);
  array.forEach((value, i) => out.writeUInt32LE(value, i * 4));
  return out;
}

/** Writes to a file and hashes on the way. */
class HashingFile {
  #hash = crypto.createHash('sha256');

  constructor(path) {
    this.fd = fs.openSync(path, 'wx');
    this.size = 0;
  }

  write(buffer) {
    for (let at = 0; at < buffer.length; at += CHUNK_BYTES) {
      const part = buffer.subarray(at, at + CHUNK_BYTES);
      for (let done = 0; done < part.length;) done += fs.writeSync(this.fd, part, done);
    }
    this.#hash.update(buffer);
    this.size += buffer.length;
  }

  align() {
    const rest = this.size % ALIGNMENT;
    if (rest) this.write(Buffer.alloc(ALIGNMENT - rest));
  }

  finish() {
    const digest = this.#hash.digest();
    fs.writeSync(this.fd, Buffer.concat([digest, Buffer.from(END_MAGIC, 'latin1')]));
    fs.fsyncSync(this.fd);
    fs.closeSync(this.fd);
  }

  abandon() {
    try {
      fs.closeSync(this.fd);
    } catch {
      // Already closed: there is nothing left to give back.
    }
  }
}

const aligned = (offset) => Math.ceil(offset / ALIGNMENT) * ALIGNMENT;

/** The parts of the file in their order: JSON and five sections with their record counts. */
function layOut(scene) {
  const strings = new StringTable();
  const properties = propertySection(scene.properties, strings);
  const { meshes, instances, properties: unused, ...rest } = scene;
  const document = { ...rest, products: rest.products.map(productRecord) };
  // The table of strings may hold empty ones, which must keep their places.
  const json = `${compactJson(document).slice(0, -1)},"strings":${JSON.stringify(strings.list)}}`;
  const total = (key) => meshes.reduce((sum, mesh) => sum + mesh[key].length, 0);
  return {
    json: Buffer.from(json, 'utf8'),
    sections: [
      { count: total('positions') / 3, size: total('positions') * 8,
        parts: () => meshes.map((mesh) => mesh.positions), encode: doublesLE },
      { count: total('indices'), size: total('indices') * 4,
        parts: () => meshes.map((mesh) => mesh.indices), encode: uint32LE },
      wholeSection(geometrySection(meshes), GEOMETRY_RECORD),
      wholeSection(instanceSection(instances), INSTANCE_RECORD),
      wholeSection(properties, PROPERTY_RECORD),
    ],
  };
}

function wholeSection(buffer, recordSize) {
  return {
    count: buffer.length / recordSize, size: buffer.length,
    parts: () => [buffer], encode: (part) => part,
  };
}

function headerFor(json, sections) {
  const header = Buffer.alloc(HEADER_SIZE);
  header.write(MAGIC, 0, 'latin1');
  header.writeUInt32LE(FORMAT_VERSION, 8);
  header.writeUInt32LE(HEADER_SIZE, 12);
  header.writeBigUInt64LE(BigInt(HEADER_SIZE), 24);
  header.writeBigUInt64LE(BigInt(json.length), 32);
  let offset = aligned(HEADER_SIZE + json.length);
  sections.forEach((section, i) => {
    header.writeBigUInt64LE(BigInt(offset), 40 + i * 16);
    header.writeBigUInt64LE(BigInt(section.count), 48 + i * 16);
    offset = aligned(offset + section.size);
  });
  header.writeBigUInt64LE(BigInt(offset + 32 + END_MAGIC.length), 16);
  return header;
}

function writeAll(file, scene) {
  const { json, sections } = layOut(scene);
  file.write(headerFor(json, sections));
  file.write(json);
  file.align();
  for (const section of sections) {
    for (const part of section.parts()) file.write(section.encode(part));
    file.align();
  }
  file.finish();
}

/**
 * Writes `scene` to `path` by way of a temporary file beside it, so that `path` is either a whole
 * package or what it was before.
 */
export function writePackage(scene, path) {
  const temporary = `${path}.${process.pid}.partial`;
  let file;
  try {
    file = new HashingFile(temporary);
    writeAll(file, scene);
    fs.renameSync(temporary, path);
  } catch (error) {
    file?.abandon();
    fs.rmSync(temporary, { force: true });
    throw new ConvertError(ExitCode.Output, `cannot write ${path}: ${error.message}`);
  }
}
