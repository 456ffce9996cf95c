// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/model/KyEntityCategoryMgr.h"
#include "KYCollisionBase/platform/HostServices.h"
#include "KYCollisionBase/platform/widgets/DebugOutput.h"
#include "KYCollisionBase/ui/widgets/KyCustomTreeCtrl.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <map>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "support/ScrolledTree.h"

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

namespace {

using Levels = std::map<int, std::vector<HTREEITEM>>;

class OpenTree : public KyCustomTreeCtrl {
  public:
    using KyCustomTreeCtrl::NeedAction;
};

// Two specialties; the first has branches of different depths.
//   s1 > d1 > x1, x2
//      > d2 > x3 > y1
//      > d3 (a leaf)
//   s2 > e1
class KyCustomTreeCtrlTest : public testing::Test {
  protected:
    ~KyCustomTreeCtrlTest() override { BASETOOLS::SetDebugOutput({}); }

    bool IsOpen(HTREEITEM item) const { return tree_.GetItemState(item, TVIS_EXPANDED) != 0; }
    void Open(std::initializer_list<HTREEITEM> items) {
        for (const HTREEITEM item : items)
            tree_.Expand(item, TVE_EXPAND);
    }
    Levels LevelsOf(HTREEITEM item) {
        Levels levels;
        tree_.GetExpandNodeLevel(item, levels);
        return levels;
    }

    OpenTree tree_;
    HTREEITEM s1_ = tree_.InsertItem(L"s1", nullptr);
    HTREEITEM d1_ = tree_.InsertItem(L"d1", s1_);
    HTREEITEM x1_ = tree_.InsertItem(L"x1", d1_);
    HTREEITEM x2_ = tree_.InsertItem(L"x2", d1_);
    HTREEITEM d2_ = tree_.InsertItem(L"d2", s1_);
    HTREEITEM x3_ = tree_.InsertItem(L"x3", d2_);
    HTREEITEM y1_ = tree_.InsertItem(L"y1", x3_);
    HTREEITEM d3_ = tree_.InsertItem(L"d3", s1_);
    HTREEITEM s2_ = tree_.InsertItem(L"s2", nullptr);
    HTREEITEM e1_ = tree_.InsertItem(L"e1", s2_);
};

}  // namespace

TEST_F(KyCustomTreeCtrlTest, CountsLevelsFromOne) {
    EXPECT_EQ(tree_.GetItemLevel(nullptr), 0);
    EXPECT_EQ(tree_.GetItemLevel(s1_), 1);
    EXPECT_EQ(tree_.GetItemLevel(s2_), 1);
    EXPECT_EQ(tree_.GetItemLevel(d2_), 2);
    EXPECT_EQ(tree_.GetItemLevel(y1_), 4);
}

TEST_F(KyCustomTreeCtrlTest, JoinsThePathFromTheTopDown) {
    EXPECT_EQ(tree_.GetPathByItem(y1_), L"s1/d2/x3/y1");
    EXPECT_EQ(tree_.GetPathByItem(nullptr), L"");
}

TEST_F(KyCustomTreeCtrlTest, NamesATopLevelItemWithoutASlash) {
    EXPECT_EQ(tree_.GetPathByItem(s1_), L"s1");
}

TEST_F(KyCustomTreeCtrlTest, FindsAClosedBranchAsItsOwnFrontier) {
    EXPECT_THAT(LevelsOf(s1_), ElementsAre(Pair(1, ElementsAre(s1_))));
    EXPECT_THAT(LevelsOf(nullptr), IsEmpty());
}

TEST_F(KyCustomTreeCtrlTest, FindsTheFrontierByDepthInOrder) {
    Open({s1_, d2_});
    EXPECT_THAT(LevelsOf(s1_),
                ElementsAre(Pair(2, ElementsAre(d1_, d3_)), Pair(3, ElementsAre(x3_))));
}

TEST_F(KyCustomTreeCtrlTest, CountsTheFrontiersDepthFromTheTopOfTheTree) {
    Open({d2_});
    EXPECT_THAT(LevelsOf(d2_), ElementsAre(Pair(3, ElementsAre(x3_))));
}

TEST_F(KyCustomTreeCtrlTest, AddsToTheLevelsItIsGiven) {
    Levels levels{{1, {s2_}}};
    tree_.GetExpandNodeLevel(s1_, levels);
    EXPECT_THAT(levels, ElementsAre(Pair(1, ElementsAre(s2_, s1_))));
}

