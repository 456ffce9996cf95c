// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/platform/widgets/CListCtrl.h"

#include <QAbstractTableModel>
#include <QHeaderView>
#include <QScrollBar>
#include <QStandardItemModel>
#include <QTest>

#include <gmock/gmock.h>

namespace {

class CListCtrlTest : public testing::Test {
  protected:
    CListCtrlTest() {
        list_.InsertColumn(0, L"kind", 100);
        list_.InsertColumn(1, L"name", 100);
        list_.InsertItem(0, L"wall");
        list_.SetItemText(0, 1, L"W-1");
        list_.InsertItem(1, L"duct");
        list_.resize(300, 200);
        list_.show();
    }

    LVHITTESTINFO Hit(QPoint point) {
        LVHITTESTINFO info;
        info.pt = {point.x(), point.y()};
        list_.SubItemHitTest(&info);
        return info;
    }

    QPoint MiddleOf(int row, int column) const {
        return list_.visualRect(list_.model()->index(row, column)).center();
    }

    CListCtrl list_;
};

// A model of any size that counts how often it is asked.
class HugeModel : public QAbstractTableModel {
  public:
    mutable int texts = 0;

    int rowCount(const QModelIndex& parent) const override { return parent.isValid() ? 0 : 200000; }
    int columnCount(const QModelIndex& parent) const override { return parent.isValid() ? 0 : 8; }
    QVariant data(const QModelIndex& index, int role) const override {
        if (role != Qt::DisplayRole) return {};
        ++texts;
        return QString::number(index.row());
    }
};

}  // namespace

TEST_F(CListCtrlTest, HoldsTheTextsOfItsCells) {
    EXPECT_EQ(list_.GetItemCount(), 2);
    EXPECT_EQ(list_.GetItemText(0, 0), L"wall");
    EXPECT_EQ(list_.GetItemText(0, 1), L"W-1");
    EXPECT_EQ(list_.GetItemText(1, 1), L"");
    EXPECT_EQ(list_.model()->headerData(1, Qt::Horizontal), "name");
}

TEST_F(CListCtrlTest, AnswersAnEmptyTextForCellsThatDoNotExist) {
    EXPECT_EQ(list_.GetItemText(2, 0), L"");
    EXPECT_EQ(list_.GetItemText(-1, 0), L"");
    EXPECT_EQ(list_.GetItemText(0, 2), L"");
    EXPECT_FALSE(list_.SetItemText(2, 0, L"x"));
    EXPECT_FALSE(list_.SetItemText(0, 9, L"x"));
}

TEST_F(CListCtrlTest, InsertsWhereItIsTold) {
    EXPECT_EQ(list_.InsertItem(0, L"first"), 0);
    EXPECT_EQ(list_.InsertItem(99, L"last"), 3);
    EXPECT_EQ(list_.InsertItem(-1, L"behind"), 4);
    EXPECT_EQ(list_.GetItemText(0, 0), L"first");
    EXPECT_EQ(list_.GetItemText(1, 1), L"W-1");
    EXPECT_EQ(list_.GetItemText(3, 0), L"last");
    EXPECT_EQ(list_.InsertColumn(0, L"new"), 0);
    EXPECT_EQ(list_.GetItemText(1, 0), L"");
    EXPECT_EQ(list_.GetItemText(1, 1), L"wall");
}

TEST_F(CListCtrlTest, DeletesRows) {
    EXPECT_TRUE(list_.DeleteItem(0));
    EXPECT_EQ(list_.GetItemText(0, 0), L"duct");
    EXPECT_FALSE(list_.DeleteItem(1));
    EXPECT_TRUE(list_.DeleteAllItems());
    EXPECT_EQ(list_.GetItemCount(), 0);
    EXPECT_EQ(list_.model()->columnCount(), 2);
}

