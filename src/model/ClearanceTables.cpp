// SPDX-License-Identifier: Apache-2.0
#include "model/ClearanceTables.h"

namespace kycb::model {

namespace {

constexpr int kKindCount = 6;
constexpr int kSpacing[kKindCount][kKindCount] = {
    {150, 150, 150, 150, 150, 200},  // air duct
    {150, 150, 150, 150, 150, 50},   // cable tray
    {150, 150, 150, 400, 400, 50},   // drainage pipe
    {150, 150, 400, 150, 150, 50},   // cold-water or pressure pipe
    {150, 150, 400, 150, 150, 50},   // hot-water pipe
    {200, 50, 50, 50, 50, 0},
};

bool IsTableKind(int kind) {
    return kind >= 1 && kind <= kKindCount;
}

}  // namespace

int SingleClearance(int kind) {
    if (kind == 1) return 200;
    return kind >= 2 && kind <= 5 ? 50 : 0;
}

int RunSpacing(int kindA, int kindB) {
    if (!IsTableKind(kindA) || !IsTableKind(kindB)) return 0;
    return kSpacing[kindA - 1][kindB - 1];
}

}  // namespace kycb::model