TEST_F(KyCustomTreeCtrlTest, IgnoresOpenBranchesBelowAClosedOne) {
    Open({d2_});
    EXPECT_THAT(LevelsOf(s1_), ElementsAre(Pair(1, ElementsAre(s1_))));
}

TEST_F(KyCustomTreeCtrlTest, OpensAFullyClosedTree) {
    tree_.ExpandByLevel(true);
    EXPECT_TRUE(IsOpen(s1_));
    EXPECT_FALSE(IsOpen(d1_));
}

TEST_F(KyCustomTreeCtrlTest, DoesNothingVisibleWhenItClosesAFullyClosedTree) {
    tree_.ExpandByLevel(false);
    EXPECT_FALSE(IsOpen(s1_));
}

TEST_F(KyCustomTreeCtrlTest, OpensEveryBranchOfTheOnlyDepth) {
    Open({s1_});
    tree_.ExpandByLevel(true);
    EXPECT_TRUE(IsOpen(d1_));
    EXPECT_TRUE(IsOpen(d2_));
    EXPECT_FALSE(IsOpen(d3_));
    EXPECT_FALSE(IsOpen(x3_));
}

TEST_F(KyCustomTreeCtrlTest, OpensTheSmallestDepthOnly) {
    Open({s1_, d2_});
    tree_.ExpandByLevel(true);
    EXPECT_TRUE(IsOpen(d1_));
    EXPECT_FALSE(IsOpen(x3_));
}

// A leaf on the frontier holds the smallest depth for good.
TEST_F(KyCustomTreeCtrlTest, OpensNothingMoreWhereTheSmallestDepthIsALeafs) {
    Open({s1_, d1_, d2_});
    tree_.ExpandByLevel(true);
    EXPECT_FALSE(IsOpen(x3_));
}

TEST_F(KyCustomTreeCtrlTest, ClosesTheParentsOfTheDeepestFrontierItemsOnly) {
    Open({s1_, d1_, d2_, x3_});
    tree_.ExpandByLevel(false);
    EXPECT_FALSE(IsOpen(x3_));
    EXPECT_TRUE(IsOpen(d2_));
    EXPECT_TRUE(IsOpen(d1_));
    tree_.ExpandByLevel(false);
    EXPECT_FALSE(IsOpen(d2_));
    EXPECT_FALSE(IsOpen(d1_));
    EXPECT_TRUE(IsOpen(s1_));
    tree_.ExpandByLevel(false);
    EXPECT_FALSE(IsOpen(s1_));
}

TEST_F(KyCustomTreeCtrlTest, ClosesTheOnlyDepth) {
    Open({s1_});
    tree_.ExpandByLevel(false);
    EXPECT_FALSE(IsOpen(s1_));
}

TEST_F(KyCustomTreeCtrlTest, WorksOnTheFirstTopLevelItemAlone) {
    Open({s2_});
    tree_.ExpandByLevel(true);
    EXPECT_TRUE(IsOpen(s1_));
    tree_.ExpandByLevel(false);
    tree_.ExpandByLevel(false);
    EXPECT_TRUE(IsOpen(s2_));
}

TEST_F(KyCustomTreeCtrlTest, DoesNothingWithAnEmptyTree) {
    KyCustomTreeCtrl empty;
    std::vector<std::wstring> traced;
    BASETOOLS::SetDebugOutput([&](const std::wstring& text) { traced.push_back(text); });
    empty.ExpandByLevel(true);
    empty.ExpandByLevel(false);
    EXPECT_THAT(traced, IsEmpty());
}

TEST_F(KyCustomTreeCtrlTest, TracesTheFrontierDepthByDepthBeforeItActs) {
    Open({s1_, d2_});
    std::vector<std::wstring> traced;
    BASETOOLS::SetDebugOutput([&](const std::wstring& text) { traced.push_back(text); });
    tree_.ExpandByLevel(true);
    EXPECT_THAT(traced, ElementsAre(L"\n=====Level：2=====\n", L"\ns1/d1", L"\ns1/d3",
                                    L"\n=====Level：3=====\n", L"\ns1/d2/x3"));
}

