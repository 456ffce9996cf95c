// SPDX-License-Identifier: Apache-2.0
// Result items and their containers, as the shared object offers them.
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <KYCollisionBase/KYCollisionBase.h>
#include <boost/lexical_cast.hpp>
#include <gtest/gtest.h>

#include "exports/ExpectOperation.h"

namespace {

using namespace KYCOLLISION::LOGIC;
using namespace KYCOLLISION::MODEL;
using namespace KYCOLLISION::RESULT;
using kycb::test::ExpectOperation;
using std::wstring;
using FloorKey = std::pair<int, wstring>;
using Items = std::vector<KyResultItem*>;
using AllItems = std::map<FloorKey, Items>;

TEST(ResultExports, OfferTheFieldsOfAResultItem) {
    using T = KyResultItem;
    for (const auto getter :
         {&T::GetResultId,     &T::GetFloorA,       &T::GetFloorB,     &T::GetObjGuidA,
          &T::GetObjGuidB,     &T::GetClashModel,   &T::GetPosition,   &T::GetAxisPos,
          &T::GetViewport,     &T::GetPicuuid,      &T::GetPicmd5,     &T::GetRemark,
          &T::GetHeightA,      &T::GetHeightB,      &T::GetSpecialtyA, &T::GetSpecialtyB,
          &T::GetCategoryA,    &T::GetCategoryB,    &T::GetNameA,      &T::GetNameB,
          &T::GetSubcategoryA, &T::GetSubcategoryB, &T::GetSysCodeA,   &T::GetSysCodeB}) {
        ExpectOperation<wstring (T::*)() const>(getter);
    }
    for (const auto getter : {&T::GetProjectA, &T::GetProjectB, &T::GetDisposeState}) {
        ExpectOperation<int (T::*)() const>(getter);
    }
    ExpectOperation<std::int64_t (T::*)() const>(&T::GetPicsize);
    ExpectOperation<const SObjAttInfo& (T::*)() const>(&T::GetAttInfoA);
    ExpectOperation<const SObjAttInfo& (T::*)() const>(&T::GetAttInfoB);
    ExpectOperation<std::tuple<double, double, double> (T::*)() const>(&T::GetClashPoint);
    ExpectOperation<QNIM::GeometryPrimitiveResource::CQNIMPosition (T::*)() const>(
        &T::GetClashQNIMPoint);
    for (const auto setter : {&T::SetResultId, &T::SetClashModel, &T::SetRemark, &T::SetHeightA,
                              &T::SetHeightB, &T::SetViewport, &T::InitResultId}) {
        ExpectOperation<void (T::*)(wstring)>(setter);
    }
    ExpectOperation<void (T::*)(int)>(&T::SetDisposeState);
    ExpectOperation<void (T::*)(wstring, wstring, std::int64_t)>(&T::SetPicture);
    ExpectOperation<void (T::*)(int, wstring, wstring, int, wstring, wstring, wstring)>(
        &T::SetBaseInfo);
    ExpectOperation<void (T::*)(const SObjAttInfo&)>(&T::SetObjAttInfo_Main);
    ExpectOperation<void (T::*)(const SObjAttInfo&)>(&T::SetObjAttInfo_Second);
}

TEST(ResultExports, OfferTheOtherOperationsOfAResultItem) {
    using T = KyResultItem;
    for (const auto comparison : {&T::IsSameResult_MainInfo, &T::IsSameResult_CanBeEditInfo,
                                  &T::IsSameResult_OtherInfo, &T::IsSameResult_AllInfo}) {
        ExpectOperation<bool (T::*)(const T*) const>(comparison);
    }
    ExpectOperation<void (T::*)(const IModelDataSource*, const ICollisionModel*)>(
        &T::InitResultItemAttHeightInfo);
    ExpectOperation<void (T::*)(const KYTOOLS::GRAPH::QuadTree<SQNGIAxisItem*>&)>(
        &T::ReCatulateAxisInfo);
    ExpectOperation<bool (*)(T*, T*)>(&T::PriorityCompareHigh);
    ExpectOperation<wstring (*)(const wstring&, int)>(&T::HeightOffset);
    EXPECT_EQ(T::s_strSeparator, L" / ");
}

TEST(ResultExports, OfferTheOperationsOfAFloor) {
    using T = KyFloorResultData;
    ExpectOperation<wstring (T::*)() const>(&T::GetFloorName);
    ExpectOperation<void (T::*)()>(&T::ReleaseResults);
    ExpectOperation<void (T::*)(Items)>(&T::AppendNewResults);
    ExpectOperation<bool (T::*)(KyResultItem*)>(&T::AppendResultItem);
    ExpectOperation<void (T::*)(Items&) const>(&T::GetResultItems_byAtt);
    ExpectOperation<void (T::*)(double, double, Items&) const>(&T::GetResultItems_byHeight);
    ExpectOperation<void (T::*)(const IModelDataSource*, const ICollisionModel*)>(
        &T::InitResultItemAttHeightInfo);
    ExpectOperation<void (T::*)(const IModelDataSource*, int)>(&T::ReCatulateAxisInfo);
    const T floor(L"1F");
    EXPECT_EQ(T(floor).GetFloorName(), L"1F");
}

TEST(ResultExports, OfferTheOperationsOfAProject) {
    using T = KyProjectResultData;
    ExpectOperation<int (T::*)() const>(&T::GetProjectId);
    ExpectOperation<void (T::*)()>(&T::ReleaseResults);
    ExpectOperation<void (T::*)(const FloorKey&)>(&T::RemoveOldResults);
    ExpectOperation<void (T::*)(const FloorKey&, Items)>(&T::AppendNewResults);
    ExpectOperation<void (T::*)(AllItems&) const>(&T::GetAllResultItems);
    ExpectOperation<void (T::*)(const FloorKey&, Items&) const>(&T::GetResultItems_byAtt);
    ExpectOperation<void (T::*)(double, double, Items&) const>(&T::GetResultItems_byHeight);
    ExpectOperation<bool (T::*)(KyResultItem*)>(&T::AppendResultItem);
    ExpectOperation<void (T::*)(const IModelDataSource*, const ICollisionModel*)>(
        &T::InitResultItemAttHeightInfo);
    ExpectOperation<void (T::*)(const IModelDataSource*)>(&T::ReCatulateAxisInfo);
}

TEST(ResultExports, OfferTheWorkSet) {
    using T = KyWorksetResultData;
    ExpectOperation<void (T::*)(const SKyModelInfo&)>(&T::SetModelInfo);
    ExpectOperation<KyProjectResultData* (T::*)(int) const>(&T::GetProjectResults);
    ExpectOperation<bool (T::*)(KyResultItem*)>(&T::AppendResultItem);
    const std::unique_ptr<T> results = T::Create(KyModelTypeDefault, 1);
    results->AppendResultItem(new KyResultItem);
    // The virtual operations are found through an object.
    IKyResultData& base = *results;
    Items items;
    base.GetResultItems({-1, L""}, items);
    EXPECT_EQ(items.size(), 1U);
    std::vector<std::pair<SWorkSetFloorInfo, Items>> groups;
    base.GetResultItems(std::vector<SWorkSetFloorInfo>(1), true, groups, true);
    EXPECT_EQ(groups.size(), 1U);
    const T copy(*results);
    EXPECT_EQ(copy.GetProjectResults(-1), results->GetProjectResults(-1));
}

TEST(ResultExports, LetTheirErrorsReachTheHost) {
    KyResultItem item;
    item.SetBaseInfo(1, L"1F", L"a", 1, L"1F", L"b", L"a,b,c");
    EXPECT_THROW(item.GetClashPoint(), std::invalid_argument);
    const std::filesystem::path path = testing::TempDir() + "kycb-exports-result.xml";
    std::ofstream(path) << "<r><p><f><i projectA=\"one\"/></f></p></r>";
    const auto results = KyWorksetResultData::Create(KyModelTypeDefault, 1);
    EXPECT_THROW(results->InitByXml(path.wstring()), boost::bad_lexical_cast);
    std::filesystem::remove(path);
}

}  // namespace
