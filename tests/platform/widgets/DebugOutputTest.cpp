// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/platform/widgets/DebugOutput.h"

#include <QLoggingCategory>
#include <string>
#include <vector>

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

std::vector<QString> logged;

void Log(QtMsgType, const QMessageLogContext& context, const QString& text) {
    if (qstrcmp(context.category, "kycollision.ui") == 0) logged.push_back(text);
}

class DebugOutput : public testing::Test {
  protected:
    DebugOutput() : previous_(qInstallMessageHandler(Log)) { logged.clear(); }
    ~DebugOutput() override {
        QLoggingCategory::setFilterRules({});
        BASETOOLS::SetDebugOutput({});
        qInstallMessageHandler(previous_);
    }

  private:
    QtMessageHandler previous_;
};

}  // namespace

TEST_F(DebugOutput, IsSilentByDefault) {
    BASETOOLS::OutputDebugString(L"text");
    EXPECT_THAT(logged, IsEmpty());
}

TEST_F(DebugOutput, GoesToItsLoggingCategoryOnceThatIsOn) {
    QLoggingCategory::setFilterRules("kycollision.ui.debug=true");
    BASETOOLS::OutputDebugString(L"层 1");
    EXPECT_THAT(logged, ElementsAre(QString::fromStdWString(L"层 1")));
}

TEST_F(DebugOutput, GoesToTheReceiverOfTheHost) {
    std::vector<std::wstring> received;
    BASETOOLS::SetDebugOutput([&](const std::wstring& text) { received.push_back(text); });
    BASETOOLS::OutputDebugString(L"one");
    BASETOOLS::SetDebugOutput({});
    BASETOOLS::OutputDebugString(L"two");
    EXPECT_THAT(received, ElementsAre(L"one"));
}