TEST_F(KyCustomTreeCtrlTest, ScrollsToTheTop) {
    kycbtest::ShowWithManyRows(tree_, d3_);
    for (const bool expand : {true, false}) {
        Open({s1_, d3_});
        kycbtest::ScrollToTheBottom(tree_);
        tree_.ExpandByLevel(expand);
        EXPECT_EQ(kycbtest::ScrolledBy(tree_), 0);
    }
}

TEST_F(KyCustomTreeCtrlTest, ScrollsToTheTopAlsoWhenThereIsNothingToClose) {
    kycbtest::ShowWithManyRows(tree_, nullptr);
    kycbtest::ScrollToTheBottom(tree_);
    tree_.ExpandByLevel(false);
    EXPECT_EQ(kycbtest::ScrolledBy(tree_), 0);
}

TEST_F(KyCustomTreeCtrlTest, ClosesAParentOfSeveralFrontierItemsOnce) {
    Open({s1_, d1_});
    int collapsed = 0;
    QObject::connect(&tree_, &QTreeWidget::itemCollapsed, &tree_, [&] { ++collapsed; });
    tree_.ExpandByLevel(false);
    EXPECT_FALSE(IsOpen(d1_));
    EXPECT_EQ(collapsed, 1) << "closing a closed branch again changes nothing";
}

TEST_F(KyCustomTreeCtrlTest, IsFilledWithTheCategoryTree) {
    const QTemporaryDir root;
    ASSERT_TRUE(QDir(root.path()).mkpath("config/system"));
    QFile file(root.filePath("config/system/productsort.xml"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(
        "<root><zhuanye name='a'><dalei name='b'><xiaolei name='c'/></dalei>"
        "<dalei><xiaolei name='of nothing'/></dalei></zhuanye><zhuanye name='d'/></root>");
    file.close();
    BASETOOLS::SetSysRoot((root.path() + '/').toStdWString());
    class Categories : public KYCOLLISION::MODEL::KyEntityCategoryMgr {};
    const std::vector<std::wstring> specs{L"a"};
    EXPECT_TRUE(Categories().InitTreeControl(&tree_, d3_, &specs));
    BASETOOLS::SetSysRoot(L"");

    const HTREEITEM a = tree_.GetChildItem(d3_);
    EXPECT_EQ(tree_.GetItemText(a), L"a");
    EXPECT_EQ(tree_.GetNextSiblingItem(a), nullptr);
    const HTREEITEM b = tree_.GetChildItem(a);
    EXPECT_EQ(tree_.GetNextSiblingItem(b), nullptr);
    EXPECT_EQ(tree_.GetPathByItem(tree_.GetChildItem(b)), L"s1/d3/a/b/c");
    EXPECT_FALSE(IsOpen(d3_)) << "nothing is opened by it";
}

TEST_F(KyCustomTreeCtrlTest, AllowsChangesByItsFlagWhateverTheItem) {
    EXPECT_TRUE(tree_.NeedAction(s1_, true));
    EXPECT_TRUE(tree_.NeedAction(nullptr, false));
    tree_.SetIsValidCheck(false);
    EXPECT_FALSE(tree_.NeedAction(s1_, true));
    EXPECT_FALSE(tree_.NeedAction(nullptr, false));
    tree_.SetIsValidCheck(true);
    EXPECT_TRUE(tree_.NeedAction(s1_, true));
}

TEST_F(KyCustomTreeCtrlTest, LocksItsCheckBoxesByTheFlag) {
    tree_.show();
    tree_.SelectItem(s1_);
    tree_.SetIsValidCheck(false);
    QTest::keyClick(&tree_, Qt::Key_Space);
    EXPECT_EQ(tree_.GetCheckState(s1_), CThreeStateTree::CheckState::kUnchecked);
    tree_.SetIsValidCheck(true);
    QTest::keyClick(&tree_, Qt::Key_Space);
    EXPECT_EQ(tree_.GetCheckState(s1_), CThreeStateTree::CheckState::kChecked);
}

TEST_F(KyCustomTreeCtrlTest, KnowsItsRuntimeClass) {
    EXPECT_STREQ(tree_.GetRuntimeClass()->m_lpszClassName, "KyCustomTreeCtrl");
    EXPECT_TRUE(tree_.IsKindOf(&CThreeStateTree::classCThreeStateTree));
    EXPECT_TRUE(tree_.IsKindOf(&CTreeCtrl::classCTreeCtrl));
}
