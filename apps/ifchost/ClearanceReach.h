// SPDX-License-Identifier: Apache-2.0
// How far the clearance tables can make a run reach beyond its body.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>

namespace ifchost {

/// Kinds of runs: 1 air duct, 2 cable tray, 3 drainage, 4 pressure and 5 hot-water pipe.
inline constexpr std::size_t kRunKinds = 5;

/// Clearance of a run from a structural member by kind - 1 (mm); all of it is put on the run.
inline constexpr std::array<int, kRunKinds> kSingleClearance = {200, 50, 50, 50, 50};

/// Spacing of two runs by their kinds - 1 (mm); each of the two is given one half.
inline constexpr std::array<std::array<int, kRunKinds>, kRunKinds> kRunSpacing = {{
    {150, 150, 150, 150, 150},
    {150, 150, 150, 150, 150},
    {150, 150, 150, 400, 400},
    {150, 150, 400, 150, 150},
    {150, 150, 400, 150, 150},
}};

/// The largest offset that the collision library can ask for on a run of this kind (mm); 0 for
/// kinds that are no runs. It is computed from the clearances above, which repeat those of the
/// library, because hosts have to give boxes before any offset is asked for.
constexpr int LargestOffset(int kind) {
    if (kind < 1 || kind > static_cast<int>(kRunKinds)) return 0;
    const auto row = static_cast<std::size_t>(kind - 1);
    int largest = kSingleClearance[row];
    for (const int spacing : kRunSpacing[row])
        largest = std::max(largest, spacing / 2);
    return largest;
}

}  // namespace ifchost
