// SPDX-License-Identifier: Apache-2.0
// Real buildings through work set, data source and driver.
#include "KYCollisionBase/logic/CCollisionCheck.h"
#include "KYCollisionBase/result/CExistingHole.h"
#include "KYCollisionBase/result/KyResultItem.h"

#include <algorithm>
#include <map>
#include <memory>
#include <numeric>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "ConvertedModels.h"
#include "ifchost/BuiltinRules.h"
#include "ifchost/IfcDataSource.h"

namespace ifchost {
namespace {

using KYCOLLISION::LOGIC::CCollisionCheck;
using KYCOLLISION::RESULT::CExistingHole;
using KYCOLLISION::RESULT::KyResultItem;
namespace fs = std::filesystem;

class RealModels : public ::testing::Test {
  protected:
    void SetUp() override {
        if (const std::string why = testing::WhyNoModels(); !why.empty()) GTEST_SKIP() << why;
    }

    std::shared_ptr<const IfcWorkset> Load(const std::vector<std::string>& names) {
        std::vector<fs::path> files;
        for (const std::string& name : names)
            files.push_back(testing::ModelFolder() / name);
        return testing::ConvertToWorkset(files, folder_);
    }

    static void ExpectSoundAccounts(const IfcWorkset& workset) {
        for (const WorksetProject& project : workset.Projects()) {
            const auto& counts = project.fateCounts;
            EXPECT_EQ(std::accumulate(counts.begin(), counts.end(), std::size_t{0}),
                      project.package.Products().size());
            for (std::size_t i = 0; i < project.accounts.size(); ++i) {
                const bool meshed = project.package.Products()[i].role == ProductRole::Element &&
                                    project.package.Products()[i].meshState == MeshState::Meshed;
                const ProductFate fate = project.accounts[i].fate;
                const bool explained =
                    fate == ProductFate::Checked || fate == ProductFate::LeftOut ||
                    fate == ProductFate::Unmapped || fate == ProductFate::ThroughParts;
                EXPECT_TRUE(!meshed || explained) << project.package.Products()[i].guid;
            }
        }
    }

    // The clashes as "class x class", each as often as it occurs.
    std::multiset<std::string> Clashes(const std::shared_ptr<const IfcWorkset>& workset) {
        CCollisionCheck check;
        check.SetDataSource(new IfcDataSource(workset));
        check.SetCollisionRule(MakeBuiltinRules(workset->CheckedKinds()).release());
        EXPECT_TRUE(check.InitCollisionModel());
        const auto floors = workset->CollisionFloors();
        EXPECT_EQ(check.CollisionCheck(floors), KYCOLLISION::LOGIC::CHECK_SUCCESS);
        std::map<std::pair<int, std::wstring>, std::vector<KyResultItem*>> results;
        check.GetCollisionResult(floors, results);
        std::multiset<std::string> clashes;
        for (const auto& [key, items] : results) {
            for (KyResultItem* owned : items) {
                const std::unique_ptr<KyResultItem> item(owned);
                clashes.insert(ClassOf(*workset, item->GetProjectA(), item->GetObjGuidA()) + " x " +
                               ClassOf(*workset, item->GetProjectB(), item->GetObjGuidB()));
                EXPECT_FALSE(item->GetHeightA().empty());
                EXPECT_FALSE(item->GetHeightB().empty());
            }
        }
        holes_.clear();
        check.GetExistingHoles(floors, holes_);
        return clashes;
    }

    static std::string ClassOf(const IfcWorkset& workset, int project, const std::wstring& guid) {
        return workset.Product(*workset.FindComponent(project, guid)).ifcClass;
    }

    std::size_t HoleCount() const {
        std::size_t count = 0;
        for (const auto& [key, list] : holes_)
            count += list.size();
        return count;
    }

    testing::TemporaryFolder folder_;
    testing::SilentMessages silence_;
    std::map<std::pair<int, std::wstring>, std::vector<std::shared_ptr<CExistingHole>>> holes_;
};

TEST_F(RealModels, OfOneHouseMeetInOnePlace) {
    const auto workset = Load({"duplex_arch.ifc", "duplex_electrical.ifc"});
    ExpectSoundAccounts(*workset);
    EXPECT_FALSE(workset->Origin().moved);
    EXPECT_TRUE(workset->Unmapped().empty());
    const auto clashes = Clashes(workset);
    // Lamps sit in walls, and the fire alarm panel does.
    EXPECT_GE(clashes.count("IfcWallStandardCase x IfcFlowTerminal"), 4U);
    EXPECT_EQ(clashes.count("IfcWallStandardCase x IfcDistributionControlElement"), 1U);
    // 14 doors, 24 windows, and the openings in slabs that nothing fills.
    EXPECT_EQ(HoleCount(), 14U + 24U + 2U);
}

TEST_F(RealModels, OfFourTradesFindTheDuctThroughTheRoof) {
    const auto workset = Load({"pcert_architecture.ifc", "pcert_structural.ifc", "pcert_hvac.ifc",
                               "pcert_landscaping.ifc"});
    ExpectSoundAccounts(*workset);
    ASSERT_EQ(workset->Projects().size(), 4U);
    const auto clashes = Clashes(workset);
    EXPECT_EQ(clashes.size(), 1U);
    EXPECT_EQ(clashes.count("IfcSlab x IfcDuctSegment"), 1U);
}

}  // namespace
}  // namespace ifchost
