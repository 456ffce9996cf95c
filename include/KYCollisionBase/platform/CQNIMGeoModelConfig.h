// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace QNIM {

/// Configuration of the geometry operations.
class CQNIMGeoModelConfig {
  public:
    /// The absolute tolerance (mm): points closer than this count as one.
    static double getabs() { return 1e-6; }
};

}  // namespace QNIM
