// SPDX-License-Identifier: Apache-2.0
// The window on a building of real models from several trades. The folder of the models is
// KYCLASH_MODELS, or "shared/models" beside the source tree; without it the test is skipped.
#include "KYCollisionBase/platform/widgets/CThreeStateTree.h"

#include <QLabel>

#include "DeskFlow.h"
#include "desk/view/SceneView.h"

namespace {

class FederatedFlow : public DeskFlow {
  protected:
    void SetUp() override {
        DeskFlow::SetUp();
        if (IsSkipped()) return;
        for (const char* name : {"duplex_arch.ifc", "duplex_electrical.ifc"}) {
            const auto model = ifchost::testing::ModelFolder() / name;
            if (!std::filesystem::exists(model)) {
                GTEST_SKIP() << "no " << model.string() << "; KYCLASH_MODELS names another folder";
            }
            models_ << QString::fromStdString(model.string());
        }
    }

    // The first row whose components are of different models; -1 when there is none.
    int RowAcrossModels() {
        for (int row = 0; row < Rows(); ++row) {
            const auto& item = Model().Rows().At(static_cast<std::size_t>(row));
            if (item.GetProjectA() != item.GetProjectB()) return row;
        }
        return -1;
    }

    desk::ResultModel& Model() { return static_cast<desk::ResultModel&>(*List().model()); }

    QStringList models_;
};

}  // namespace

TEST_F(FederatedFlow, FindsAndShowsClashesBetweenModels) {
    Open(models_);
    EXPECT_EQ(window_->CurrentSession().Models().size(), 2U);
    EXPECT_GT(Get<CThreeStateTree>("floors").GetCount(), 1U);
    Check();
    EXPECT_TRUE(script_.problems.isEmpty()) << script_.problems.join('\n').toStdString();
    Keep("13-federated");

    const int row = RowAcrossModels();
    ASSERT_GE(row, 0);
    ClickRow(row);
    EXPECT_TRUE(Get<QLabel>("detailSecond").isVisible());
    EXPECT_EQ(window_->View().Diagnostics().Scene().Root().Children().at(0)->Children().size(), 3U);
    Keep("14-federated-clash");
}
