// SPDX-License-Identifier: Apache-2.0
// node samples/generate.mjs [DIR]: writes building.ifc and expected-clashes.json into DIR (by
// default the folder of this script).

import { mkdirSync, writeFileSync } from 'node:fs';
import { dirname, join } from 'node:path';
import { argv } from 'node:process';
import { fileURLToPath, pathToFileURL } from 'node:url';

import { expectedClashes } from './expected.mjs';
import { makeBuilding } from './lib/building.mjs';
import { writeIfc } from './lib/ifc-writer.mjs';
import { formatJson } from './lib/json.mjs';

/** The text of both files. */
export function generate() {
  const building = makeBuilding();
  return {
    'building.ifc': writeIfc(building),
    'expected-clashes.json': formatJson(expectedClashes(building)),
  };
}

function main(folder) {
  mkdirSync(folder, { recursive: true });
  for (const [name, text] of Object.entries(generate())) {
    writeFileSync(join(folder, name), text);
    console.log(`${join(folder, name)}: ${text.length} characters`);
  }
}

if (argv[1] && import.meta.url === pathToFileURL(argv[1]).href) {
  main(argv[2] ?? dirname(fileURLToPath(import.meta.url)));
}
