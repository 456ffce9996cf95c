// SPDX-License-Identifier: Apache-2.0
// Everything that can be seen of a run, as plain data; components are named by their number in the
// scene.
#pragma once

#include "KYCollisionBase/platform/CQNIMPosition.h"
#include "KYCollisionBase/result/CExistingHole.h"
#include "KYCollisionBase/result/SObjAttInfo.h"

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "scenes/Scene.h"

namespace kycb::scenes {

using Point = QNIM::GeometryPrimitiveResource::CQNIMPosition;

/// One recorded clash.
struct Record {
    std::size_t other = 0;
    Point point;  ///< mm
    int ownOffset = 0;
    int otherOffset = 0;
};

using Neighbours = std::vector<std::vector<std::size_t>>;
using Records = std::vector<std::vector<Record>>;

/// One question of the library for a mesh.
struct MeshCall {
    int projectId = 0;
    std::wstring id;
    int bodyOffset = 0;

    friend bool operator==(const MeshCall&, const MeshCall&) = default;
};

/// What a check run leaves behind.
struct CheckOutcome {
    int answer = 0;  ///< ECheckReturn
    bool done = false;
    std::wstring floor;
    int total = 0;
    int checked = 0;
    Records records;
    std::vector<MeshCall> meshCalls;
};

/// A result item without its id, which is made up at random.
struct ResultFields {
    int projectA = -1;
    std::wstring floorA;
    std::wstring guidA;
    int projectB = -1;
    std::wstring floorB;
    std::wstring guidB;
    std::wstring position;
    std::wstring clashModel;
    SObjAttInfo infoA;
    std::wstring heightA;
    SObjAttInfo infoB;
    std::wstring heightB;
    std::wstring axisPos;
};

/// What result generation gives. `error` is what() of the exception that left it.
struct ResultOutcome {
    int countBefore = 0;
    std::string error;
    std::map<FloorKey, std::vector<ResultFields>> items;
    Records remaining;
};

struct HoleOutcome {
    std::string error;
    std::map<FloorKey, std::vector<KYCOLLISION::RESULT::CExistingHole>> items;
};

/// A new item of which only the two components and the position were told, after it took the rest
/// from the model. `error` is what() of the exception that cut this short.
struct Refreshed {
    ResultFields item;
    std::string error;
};

// The first difference between what is expected and what was found, in words; none when equal.
std::optional<std::string> Difference(const Neighbours& expected, const Neighbours& found);
/// Clash points agree to the last bit: the collider computes in double precision, which is finer by
/// 2^29 than the single precision that it then rounds to once.
std::optional<std::string> Difference(const CheckOutcome& expected, const CheckOutcome& found);
std::optional<std::string> Difference(const ResultOutcome& expected, const ResultOutcome& found);
std::optional<std::string> Difference(const Refreshed& expected, const Refreshed& found);
std::optional<std::string> Difference(const HoleOutcome& expected, const HoleOutcome& found);

}  // namespace kycb::scenes
