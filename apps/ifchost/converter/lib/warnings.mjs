// SPDX-License-Identifier: Apache-2.0

/** Collects what was odd in a file; `product` is an express id or 0. */
export class Warnings {
  #items = [];

  add(code, text, product = 0) {
    this.#items.push({ code, text, product });
  }

  list() {
    return this.#items;
  }
}
