// SPDX-License-Identifier: Apache-2.0
#pragma once

/// The kind of work set that the host opened; the library stores it and never interprets it.
enum KyModelType : int { KyModelTypeDefault = 1 };

/// The host's description of a work set.
struct SKyModelInfo {
    KyModelType modelType = KyModelTypeDefault;
    int modelId = -1;
};
