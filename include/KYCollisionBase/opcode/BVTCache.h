// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace Opcode {

class Model;

/// The two models of a query, both borrowed.
struct BVTCache {
    const Model* Model0 = nullptr;
    const Model* Model1 = nullptr;

    /// Back to no models.
    void ResetCache() {
        Model0 = nullptr;
        Model1 = nullptr;
    }
};

}  // namespace Opcode
