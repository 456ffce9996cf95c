// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/platform/widgets/CBCGPListCtrl.h"

#include <QImage>
#include <QTest>

#include <gmock/gmock.h>

#include "support/PixelCount.h"

namespace {

class GreenCell : public CBCGPListCtrl {
  public:
    COLORREF OnGetCellTextColor(int row, int column) override {
        if (row == 1 && column == 0) return RGB(0, 200, 0);
        return CBCGPListCtrl::OnGetCellTextColor(row, column);
    }
};

}  // namespace

TEST(CBCGPListCtrl, DrawsTextInTheListsOwnColourByDefault) {
    CBCGPListCtrl list;
    QPalette palette = list.palette();
    palette.setColor(QPalette::Text, QColor(10, 20, 30));
    list.setPalette(palette);
    EXPECT_EQ(list.OnGetCellTextColor(0, 0), RGB(10, 20, 30));
}

TEST(CBCGPListCtrl, DrawsEachCellInTheColourItIsTold) {
    GreenCell list;
    list.InsertColumn(0, L"a", 200);
    list.InsertItem(0, L"MMMMMMMM");
    list.InsertItem(1, L"MMMMMMMM");
    list.resize(300, 200);
    list.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&list));
    const QImage shown = list.viewport()->grab().toImage();
    const QColor green(0, 200, 0);
    EXPECT_EQ(CountPixels(shown, list.visualRect(list.model()->index(0, 0)), green), 0);
    EXPECT_GT(CountPixels(shown, list.visualRect(list.model()->index(1, 0)), green), 10);
}

TEST(CBCGPListCtrl, KeepsALeftToRightTextInItsOrderWhereTheLayoutIsRightToLeft) {
    CBCGPListCtrl list;
    list.InsertColumn(0, L"a");
    list.InsertItem(0, L"0~2900");
    const auto prepared = [&](const QString& text, Qt::LayoutDirection direction) {
        QStyleOptionViewItem option;
        option.direction = direction;
        option.text = text;
        list.PrepareCell(option, list.model()->index(0, 0));
        return option.text;
    };
    const QString hebrew = QString::fromUtf8("קיר 5");
    EXPECT_EQ(prepared("0~2900", Qt::RightToLeft), QString::fromUtf8("\u20660~2900\u2069"));
    EXPECT_EQ(prepared("0~2900", Qt::LeftToRight), "0~2900");
    EXPECT_EQ(prepared(hebrew, Qt::RightToLeft), hebrew);
    EXPECT_EQ(prepared("", Qt::RightToLeft), "");
}

TEST(CBCGPListCtrl, PreparesACellInItsColour) {
    GreenCell list;
    list.InsertColumn(0, L"a");
    list.InsertItem(0, L"x");
    list.InsertItem(1, L"x");
    QStyleOptionViewItem option;
    list.PrepareCell(option, list.model()->index(1, 0));
    EXPECT_EQ(option.palette.color(QPalette::Text), QColor(0, 200, 0));
}

TEST(CBCGPListCtrl, KnowsItsRuntimeClass) {
    const CBCGPListCtrl list;
    EXPECT_STREQ(list.GetRuntimeClass()->m_lpszClassName, "CBCGPListCtrl");
    EXPECT_TRUE(list.IsKindOf(&CListCtrl::classCListCtrl));
}
