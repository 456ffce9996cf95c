// SPDX-License-Identifier: Apache-2.0
// JSON with four-space indents that keeps short lists and the entries of long ones on one line.

const LINE = 100;

function inline(value) {
  if (Array.isArray(value)) return `[${value.map(inline).join(', ')}]`;
  if (value === null || typeof value !== 'object') return JSON.stringify(value);
  const members = Object.entries(value).map(([key, v]) => `${JSON.stringify(key)}: ${inline(v)}`);
  return `{ ${members.join(', ')} }`;
}

function block(value, indent) {
  const short = inline(value);
  if (value === null || typeof value !== 'object') return short;
  if (indent.length + short.length <= LINE) return short;
  const deeper = `${indent}    `;
  const lines = Array.isArray(value)
    ? value.map((v) => block(v, deeper))
    : Object.entries(value).map(([key, v]) => `${JSON.stringify(key)}: ${block(v, deeper)}`);
  const [open, close] = Array.isArray(value) ? '[]' : '{}';
  return `${open}\n${lines.map((line) => deeper + line).join(',\n')}\n${indent}${close}`;
}

export const formatJson = (value) => `${block(value, '')}\n`;
