// SPDX-License-Identifier: Apache-2.0
#include <QScrollBar>
#include <QTest>
#include <memory>
#include <vector>

#include <gmock/gmock.h>

#include "ResultItems.h"
#include "desk/core/Session.h"
#include "desk/view/ResultList.h"
#include "desk/view/ResultModel.h"
#include "support/PriorityScope.h"

using desk::ResultColumn;
using desk::ResultFilter;
using desk::ResultModel;
using KYCOLLISION::RESULT::KyResultItem;

namespace {

constexpr int kMany = 200000;

// Counts what it is asked.
class CountingModel : public ResultModel {
  public:
    using ResultModel::ResultModel;

    mutable int asked = 0;

    QVariant data(const QModelIndex& index, int role) const override {
        if (role == Qt::DisplayRole) ++asked;
        return ResultModel::data(index, role);
    }
};

class LongResultList : public testing::Test {
  protected:
    LongResultList() {
        std::vector<KyResultItem*> borrowed;
        for (int i = 0; i < kMany; ++i) {
            ItemPlan plan;
            plan.guidA = L"a" + std::to_wstring(i);
            plan.main.Specialty = L"土建";
            plan.main.Category = L"墙";
            plan.main.Name = L"wall " + std::to_wstring(kMany - i);
            plan.second.Specialty = L"暖通";
            plan.second.Category = L"风管";
            plan.second.Name = i % 1000 == 0 ? L"odd" : L"duct";
            items_.push_back(MakeItem(plan));
            borrowed.push_back(items_.back().get());
        }
        model_.SetItems(std::move(borrowed), {L"F1"});
        list_.SetResultModel(&model_);
        list_.resize(900, 500);
        list_.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&list_));
    }

    std::vector<std::unique_ptr<KyResultItem>> items_;
    desk::Session session_;  // reads the shipped priorities, which these replace
    const kycb::test::PriorityScope priorities_{{{L"土建", 2}, {L"暖通", 1}}};
    const desk::KindNames names_{"en"};
    CountingModel model_{session_, names_, nullptr};
    desk::ResultList list_;
};

}  // namespace

TEST_F(LongResultList, AsksOnlyForTheRowsOnDisplayAsItIsScrolled) {
    ASSERT_EQ(model_.rowCount(), kMany);
    model_.asked = 0;
    constexpr int kSteps = 50;
    for (int i = 1; i <= kSteps; ++i) {
        list_.verticalScrollBar()->setValue(i * list_.verticalScrollBar()->maximum() / kSteps);
        list_.viewport()->repaint();
    }
    EXPECT_GT(model_.asked, 0);
    // Rows on display, one more for a row cut at each end, times the columns; drawn at most twice.
    const int onDisplay =
        (list_.viewport()->height() / list_.rowHeight(0) + 3) * desk::kResultColumnCount;
    EXPECT_LE(model_.asked, onDisplay * kSteps * 2);
    EXPECT_EQ(list_.rowAt(list_.viewport()->height() - 1), kMany - 1);
}

TEST_F(LongResultList, IsSortedAndFilteredAsAWhole) {
    model_.sort(static_cast<int>(ResultColumn::kMainName), Qt::AscendingOrder);
    const auto nameAt = [&](int row) {
        return model_.index(row, static_cast<int>(ResultColumn::kMainName)).data().toString();
    };
    EXPECT_EQ(nameAt(0), "wall 1");
    EXPECT_EQ(nameAt(kMany - 1), "wall 99999");
    ResultFilter filter;
    filter.text = L"odd";
    model_.SetFilter(filter);
    EXPECT_EQ(model_.rowCount(), kMany / 1000);
    model_.SetFilter({});
    EXPECT_EQ(model_.rowCount(), kMany);
}

TEST_F(LongResultList, IsEditedInItsLastRow) {
    const QModelIndex last = model_.index(kMany - 1, static_cast<int>(ResultColumn::kState));
    list_.scrollToBottom();
    list_.setCurrentIndex(last);
    QTest::keyClick(&list_, Qt::Key_2);
    EXPECT_EQ(last.data().toString(), "Resolved");
    EXPECT_EQ(model_.Rows().CountByState().at(2), 1U);
}
