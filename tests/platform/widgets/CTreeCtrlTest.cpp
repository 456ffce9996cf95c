// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/platform/widgets/CTreeCtrl.h"

#include <QTest>

#include <gmock/gmock.h>

#include "support/ScrolledTree.h"

namespace {

class CTreeCtrlTest : public testing::Test {
  protected:
    CTreeCtrl tree_;
    HTREEITEM a_ = tree_.InsertItem(L"a", nullptr);
    HTREEITEM b_ = tree_.InsertItem(L"b", nullptr);
    HTREEITEM a1_ = tree_.InsertItem(L"a1", a_);
    HTREEITEM a2_ = tree_.InsertItem(L"a2", a_);
    HTREEITEM a11_ = tree_.InsertItem(L"a11", a1_);
};

}  // namespace

TEST_F(CTreeCtrlTest, AppendsItemsBehindTheLastChild) {
    EXPECT_EQ(tree_.GetRootItem(), a_);
    EXPECT_EQ(tree_.GetNextSiblingItem(a_), b_);
    EXPECT_EQ(tree_.GetNextSiblingItem(b_), nullptr);
    EXPECT_EQ(tree_.GetChildItem(a_), a1_);
    EXPECT_EQ(tree_.GetNextSiblingItem(a1_), a2_);
    EXPECT_EQ(tree_.GetParentItem(a11_), a1_);
    EXPECT_EQ(tree_.GetParentItem(a_), nullptr);
    EXPECT_EQ(tree_.GetCount(), 5U);
}

TEST_F(CTreeCtrlTest, FindsThePreviousSibling) {
    EXPECT_EQ(tree_.GetNextItem(a2_, TVGN_PREVIOUS), a1_);
    EXPECT_EQ(tree_.GetNextItem(a1_, TVGN_PREVIOUS), nullptr);
    EXPECT_EQ(tree_.GetNextItem(b_, TVGN_PREVIOUS), a_);
}

TEST_F(CTreeCtrlTest, FindsTheRootWhateverTheItem) {
    EXPECT_EQ(tree_.GetNextItem(a11_, TVGN_ROOT), a_);
    EXPECT_EQ(CTreeCtrl().GetRootItem(), nullptr);
}

TEST_F(CTreeCtrlTest, FollowsNoUnknownRelation) {
    EXPECT_EQ(tree_.GetNextItem(a_, 77), nullptr);
}

TEST_F(CTreeCtrlTest, AnswersNothingForNoItem) {
    EXPECT_EQ(tree_.GetNextItem(nullptr, TVGN_NEXT), nullptr);
    EXPECT_EQ(tree_.GetNextItem(nullptr, TVGN_CHILD), nullptr);
    EXPECT_EQ(tree_.GetItemText(nullptr), L"");
    EXPECT_EQ(tree_.GetItemState(nullptr, TVIS_EXPANDED), 0U);
    EXPECT_FALSE(tree_.ItemHasChildren(nullptr));
    EXPECT_FALSE(tree_.SetItemText(nullptr, L"x"));
    EXPECT_FALSE(tree_.Expand(nullptr, TVE_COLLAPSE));
    EXPECT_FALSE(tree_.DeleteItem(nullptr));
}

TEST_F(CTreeCtrlTest, RefusesAParentOfAnotherTree) {
    CTreeCtrl other;
    EXPECT_EQ(other.InsertItem(L"x", a_), nullptr);
    EXPECT_EQ(other.GetCount(), 0U);
}

TEST_F(CTreeCtrlTest, KeepsTexts) {
    EXPECT_EQ(tree_.GetItemText(a1_), L"a1");
    EXPECT_TRUE(tree_.SetItemText(a1_, L"给排水"));
    EXPECT_EQ(tree_.GetItemText(a1_), L"给排水");
}

TEST_F(CTreeCtrlTest, OpensNothingByItself) {
    EXPECT_EQ(tree_.GetItemState(a_, TVIS_EXPANDED), 0U);
    EXPECT_EQ(tree_.GetSelectedItem(), nullptr);
}

