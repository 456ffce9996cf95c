// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <any>
#include <string>
#include <utility>
#include <vector>

/// One floor as the user sees it, which may span several projects of the work set.
struct SCollisionFloor {
    std::wstring name;  ///< display name; becomes the current check floor of a run
    std::any hostData;  ///< the host's own; the library neither reads nor writes it
    /// The (project id, floor name) pairs that make up this floor, in the order of checking. Pairs
    /// that the model does not know are passed over.
    std::vector<std::pair<int, std::wstring>> floorKeys;
};
