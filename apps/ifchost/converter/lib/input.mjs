// SPDX-License-Identifier: Apache-2.0
// Reads the bytes of an IFC file and makes sure that they are a whole STEP file in UTF-8.

import fs from 'node:fs';

import { ConvertError, ExitCode } from './errors.mjs';

// What Node.js reads at once.
const MAX_BYTES = 2 ** 31 - 1;
const HEAD_BYTES = 4096;
const HEADER_BYTES = 65536;
const TAIL_BYTES = 65536;
const CHUNK_BYTES = 1 << 24;

function readBytes(path) {
  if (fs.statSync(path, { throwIfNoEntry: false })?.size > MAX_BYTES) {
    throw new ConvertError(ExitCode.Input, 'cannot read the file: it is larger than 2 GiB');
  }
  try {
    return fs.readFileSync(path);
  } catch (error) {
    throw new ConvertError(ExitCode.Input, `cannot read the file: ${error.code ?? error.message}`);
  }
}

/**
 * Throws when the bytes are not a finished STEP file. The reader takes a file that was cut in the
 * middle without a word, which would silently lose everything behind the cut.
 */
function checkStepFrame(bytes) {
  const head = bytes.subarray(0, HEAD_BYTES).toString('latin1');
  if (!head.includes('ISO-10303-21')) {
    throw new ConvertError(ExitCode.Input, 'not an IFC file: no ISO-10303-21 at its beginning');
  }
  const tail = bytes.subarray(Math.max(0, bytes.length - TAIL_BYTES)).toString('latin1');
  if (!tail.includes('END-ISO-10303-21')) {
    throw new ConvertError(ExitCode.Input, 'the file is cut short: no END-ISO-10303-21 at its end');
  }
}

/** Whether the header says what the data are; the reader has no word of its own for a lack of it. */
export function namesSchema(bytes) {
  return Buffer.from(bytes.subarray(0, HEADER_BYTES)).toString('latin1').includes('FILE_SCHEMA');
}

function isUtf8(bytes) {
  const decoder = new TextDecoder('utf-8', { fatal: true });
  try {
    for (let at = 0; at < bytes.length; at += CHUNK_BYTES) {
      decoder.decode(bytes.subarray(at, at + CHUNK_BYTES), { stream: true });
    }
    decoder.decode();
    return true;
  } catch {
    return false;
  }
}

/**
 * Chinese programs write two-byte characters, so runs of bytes above 0x7f have even length;
 * western ones write single accented letters between plain ones.
 */
export function guessEncoding(bytes) {
  let even = 0;
  let odd = 0;
  let run = 0;
  for (let i = 0; i <= bytes.length; ++i) {
    if (i < bytes.length && bytes[i] > 0x7f) {
      ++run;
    } else if (run > 0) {
      if (run % 2 === 0) ++even;
      else ++odd;
      run = 0;
    }
  }
  return even >= odd ? 'gb18030' : 'windows-1252';
}

function transcode(bytes, encoding) {
  const decoder = new TextDecoder(encoding);
  const parts = [];
  for (let at = 0; at < bytes.length; at += CHUNK_BYTES) {
    const last = at + CHUNK_BYTES >= bytes.length;
    parts.push(Buffer.from(decoder.decode(bytes.subarray(at, at + CHUNK_BYTES), { stream: !last })));
  }
  return Buffer.concat(parts);
}

/** Returns { bytes, encoding }: UTF-8 bytes, and the encoding that the file was in. */
export function readStepFile(path) {
  const bytes = readBytes(path);
  checkStepFrame(bytes);
  if (isUtf8(bytes)) return { bytes, encoding: 'utf-8' };
  const encoding = guessEncoding(bytes);
  return { bytes: transcode(bytes, encoding), encoding };
}
