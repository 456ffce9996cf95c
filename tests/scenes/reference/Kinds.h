// SPDX-License-Identifier: Apache-2.0
// What the reference knows about kinds of components: plain tables and their lookups.
#pragma once

#include "KYCollisionBase/model/AttCategory.h"

#include <string>
#include <vector>

namespace kycb::scenes::reference {

using KYCOLLISION::MODEL::AttCategory;

/// The kinds of one specialty and major category that have a value in common.
struct KindRow {
    std::wstring specialty;
    std::wstring dalei;
    std::vector<std::wstring> xiaolei;
    int value = 1;
};
using KindTable = std::vector<KindRow>;

const KindTable& StructuralMembers();
/// The value is the kind of the services run, 1 to 5.
const KindTable& ServicesRuns();
const KindTable& FilteredPipes();
/// The value is the code of the opening.
const KindTable& Openings();
/// Trays, trunking and ducts; no minor category means any.
const KindTable& MeasuredAtUnderside();

/// The value of the row that lists a kind, or `otherwise`.
int ValueOf(const KindTable& table, const AttCategory& kind, int otherwise);

/// The key of a kind; empty without a specialty or a major category.
std::wstring CategoryPath(const AttCategory& kind);

}  // namespace kycb::scenes::reference
