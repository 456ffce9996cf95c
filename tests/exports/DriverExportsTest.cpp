// SPDX-License-Identifier: Apache-2.0
// The driver, and the interfaces that a host derives from, as the shared object offers them.
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <KYCollisionBase/KYCollisionBase.h>
#include <gtest/gtest.h>

#include "exports/ExpectOperation.h"

namespace {

using namespace KYCOLLISION::LOGIC;
using namespace KYCOLLISION::MODEL;
using namespace KYCOLLISION::RESULT;
using namespace KYCOLLISION::Rule;
using kycb::test::ExpectOperation;
using FloorKey = std::pair<int, std::wstring>;
using Floors = std::vector<SCollisionFloor>;
using Driver = CCollisionCheck;

// A host that has a model of its own kind and nothing else.
class Model : public ICollisionModel {
  public:
    void ReleaseModel() override {}
    void QueryEntity(const KYTOOLS::GRAPH::BoundingBox3d&,
                     std::vector<ObjectModelInfo*>&) override {}
    ObjectModelInfo* GetObjectModelInfo(const std::pair<int, std::wstring>&,
                                        std::wstring) const override {
        return nullptr;
    }
    void AnalyseBoxRelated(const std::pair<int, std::wstring>&) override {}
    void AnalyseBoxRelated() override {}
    void CollisionCheck(IModelDataSource*, const std::pair<int, std::wstring>&, int&) override {}
    int GetAllObjectNum(const std::pair<int, std::wstring>&) override { return 7; }
    void ClearCollisionResultData() override {}
    void ResetModelByCollisionRule(KyCollisionRuleMgr*) override {}
    void GetFloorCollisionResult(IModelDataSource*, const std::pair<int, std::wstring>&,
                                 std::vector<KyResultItem*>&) override {}
    void GetFloorExistingHoles(IModelDataSource*, const std::pair<int, std::wstring>&,
                               std::vector<std::shared_ptr<CExistingHole>>&) const override {}
    int GetFloorResultTempNum(IModelDataSource*, const std::pair<int, std::wstring>&) override {
        return 0;
    }
    const SKyModelInfo& GetModelInfo() const override { return info_; }
    bool IsSupportHole() const override { return true; }

  private:
    SKyModelInfo info_;
};

class Source : public IModelDataSource {
  public:
    ICollisionModel* CreateCollisionModel() override { return new Model; }
    Opcode::Model* CreateOpcodeModel(int, const boost::any&, int) override { return nullptr; }
    bool GetObjAttributes(int, const boost::any&,
                          std::map<std::wstring, std::wstring>&) const override {
        return false;
    }
    void GetFloorAxisInfo(int, const std::wstring&, std::vector<SQNGIAxisItem*>&,
                          KYTOOLS::GRAPH::QuadTree<SQNGIAxisItem*>&) const override {}
    void ShowProgress(const std::wstring&) override {}
    std::wstring GetObjDisplayName(int, const boost::any&) const override { return {}; }
    void HighlightObj(int, const boost::any&) override {}
    std::wstring GetObjXiaoLeiName(int, const std::wstring&, const std::wstring&) const override {
        return {};
    }
};

TEST(DriverExports, RunWithAHostsOwnSourceAndModel) {
    CCollisionCheck check;
    EXPECT_EQ(check.CollisionCheck({}), CHECK_NO_MODEL);
    check.SetDataSource(new Source);
    check.SetCollisionRule(new KyCollisionRuleMgr);
    ASSERT_TRUE(check.InitCollisionModel());
    CCollisionCheck::s_bStopCheck = false;
    EXPECT_EQ(check.CollisionCheck({{L"1F", {}, {{1, L"1F"}, {2, L"1F"}}}}), CHECK_SUCCESS);
    EXPECT_EQ(check.GetAllCheckObjectNum(), 14);
}

TEST(DriverExports, OfferEveryOperation) {
    ExpectOperation<void (Driver::*)()>(&Driver::Release);
    ExpectOperation<void (Driver::*)(IModelDataSource*)>(&Driver::SetDataSource);
    ExpectOperation<IModelDataSource* (Driver::*)() const>(&Driver::GetDataSource);
    ExpectOperation<void (Driver::*)(KyCollisionRuleMgr*)>(&Driver::SetCollisionRule);
    ExpectOperation<KyCollisionRuleMgr* (Driver::*)() const>(&Driver::GetCollisionRule);
    ExpectOperation<bool (Driver::*)()>(&Driver::InitCollisionModel);
    ExpectOperation<ICollisionModel* (Driver::*)()>(&Driver::GetCollisionModel);
    ExpectOperation<bool (Driver::*)()>(&Driver::IsCheckEnvironmentOk);
    ExpectOperation<void (Driver::*)()>(&Driver::AnalyseBoxRelated);
    ExpectOperation<int (Driver::*)(const std::vector<FloorKey>&)>(&Driver::GetAllObjectNum);
    ExpectOperation<void (Driver::*)()>(&Driver::ResetCollisionTempData);
    ExpectOperation<ECheckReturn (Driver::*)(const Floors&)>(&Driver::CollisionCheck);
    ExpectOperation<int (Driver::*)()>(&Driver::GetAllCheckObjectNum);
    ExpectOperation<int (Driver::*)()>(&Driver::GetCheckedObjectNum);
    ExpectOperation<bool (Driver::*)()>(&Driver::CheckIsSuccessDone);
    ExpectOperation<void (Driver::*)()>(&Driver::ResetCheckStatus);
    ExpectOperation<std::wstring (Driver::*)()>(&Driver::GetCurCheckFloor);
    ExpectOperation<void (Driver::*)(const Floors&,
                                     std::map<FloorKey, std::vector<KyResultItem*>>&)>(
        &Driver::GetCollisionResult);
    ExpectOperation<void (Driver::*)(
        const Floors&, std::map<FloorKey, std::vector<std::shared_ptr<CExistingHole>>>&)>(
        &Driver::GetExistingHoles);
    ExpectOperation<int (Driver::*)(const std::vector<FloorKey>&)>(&Driver::GetResultTempNum);
    ExpectOperation<bool*>(&Driver::s_bStopCheck);
}

}  // namespace
