// SPDX-License-Identifier: Apache-2.0
#pragma once

/// The kind of work set that the host opened; the library stores it and never interprets it.
enum KyModelType : int { KyModelTypeDefault = 1 };

/// The host's description of a work set.
struct SKyModelInfo {
    KyModelType modelType = KyModelTypeDefault;
    int modelId = -1;
};

// The model tree describes itself with these, so they go by its namespace as well.
namespace KYCOLLISION::MODEL {
using ::KyModelType;
using ::SKyModelInfo;
}  // namespace KYCOLLISION::MODEL
