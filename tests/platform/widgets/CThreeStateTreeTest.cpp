// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/platform/widgets/CThreeStateTree.h"

#include <QStyle>
#include <QStyleOptionViewItem>
#include <QTest>
#include <algorithm>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

using CheckState = CThreeStateTree::CheckState;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

namespace {

// Notes what NeedAction is asked.
class AskingTree : public CThreeStateTree {
  public:
    bool answer = true;
    std::vector<std::pair<HTREEITEM, bool>> asked;
    CheckState stateWhenAsked = CheckState::kUnchecked;

    QPoint BoxOf(HTREEITEM item) const {
        const QModelIndex index = indexFromItem(ToWidgetItem(item));
        QStyleOptionViewItem option;
        initViewItemOption(&option);
        option.rect = visualRect(index);
        option.features |= QStyleOptionViewItem::HasCheckIndicator;
        return style()
            ->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &option, this)
            .center();
    }

  protected:
    bool NeedAction(HTREEITEM item, bool checked) override {
        asked.emplace_back(item, checked);
        stateWhenAsked = GetCheckState(item);
        return answer;
    }
};

class CThreeStateTreeTest : public testing::Test {
  protected:
    CThreeStateTreeTest() {
        tree_.expandAll();
        tree_.resize(300, 300);
        tree_.show();
    }

    void ClickBox(HTREEITEM item) {
        QTest::mouseClick(tree_.viewport(), Qt::LeftButton, {}, tree_.BoxOf(item));
    }

    AskingTree tree_;
    HTREEITEM root_ = tree_.InsertItem(L"root", nullptr);
    HTREEITEM left_ = tree_.InsertItem(L"left", root_);
    HTREEITEM right_ = tree_.InsertItem(L"right", root_);
    HTREEITEM leaf1_ = tree_.InsertItem(L"leaf1", left_);
    HTREEITEM leaf2_ = tree_.InsertItem(L"leaf2", left_);
};

}  // namespace

TEST_F(CThreeStateTreeTest, StartsUnchecked) {
    for (const HTREEITEM item : {root_, left_, right_, leaf1_, leaf2_})
        EXPECT_EQ(tree_.GetCheckState(item), CheckState::kUnchecked);
    EXPECT_EQ(tree_.GetCheckState(nullptr), CheckState::kUnchecked);
}

TEST_F(CThreeStateTreeTest, ChecksEverythingBelowAnItem) {
    EXPECT_TRUE(tree_.SetCheck(left_, true));
    EXPECT_EQ(tree_.GetCheckState(leaf1_), CheckState::kChecked);
    EXPECT_EQ(tree_.GetCheckState(leaf2_), CheckState::kChecked);
    EXPECT_EQ(tree_.GetCheckState(right_), CheckState::kUnchecked);
}

TEST_F(CThreeStateTreeTest, ShowsAPartlyCheckedParentUpToTheTop) {
    tree_.SetCheck(leaf1_, true);
    EXPECT_EQ(tree_.GetCheckState(left_), CheckState::kPartial);
    EXPECT_EQ(tree_.GetCheckState(root_), CheckState::kPartial);
    tree_.SetCheck(leaf2_, true);
    EXPECT_EQ(tree_.GetCheckState(left_), CheckState::kChecked);
    EXPECT_EQ(tree_.GetCheckState(root_), CheckState::kPartial);
    tree_.SetCheck(right_, true);
    EXPECT_EQ(tree_.GetCheckState(root_), CheckState::kChecked);
    tree_.SetCheck(left_, false);
    EXPECT_EQ(tree_.GetCheckState(root_), CheckState::kPartial);
    tree_.SetCheck(right_, false);
    EXPECT_EQ(tree_.GetCheckState(root_), CheckState::kUnchecked);
}

TEST_F(CThreeStateTreeTest, ChecksByAClickOnTheBox) {
    ClickBox(left_);
    EXPECT_EQ(tree_.GetCheckState(left_), CheckState::kChecked);
    EXPECT_EQ(tree_.GetCheckState(leaf2_), CheckState::kChecked);
    EXPECT_EQ(tree_.GetCheckState(root_), CheckState::kPartial);
    ClickBox(left_);
    EXPECT_EQ(tree_.GetCheckState(left_), CheckState::kUnchecked);
}

TEST_F(CThreeStateTreeTest, ChecksNothingByAClickOnTheText) {
    QTest::mouseClick(tree_.viewport(), Qt::LeftButton, {}, tree_.BoxOf(left_) + QPoint(40, 0));
    EXPECT_EQ(tree_.GetCheckState(left_), CheckState::kUnchecked);
    EXPECT_EQ(tree_.GetSelectedItem(), left_);
}

TEST_F(CThreeStateTreeTest, ChecksThePartlyCheckedByAClick) {
    tree_.SetCheck(leaf1_, true);
    ClickBox(left_);
    EXPECT_EQ(tree_.GetCheckState(left_), CheckState::kChecked);
    EXPECT_EQ(tree_.GetCheckState(leaf2_), CheckState::kChecked);
}