TEST_F(CListCtrlTest, LeavesAModelOfTheHostAlone) {
    QStandardItemModel model(3, 1);
    model.setItem(1, 0, new QStandardItem("x"));
    list_.setModel(&model);
    EXPECT_EQ(list_.GetItemCount(), 3);
    EXPECT_EQ(list_.GetItemText(1, 0), L"x");
    EXPECT_EQ(list_.InsertItem(0, L"y"), -1);
    EXPECT_EQ(list_.InsertColumn(0, L"y"), -1);
    EXPECT_FALSE(list_.SetItemText(0, 0, L"y"));
    EXPECT_FALSE(list_.DeleteItem(0));
    EXPECT_FALSE(list_.DeleteAllItems());
    EXPECT_EQ(model.rowCount(), 3);
}

TEST_F(CListCtrlTest, FindsTheLabelOfTheCellAtAPoint) {
    const LVHITTESTINFO hit = Hit(MiddleOf(1, 0));
    EXPECT_EQ(hit.iItem, 1);
    EXPECT_EQ(hit.iSubItem, 0);
    EXPECT_EQ(hit.flags, LVHT_ONITEMLABEL);
    EXPECT_EQ(Hit(MiddleOf(0, 1)).iSubItem, 1);
}

TEST_F(CListCtrlTest, FindsNothingBesideTheCells) {
    const LVHITTESTINFO below = Hit({10, list_.viewport()->height() - 2});
    EXPECT_EQ(below.iItem, -1);
    EXPECT_EQ(below.iSubItem, -1);
    EXPECT_EQ(below.flags, LVHT_NOWHERE);
    EXPECT_EQ(Hit({290, 5}).flags, LVHT_NOWHERE);
    EXPECT_EQ(Hit({-5, 5}).flags, LVHT_NOWHERE);
    EXPECT_EQ(Hit({5, -5}).flags, LVHT_NOWHERE);
}

TEST_F(CListCtrlTest, TellsAPictureFromALabel) {
    QStandardItemModel model(1, 1);
    auto* item = new QStandardItem("text");
    QPixmap picture(16, 16);
    picture.fill(Qt::red);
    item->setData(picture, Qt::DecorationRole);
    model.setItem(0, 0, item);
    list_.setModel(&model);
    const QRect cell = list_.visualRect(model.index(0, 0));
    EXPECT_EQ(Hit({cell.left() + 6, cell.center().y()}).flags, LVHT_ONITEMICON);
    EXPECT_EQ(Hit({cell.right() - 6, cell.center().y()}).flags, LVHT_ONITEMLABEL);
}

TEST_F(CListCtrlTest, ScrollsThroughManyRowsAskingOnlyForThoseOnDisplay) {
    HugeModel model;
    list_.setModel(&model);
    QTest::qWait(0);
    model.texts = 0;
    constexpr int kSteps = 50;
    for (int i = 1; i <= kSteps; ++i) {
        list_.verticalScrollBar()->setValue(i * list_.verticalScrollBar()->maximum() / kSteps);
        list_.viewport()->repaint();
    }
    EXPECT_GT(model.texts, 0);
    // Rows on display, one more for a row cut at each end, times the columns.
    const int onDisplay = (list_.viewport()->height() / list_.rowHeight(0) + 3) * 8;
    EXPECT_LE(model.texts, onDisplay * kSteps * 2);
    EXPECT_EQ(list_.rowAt(list_.viewport()->height() - 1), 199999);
}

TEST_F(CListCtrlTest, MeasuresItsRowsAnewWhenTheFontChanges) {
    const int before = list_.rowHeight(0);
    QFont large = list_.font();
    large.setPointSize(large.pointSize() * 3);
    list_.setFont(large);
    EXPECT_GT(list_.rowHeight(0), before);
}

TEST_F(CListCtrlTest, KnowsItsRuntimeClass) {
    EXPECT_STREQ(list_.GetRuntimeClass()->m_lpszClassName, "CListCtrl");
}

TEST_F(CListCtrlTest, IsMovedThroughByKeyboard) {
    list_.setCurrentIndex(list_.model()->index(0, 0));
    QTest::keyClick(&list_, Qt::Key_Down);
    EXPECT_EQ(list_.currentIndex().row(), 1);
}
