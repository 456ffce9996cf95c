// SPDX-License-Identifier: Apache-2.0
// One opened IFC file: lines by id, ids by class, and plain values out of attributes.

import { createRequire } from 'node:module';

import { ConvertError, ExitCode } from './errors.mjs';
import { namesSchema } from './input.mjs';

const LOG_OFF = 6;
const SUPPORTED_SCHEMA = /^IFC(2X3|4|4X3)/;

/** The reader library, or a ConvertError that says how to install it. */
export function loadReader() {
  const require = createRequire(import.meta.url);
  try {
    return require('web-ifc');
  } catch (error) {
    throw new ConvertError(ExitCode.Reader, `cannot load web-ifc: ${error.message.split('\n')[0]}`);
  }
}

/** A JSON-safe text: a lone half of a surrogate pair becomes the replacement character. */
export function wellFormed(text) {
  return text.replace(
    /[\ud800-\udbff](?![\udc00-\udfff])|(?<![\ud800-\udbff])[\udc00-\udfff]/g, '\ufffd');
}

/** The text of an attribute value; "" for null, lists and references. */
export function text(value) {
  if (value === null || value === undefined || Array.isArray(value)) return '';
  if (typeof value !== 'object') return wellFormed(String(value));
  const plain = value._representationValue ?? value.value;
  if (plain === null || plain === undefined || Array.isArray(plain)) return '';
  return wellFormed(String(plain));
}

/** The number of an attribute value, or null. */
export function number(value) {
  if (value === null || value === undefined) return null;
  const plain = typeof value === 'object' ? value._representationValue ?? value.value : value;
  const result = typeof plain === 'number' ? plain : Number.parseFloat(plain);
  return Number.isFinite(result) ? result : null;
}

/** The numbers of a list attribute, however the reader wraps the list. */
export function numbers(value) {
  const list = Array.isArray(value) ? value : value?.value;
  return Array.isArray(list) ? list.map((item) => number(item) ?? 0) : [];
}

/** The express id that a value refers to, or 0. */
export function ref(value) {
  return value && value.type === 5 && Number.isInteger(value.value) ? value.value : 0;
}

/** The express ids in a list attribute. */
export function refs(value) {
  return Array.isArray(value) ? value.map(ref).filter((id) => id > 0) : [];
}

export class IfcModel {
  /** Opens `bytes`; `W` is the reader module. Full circles get `circleSegments` chords. */
  static async open(W, bytes, circleSegments) {
    const api = new W.IfcAPI();
    try {
      await api.Init(undefined, true);
    } catch (error) {
      throw new ConvertError(ExitCode.Reader, `web-ifc does not start: ${error}`);
    }
    api.SetLogLevel(LOG_OFF);
    let handle;
    try {
      handle = api.OpenModel(new Uint8Array(bytes.buffer, bytes.byteOffset, bytes.byteLength), {
        COORDINATE_TO_ORIGIN: false,
        // The reader counts points, the first one once more at the end, so it makes one chord
        // fewer than it is asked for.
        CIRCLE_SEGMENTS: circleSegments + 1,
      });
    } catch (error) {
      const reason = namesSchema(bytes) ? `the reader cannot open it: ${error.message ?? error}`
        : 'not an IFC file: no FILE_SCHEMA in its header';
      throw new ConvertError(ExitCode.Input, reason);
    }
    const schema = handle < 0 ? '' : IfcModel.#schema(api, W, handle);
    if (schema === '') {
      throw new ConvertError(ExitCode.Input,
        'no schema can be read from the file: it is damaged or names none');
    }
    if (!SUPPORTED_SCHEMA.test(schema)) {
      throw new ConvertError(ExitCode.Input, `schema not supported: "${schema}"`);
    }
    return new IfcModel(api, W, handle, schema);
  }

  static #schema(api, W, handle) {
    const header = api.GetHeaderLine(handle, W.FILE_SCHEMA);
    return text(header?.arguments?.[0]?.[0]).toUpperCase();
  }

  constructor(api, W, handle, schema) {
    this.api = api;
    this.W = W;
    this.handle = handle;
    this.schema = schema;
    this.classNames = new Map();
  }

  close() {
    this.api.CloseModel(this.handle);
  }

  readerVersion() {
    return String(this.api.GetVersion());
  }

  /** The line with this id as an object of named attributes, or null when it is not there. */
  line(id) {
    if (!id) return null;
    try {
      return this.api.GetLine(this.handle, id) ?? null;
    } catch {
      return null;
    }
  }

  /**
   * Members of a list attribute of typed lists, as { typeName, values }, the type as "IFCARCINDEX".
   * The lines of named attributes do not tell the types of such members.
   */
  typedLists(id, argument) {
    let list;
    try {
      list = this.api.GetRawLineData(this.handle, id).arguments[argument];
    } catch {
      return [];
    }
    return (Array.isArray(list) ? list : []).map((member) => ({
      typeName: member?.typecode === this.W.IFCARCINDEX ? 'IFCARCINDEX' : 'IFCLINEINDEX',
      values: numbers(member),
    }));
  }

  /** Ascending ids of all lines of an IFC class and its subclasses, as "IfcWall". */
  ids(className) {
    const type = this.W[className.toUpperCase()];
    if (type === undefined) return [];
    const found = this.api.GetLineIDsWithType(this.handle, type, true);
    const result = [...new Set(found)].sort((a, b) => a - b);
    found.delete?.();
    return result;
  }

  /** All lines of a class, in ascending order of id; broken ones are left out. */
  *lines(className) {
    for (const id of this.ids(className)) {
      const line = this.line(id);
      if (line) yield line;
    }
  }

  /** Class name as the schema writes it, as "IfcWallStandardCase". */
  className(line) {
    return line ? this.#nameOfType(line.type) : '';
  }

  /** Class name of a line by its id, without reading the line: meshes may be huge. */
  classNameOf(id) {
    return id ? this.#nameOfType(this.api.GetLineType(this.handle, id)) : '';
  }

  #nameOfType(type) {
    let name = this.classNames.get(type);
    if (name === undefined) {
      name = this.api.GetNameFromTypeCode(type) ?? '';
      this.classNames.set(type, name);
    }
    return name;
  }

  headerText(headerType, index) {
    try {
      return text(this.api.GetHeaderLine(this.handle, headerType)?.arguments?.[index]);
    } catch {
      return '';
    }
  }
}
