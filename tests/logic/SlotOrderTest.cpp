// SPDX-License-Identifier: Apache-2.0
// Hosts are built separately against the same declarations, so the virtual slots must not move.
#include "KYCollisionBase/logic/IModelDataSource.h"
#include "KYCollisionBase/model/ICollisionModel.h"
#include "KYCollisionBase/platform/IXMLTree.h"
#include "KYCollisionBase/result/IKyResultData.h"
#include "KYCollisionBase/rule/IKyCollisionFilter.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

#include <gtest/gtest.h>

namespace {

using KYCOLLISION::LOGIC::IModelDataSource;
using KYCOLLISION::MODEL::ICollisionModel;
using KYCOLLISION::RESULT::IKyResultData;
using KYCOLLISION::Rule::IKyCollisionFilter;

#if !defined(_MSC_VER)

// In the Itanium ABI, a pointer to a virtual member is 1 plus the byte offset in the table.
template <class Member>
std::size_t EntryOf(Member member) {
    std::uintptr_t offset = 0;
    static_assert(sizeof(member) >= sizeof(offset));
    std::memcpy(&offset, &member, sizeof(offset));
    return (offset - 1) / sizeof(void*);
}

// For classes with a virtual destructor in slot 0, which takes two entries.
template <class Member>
std::size_t SlotOf(Member member) {
    return EntryOf(member) - 1;
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

TEST(SlotOrder, OfTheResultsIsFixed) {
    using Items = std::vector<KYCOLLISION::RESULT::KyResultItem*>;
    using OfFloor = void (IKyResultData::*)(const IKyResultData::FloorKey&, Items&);
    using OfSelectors = void (IKyResultData::*)(const std::vector<SWorkSetFloorInfo>&, bool,
                                                std::vector<IKyResultData::ResultGroup>&, bool);
    EXPECT_EQ(SlotOf(&IKyResultData::ReleaseResults), 1U);
    EXPECT_EQ(SlotOf(&IKyResultData::GetModelInfo), 2U);
    EXPECT_EQ(SlotOf(static_cast<OfFloor>(&IKyResultData::GetResultItems)), 3U);
    EXPECT_EQ(SlotOf(static_cast<OfSelectors>(&IKyResultData::GetResultItems)), 4U);
    EXPECT_EQ(SlotOf(&IKyResultData::GetAllResultItems), 5U);
    EXPECT_EQ(SlotOf(&IKyResultData::RemoveOldResults), 6U);
    EXPECT_EQ(SlotOf(&IKyResultData::AppendNewResults), 7U);
    EXPECT_EQ(SlotOf(&IKyResultData::InitByResults), 8U);
    EXPECT_EQ(SlotOf(&IKyResultData::InitResultItemAttHeightInfo), 9U);
    EXPECT_EQ(SlotOf(&IKyResultData::ReCatulateAxisInfo), 10U);
    EXPECT_EQ(SlotOf(&IKyResultData::SerializeToXml), 11U);
    EXPECT_EQ(SlotOf(&IKyResultData::InitByXml), 12U);
    EXPECT_EQ(SlotOf(&IKyResultData::SetTimeStamp), 13U);
    EXPECT_EQ(SlotOf(&IKyResultData::GetTimeStamp), 14U);
}

TEST(SlotOrder, OfTheFilterIsFixed) {
    EXPECT_EQ(SlotOf(&IKyCollisionFilter::GetFilterType), 1U);
    EXPECT_EQ(SlotOf(&IKyCollisionFilter::Clone), 2U);
    EXPECT_EQ(SlotOf(&IKyCollisionFilter::ToString), 3U);
    EXPECT_EQ(SlotOf(&IKyCollisionFilter::Equal), 4U);
    EXPECT_EQ(SlotOf(&IKyCollisionFilter::IsMeetCondition), 5U);
}

TEST(SlotOrder, OfTheXmlTreeIsFixed) {
    EXPECT_EQ(EntryOf(&IXMLTree::LoadText), 0U);
    EXPECT_EQ(EntryOf(&IXMLTree::LoadFile), 1U);
    EXPECT_EQ(EntryOf(&IXMLTree::SaveFile), 2U);
    EXPECT_EQ(EntryOf(&IXMLTree::AddChild), 3U);
    EXPECT_EQ(EntryOf(&IXMLTree::GotoRoot), 4U);
    EXPECT_EQ(EntryOf(&IXMLTree::GetChildCount), 5U);
    EXPECT_EQ(EntryOf(&IXMLTree::GetChildCountByTag), 6U);
    EXPECT_EQ(EntryOf(&IXMLTree::GetAttribute), 7U);
    EXPECT_EQ(EntryOf(&IXMLTree::SetAttribute), 8U);
    EXPECT_EQ(EntryOf(&IXMLTree::GetChildText), 9U);
    EXPECT_EQ(EntryOf(&IXMLTree::GotoParent), 10U);
    EXPECT_EQ(EntryOf(&IXMLTree::GetChildAttribute), 11U);
    EXPECT_EQ(EntryOf(&IXMLTree::GetChildTag), 12U);
    EXPECT_EQ(EntryOf(&IXMLTree::GotoChild), 13U);
    EXPECT_EQ(EntryOf(&IXMLTree::Destroy), 14U);
}

#endif

}  // namespace
