// SPDX-License-Identifier: Apache-2.0
// Hosts are built separately against the same declarations, so the virtual slots must not move.
#include "KYCollisionBase/logic/IModelDataSource.h"
#include "KYCollisionBase/model/ICollisionModel.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

#include <gtest/gtest.h>

namespace {

using KYCOLLISION::LOGIC::IModelDataSource;
using KYCOLLISION::MODEL::ICollisionModel;

#if !defined(_MSC_VER)

// In the Itanium ABI, a pointer to a virtual member is 1 plus the byte offset in the table, and the
// destructor in slot 0 takes two entries.
template <class Member>
std::size_t SlotOf(Member member) {
    std::uintptr_t offset = 0;
    static_assert(sizeof(member) >= sizeof(offset));
    std::memcpy(&offset, &member, sizeof(offset));
    return (offset - 1) / sizeof(void*) - 1;
}

TEST(SlotOrder, OfTheDataSourceIsFixed) {
    EXPECT_EQ(SlotOf(&IModelDataSource::CreateCollisionModel), 1U);
    EXPECT_EQ(SlotOf(&IModelDataSource::CreateOpcodeModel), 2U);
    EXPECT_EQ(SlotOf(&IModelDataSource::GetObjAttributes), 3U);
    EXPECT_EQ(SlotOf(&IModelDataSource::GetFloorAxisInfo), 4U);
    EXPECT_EQ(SlotOf(&IModelDataSource::ShowProgress), 5U);
    EXPECT_EQ(SlotOf(&IModelDataSource::GetObjDisplayName), 6U);
    EXPECT_EQ(SlotOf(&IModelDataSource::HighlightObj), 7U);
    EXPECT_EQ(SlotOf(&IModelDataSource::GetObjXiaoLeiName), 8U);
}

TEST(SlotOrder, OfTheModelRootIsFixed) {
    using FloorKey = ICollisionModel::FloorKey;
    EXPECT_EQ(SlotOf(&ICollisionModel::ReleaseModel), 1U);
    EXPECT_EQ(SlotOf(&ICollisionModel::QueryEntity), 2U);
    EXPECT_EQ(SlotOf(&ICollisionModel::GetObjectModelInfo), 3U);
    EXPECT_EQ(SlotOf(static_cast<void (ICollisionModel::*)(const FloorKey&)>(
                  &ICollisionModel::AnalyseBoxRelated)),
              4U);
    EXPECT_EQ(SlotOf(static_cast<void (ICollisionModel::*)()>(&ICollisionModel::AnalyseBoxRelated)),
              5U);
    EXPECT_EQ(SlotOf(&ICollisionModel::CollisionCheck), 6U);
    EXPECT_EQ(SlotOf(&ICollisionModel::GetAllObjectNum), 7U);
    EXPECT_EQ(SlotOf(&ICollisionModel::ClearCollisionResultData), 8U);
    EXPECT_EQ(SlotOf(&ICollisionModel::ResetModelByCollisionRule), 9U);
    EXPECT_EQ(SlotOf(&ICollisionModel::GetFloorCollisionResult), 10U);
    EXPECT_EQ(SlotOf(&ICollisionModel::GetFloorExistingHoles), 11U);
    EXPECT_EQ(SlotOf(&ICollisionModel::GetFloorResultTempNum), 12U);
    EXPECT_EQ(SlotOf(&ICollisionModel::GetModelInfo), 13U);
    EXPECT_EQ(SlotOf(&ICollisionModel::IsSupportHole), 14U);
}

#endif

}  // namespace