TEST_F(CThreeStateTreeTest, TogglesByTheSpaceBar) {
    tree_.SelectItem(right_);
    tree_.setFocus();
    QTest::keyClick(&tree_, Qt::Key_Space);
    EXPECT_EQ(tree_.GetCheckState(right_), CheckState::kChecked);
    QTest::keyClick(&tree_, Qt::Key_Space);
    EXPECT_EQ(tree_.GetCheckState(right_), CheckState::kUnchecked);
}

TEST_F(CThreeStateTreeTest, ClicksTheBoxInRightToLeftLayoutToo) {
    tree_.setLayoutDirection(Qt::RightToLeft);
    ClickBox(right_);
    EXPECT_EQ(tree_.GetCheckState(right_), CheckState::kChecked);
}

TEST_F(CThreeStateTreeTest, AsksOnceBeforeTheUsersChange) {
    ClickBox(left_);
    EXPECT_THAT(tree_.asked, ElementsAre(Pair(left_, true)));
    EXPECT_EQ(tree_.stateWhenAsked, CheckState::kUnchecked);
    tree_.asked.clear();
    ClickBox(left_);
    EXPECT_THAT(tree_.asked, ElementsAre(Pair(left_, false)));
}

TEST_F(CThreeStateTreeTest, ChangesNothingWhenTheAnswerIsNo) {
    tree_.answer = false;
    ClickBox(left_);
    tree_.SelectItem(right_);
    QTest::keyClick(&tree_, Qt::Key_Space);
    EXPECT_EQ(tree_.GetCheckState(left_), CheckState::kUnchecked);
    EXPECT_EQ(tree_.GetCheckState(right_), CheckState::kUnchecked);
    EXPECT_EQ(tree_.asked.size(), 2U);
}

TEST_F(CThreeStateTreeTest, DoesNotAskTheProgram) {
    tree_.answer = false;
    EXPECT_TRUE(tree_.SetCheck(left_, true));
    EXPECT_EQ(tree_.GetCheckState(left_), CheckState::kChecked);
    EXPECT_THAT(tree_.asked, IsEmpty());
    EXPECT_FALSE(tree_.SetCheck(nullptr, true));
}

TEST_F(CThreeStateTreeTest, TellsOfEachChangeOnceWhenAllIsDone) {
    std::vector<CheckState> rootStates;
    QObject::connect(&tree_, &CThreeStateTree::CheckChanged, &tree_,
                     [&](HTREEITEM) { rootStates.push_back(tree_.GetCheckState(root_)); });
    ClickBox(left_);
    tree_.SetCheck(right_, true);
    EXPECT_THAT(rootStates, ElementsAre(CheckState::kPartial, CheckState::kChecked));
    tree_.answer = false;
    ClickBox(left_);
    EXPECT_EQ(rootStates.size(), 2U);
}

TEST_F(CThreeStateTreeTest, KeepsNewItemsOfACheckedParentChecked) {
    tree_.SetCheck(left_, true);
    EXPECT_EQ(tree_.GetCheckState(tree_.InsertItem(L"new", left_)), CheckState::kChecked);
    EXPECT_EQ(tree_.GetCheckState(left_), CheckState::kChecked);
    EXPECT_EQ(tree_.GetCheckState(tree_.InsertItem(L"new", root_)), CheckState::kUnchecked);
    EXPECT_EQ(tree_.GetCheckState(root_), CheckState::kPartial);
}

TEST_F(CThreeStateTreeTest, SumsUpAgainWhenAnItemGoes) {
    tree_.SetCheck(leaf1_, true);
    tree_.DeleteItem(leaf2_);
    EXPECT_EQ(tree_.GetCheckState(left_), CheckState::kChecked);
    EXPECT_EQ(tree_.GetCheckState(root_), CheckState::kPartial);
    tree_.DeleteItem(leaf1_);
    EXPECT_EQ(tree_.GetCheckState(left_), CheckState::kChecked);
    tree_.DeleteItem(root_);
    EXPECT_EQ(tree_.GetCount(), 0U);
}

TEST_F(CThreeStateTreeTest, LetsEditorsOfOtherDataThrough) {
    tree_.SetItemText(left_, L"renamed");
    EXPECT_EQ(tree_.GetItemText(left_), L"renamed");
    EXPECT_THAT(tree_.asked, IsEmpty());
}

TEST_F(CThreeStateTreeTest, ShowsTheFrameOfAnUncheckedBoxOnADarkGround) {
    QPalette dark;
    dark.setColor(QPalette::Window, QColor(36, 40, 46));
    dark.setColor(QPalette::Base, QColor(27, 31, 36));
    dark.setColor(QPalette::Text, QColor(230, 233, 237));
    tree_.setPalette(dark);
    const QImage shown = tree_.viewport()->grab().toImage();
    // From the middle of the box to the left, beyond its frame and not as far as anything else.
    const QPoint box = tree_.BoxOf(tree_.GetRootItem()) * shown.devicePixelRatio();
    int brightest = 0;
    for (int x = 0; x < 10; ++x)
        brightest = std::max(brightest, qGray(shown.pixel(box.x() - x, box.y())));
    EXPECT_GT(brightest, 120);
}
