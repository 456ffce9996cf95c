// SPDX-License-Identifier: Apache-2.0
// Converts one IFC file to one scene package.
//
//     node convert.mjs --input FILE --output PACKAGE [--circle-segments N]
//
// Progress and messages go to standard error, one a line: "progress PHASE DONE TOTAL" and
// "error TEXT". Standard output carries nothing of use: the reader library logs there.

import fs from 'node:fs';
import { parseArgs } from 'node:util';

import { ConvertError, ExitCode } from './lib/errors.mjs';
import { readStepFile } from './lib/input.mjs';
import { IfcModel, loadReader } from './lib/model.mjs';
import { readScene } from './lib/scene.mjs';
import { Warnings } from './lib/warnings.mjs';
import { writePackage } from './lib/writer.mjs';

// At 12, the reader's own default, a 1 m duct comes out 17 mm too small.
const DEFAULT_CIRCLE_SEGMENTS = 24;
const MIN_CIRCLE_SEGMENTS = 3;
const MAX_CIRCLE_SEGMENTS = 1024;

// Steps between two progress lines of a phase.
const PROGRESS_STEPS = 50;

function parseOptions(argv) {
  let values;
  try {
    ({ values } = parseArgs({
      args: argv,
      options: {
        input: { type: 'string' },
        output: { type: 'string' },
        'circle-segments': { type: 'string', default: String(DEFAULT_CIRCLE_SEGMENTS) },
      },
    }));
  } catch (error) {
    throw new ConvertError(ExitCode.WrongUse, error.message);
  }
  if (!values.input || !values.output) {
    throw new ConvertError(ExitCode.WrongUse, '--input and --output are needed');
  }
  const circleSegments = Number(values['circle-segments']);
  if (!Number.isInteger(circleSegments) || circleSegments < MIN_CIRCLE_SEGMENTS ||
      circleSegments > MAX_CIRCLE_SEGMENTS) {
    throw new ConvertError(ExitCode.WrongUse,
      `--circle-segments is a whole number from ${MIN_CIRCLE_SEGMENTS} to ${MAX_CIRCLE_SEGMENTS}`);
  }
  return { input: values.input, output: values.output, circleSegments };
}

function progress(phase, done, total) {
  const step = Math.max(1, Math.floor(total / PROGRESS_STEPS));
  if (done % step !== 0 && done !== total) return;
  fs.writeSync(process.stderr.fd, `progress ${phase} ${done} ${total}\n`);
}

function version() {
  const file = new URL('./package.json', import.meta.url);
  const { name, version: number } = JSON.parse(fs.readFileSync(file, 'utf8'));
  return `${name} ${number}`;
}

async function convert(options) {
  progress('reading', 0, 1);
  const W = loadReader();
  const warnings = new Warnings();
  const { bytes, encoding } = readStepFile(options.input);
  if (encoding !== 'utf-8') {
    warnings.add('text-encoding', `the texts are not UTF-8 and were taken for ${encoding}`);
  }
  const model = await IfcModel.open(W, bytes, options.circleSegments);
  const scene = readScene(
    model, { circleSegments: options.circleSegments, version: version(), warnings }, progress);
  model.close();
  progress('writing', 0, 1);
  writePackage(scene, options.output);
}

try {
  await convert(parseOptions(process.argv.slice(2)));
} catch (error) {
  const known = error instanceof ConvertError;
  const message = known ? error.message : `the reader crashed: ${error?.stack ?? error}`;
  fs.writeSync(process.stderr.fd, `error ${message.split('\n')[0]}\n`);
  process.exitCode = known ? error.exitCode : ExitCode.Crash;
}
