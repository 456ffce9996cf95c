// SPDX-License-Identifier: Apache-2.0
// Pairs of meshes as buildings have them, in millimetres; the same on every machine.
#pragma once

#include "KYCollisionBase/opcode/IndexedTriangle.h"
#include "KYCollisionBase/opcode/Point.h"

#include <cstdint>
#include <string>
#include <vector>

namespace kycb::bench {

struct SceneMesh {
    std::vector<IceMaths::Point> vertices;
    std::vector<IceMaths::IndexedTriangle> triangles;
};

/// Pair k of a scene is a[k] against b[k]. Small meshes come in many pairs, so that caches and
/// branch predictors see what a run over a model shows them.
struct Scene {
    std::string name;
    std::size_t touchingPairs;  ///< of triangles, over all pairs of meshes, by exact arithmetic
    std::vector<SceneMesh> a;
    std::vector<SceneMesh> b;
};

std::vector<Scene> OpcodeScenes();

}  // namespace kycb::bench