TEST_F(CTreeCtrlTest, OpensAndClosesBranches) {
    EXPECT_TRUE(tree_.Expand(a_, TVE_EXPAND));
    EXPECT_EQ(tree_.GetItemState(a_, TVIS_EXPANDED | TVIS_SELECTED), TVIS_EXPANDED);
    EXPECT_TRUE(tree_.Expand(a_, TVE_COLLAPSE));
    EXPECT_EQ(tree_.GetItemState(a_, TVIS_EXPANDED), 0U);
    EXPECT_TRUE(tree_.Expand(a_, TVE_TOGGLE));
    EXPECT_EQ(tree_.GetItemState(a_, TVIS_EXPANDED), TVIS_EXPANDED);
    EXPECT_FALSE(tree_.Expand(a_, 99));
}

TEST_F(CTreeCtrlTest, KeepsABranchOpenBelowAClosedOne) {
    tree_.Expand(a_, TVE_EXPAND);
    tree_.Expand(a1_, TVE_EXPAND);
    tree_.Expand(a_, TVE_COLLAPSE);
    EXPECT_EQ(tree_.GetItemState(a1_, TVIS_EXPANDED), TVIS_EXPANDED);
}

TEST_F(CTreeCtrlTest, LeavesLeavesClosedForWhenTheyGetChildren) {
    EXPECT_FALSE(tree_.Expand(b_, TVE_EXPAND));
    tree_.InsertItem(L"b1", b_);
    EXPECT_EQ(tree_.GetItemState(b_, TVIS_EXPANDED), 0U);
}

TEST_F(CTreeCtrlTest, SelectsOneItem) {
    tree_.SelectItem(a2_);
    EXPECT_EQ(tree_.GetSelectedItem(), a2_);
    EXPECT_EQ(tree_.GetItemState(a2_, TVIS_SELECTED), TVIS_SELECTED);
}

TEST_F(CTreeCtrlTest, DeletesAnItemWithEverythingBelow) {
    EXPECT_TRUE(tree_.DeleteItem(a_));
    EXPECT_EQ(tree_.GetCount(), 1U);
    EXPECT_EQ(tree_.GetRootItem(), b_);
    tree_.DeleteAllItems();
    EXPECT_EQ(tree_.GetCount(), 0U);
}

TEST_F(CTreeCtrlTest, ScrollsToTheTopOnRequest) {
    kycbtest::ShowWithManyRows(tree_, nullptr);
    kycbtest::ScrollToTheBottom(tree_);
    tree_.SendMessage(WM_VSCROLL, SB_TOP, nullptr);
    EXPECT_EQ(kycbtest::ScrolledBy(tree_), 0);
}

TEST_F(CTreeCtrlTest, KnowsItsRuntimeClass) {
    EXPECT_STREQ(tree_.GetRuntimeClass()->m_lpszClassName, "CTreeCtrl");
}

TEST_F(CTreeCtrlTest, TellsItsFrame) {
    tree_.setGeometry(30, 40, 200, 100);
    RECT frame;
    tree_.GetWindowRect(&frame);
    EXPECT_EQ(frame.right - frame.left, 200);
    EXPECT_EQ(frame.bottom - frame.top, 100);
}

TEST_F(CTreeCtrlTest, IsMovedThroughByKeyboard) {
    tree_.show();
    tree_.SelectItem(a_);
    QTest::keyClick(&tree_, Qt::Key_Right);
    EXPECT_EQ(tree_.GetItemState(a_, TVIS_EXPANDED), TVIS_EXPANDED);
    QTest::keyClick(&tree_, Qt::Key_Down);
    EXPECT_EQ(tree_.GetSelectedItem(), a1_);
    QTest::keyClick(&tree_, Qt::Key_Left);
    QTest::keyClick(&tree_, Qt::Key_Left);
    EXPECT_EQ(tree_.GetItemState(a_, TVIS_EXPANDED), 0U);
}
