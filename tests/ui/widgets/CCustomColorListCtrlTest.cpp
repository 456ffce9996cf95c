// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/ui/widgets/CCustomColorListCtrl.h"

#include <QApplication>
#include <QHelpEvent>
#include <QTest>
#include <QToolTip>
#include <algorithm>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "support/PixelCount.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// Notes the messages that reach the list's default.
class ObservedList : public CCustomColorListCtrl {
  public:
    using CCustomColorListCtrl::CCustomColorListCtrl;

    std::vector<WINDOWPOS> moves;

  protected:
    LRESULT DefWindowProc(UINT message, UINT_PTR parameter, void* argument) override {
        if (message == WM_WINDOWPOSCHANGED) moves.push_back(*static_cast<WINDOWPOS*>(argument));
        return CCustomColorListCtrl::DefWindowProc(message, parameter, argument);
    }
};

class CCustomColorListCtrlTest : public testing::Test {
  protected:
    CCustomColorListCtrlTest() {
        list_.InsertColumn(0, L"first", 150);
        list_.InsertColumn(1, L"second", 100);
        list_.InsertItem(0, L"MMMMMMMM");
        list_.InsertItem(1, L"MMMMMMMM");
        list_.resize(400, 200);
        window_.resize(400, 200);
        window_.show();
    }
    ~CCustomColorListCtrlTest() override { QToolTip::hideText(); }

    QRect CellAt(int row, int column) const {
        return list_.visualRect(list_.model()->index(row, column));
    }

    // Lets the mouse rest somewhere; returns the tooltip that appears.
    QString RestAt(QPoint point) {
        QToolTip::hideText();
        QHelpEvent rest(QEvent::ToolTip, point, list_.viewport()->mapToGlobal(point));
        QCoreApplication::sendEvent(list_.viewport(), &rest);
        return QToolTip::isVisible() ? QToolTip::text() : QString();
    }

    template <class Question>
    BOOL Ask(Question& question, UINT code) {
        question.hdr.code = code;
        result_ = 99;
        return list_.OnToolTipText(0, &question.hdr, &result_);
    }

    // What the two forms of the tooltip say for a text in the first cell.
    TOOLTIPTEXTW Wide(const std::wstring& text) {
        list_.SetItemText(0, 0, text);
        RestAt(CellAt(0, 0).center());
        TOOLTIPTEXTW question;
        EXPECT_EQ(Ask(question, TTN_NEEDTEXTW), 1);
        return question;
    }
    TOOLTIPTEXTA Narrow(const std::wstring& text) {
        list_.SetItemText(0, 0, text);
        RestAt(CellAt(0, 0).center());
        TOOLTIPTEXTA question;
        std::fill(std::begin(question.szText), std::end(question.szText), '#');
        EXPECT_EQ(Ask(question, TTN_NEEDTEXTA), 1);
        return question;
    }

    QImage Shown() { return list_.viewport()->grab().toImage(); }

    QWidget window_;
    ObservedList list_{&window_};
    LRESULT result_ = 0;
};

std::string Text(const TOOLTIPTEXTA& question) {
    const auto* end = std::find(std::begin(question.szText), std::end(question.szText), '\0');
    return {std::begin(question.szText), end};
}

// 管 in code page 936.
const std::string kPipe = "\xB9\xDC";

std::string Repeated(const std::string& text, int times) {
    std::string all;
    for (int i = 0; i < times; ++i)
        all += text;
    return all;
}

// What the window around a list gets from a dark theme.
QPalette DarkTheme() {
    QPalette palette;
    palette.setColor(QPalette::Base, QColor(30, 30, 30));
    palette.setColor(QPalette::Text, Qt::white);
    return palette;
}

}  // namespace

TEST_F(CCustomColorListCtrlTest, ColoursARowWithoutAColourBlack) {
    EXPECT_EQ(list_.OnGetCellTextColor(0, 0), 0U);
    EXPECT_EQ(list_.OnGetCellTextColor(-5, 3), 0U);
}

TEST_F(CCustomColorListCtrlTest, ColoursARowWhateverTheColumn) {
    list_.SetItemColor(1, RGB(1, 2, 3));
    EXPECT_EQ(list_.OnGetCellTextColor(1, 0), RGB(1, 2, 3));
    EXPECT_EQ(list_.OnGetCellTextColor(1, 77), RGB(1, 2, 3));
    EXPECT_EQ(list_.OnGetCellTextColor(0, 0), 0U);
}

TEST_F(CCustomColorListCtrlTest, ReplacesTheColourOfARow) {
    list_.SetItemColor(1, RGB(1, 2, 3));
    list_.SetItemColor(1, RGB(4, 5, 6));
    EXPECT_EQ(list_.OnGetCellTextColor(1, 0), RGB(4, 5, 6));
}

TEST_F(CCustomColorListCtrlTest, KeepsColoursWithTheRowsNumber) {
    list_.SetItemColor(1, RGB(1, 2, 3));
    list_.InsertItem(0, L"new");
    EXPECT_EQ(list_.OnGetCellTextColor(1, 0), RGB(1, 2, 3));
    EXPECT_EQ(list_.OnGetCellTextColor(2, 0), 0U);
}

TEST_F(CCustomColorListCtrlTest, DrawsRowsInTheirColours) {
    list_.SetItemColor(1, RGB(200, 0, 100));
    const QColor color(200, 0, 100);
    EXPECT_EQ(CountPixels(Shown(), CellAt(0, 0), color), 0);
    EXPECT_GT(CountPixels(Shown(), CellAt(1, 0), color), 10);
}

TEST_F(CCustomColorListCtrlTest, DrawsARowWithoutAColourInBlackNotInTheListsTextColour) {
    QPalette palette = list_.palette();
    palette.setColor(QPalette::Text, QColor(0, 0, 250));
    list_.setPalette(palette);
    EXPECT_EQ(CountPixels(Shown(), CellAt(0, 0), QColor(0, 0, 250)), 0);
    EXPECT_GT(CountPixels(Shown(), CellAt(0, 0), Qt::black), 10);
}

TEST_F(CCustomColorListCtrlTest, StaysReadableInADarkTheme) {
    window_.setPalette(DarkTheme());
    EXPECT_GT(CountPixels(Shown(), CellAt(0, 0), Qt::black), 10);
    EXPECT_GT(CountPixels(Shown(), CellAt(0, 0), Qt::white), 100);
    EXPECT_EQ(CountPixels(Shown(), list_.viewport()->rect(), QColor(30, 30, 30)), 0);
}

TEST_F(CCustomColorListCtrlTest, TakesTheThemesPaperWhenTold) {
    window_.setPalette(DarkTheme());
    list_.SetPaper(ListPaper::kTheme);
    list_.SetItemColor(0, RGB(255, 255, 0));
    EXPECT_GT(CountPixels(Shown(), CellAt(0, 0), QColor(30, 30, 30)), 100);
    EXPECT_GT(CountPixels(Shown(), CellAt(0, 0), QColor(255, 255, 0)), 10);
}

TEST_F(CCustomColorListCtrlTest, ReturnsToTheLightThemesPaperAfterADarkOne) {
    window_.setPalette(DarkTheme());
    window_.setPalette(QPalette());
    EXPECT_GT(CountPixels(Shown(), CellAt(0, 0), QApplication::palette().base().color()), 100);
}

TEST_F(CCustomColorListCtrlTest, SetsTheHeightOfAllRows) {
    list_.SetRowHeight(40);
    EXPECT_EQ(list_.rowHeight(0), 40);
    EXPECT_EQ(list_.rowHeight(1), 40);
    list_.InsertItem(2, L"new");
    EXPECT_EQ(list_.rowHeight(2), 40);
}

TEST_F(CCustomColorListCtrlTest, ReturnsToItsOwnRowHeightAtZero) {
    const int own = list_.rowHeight(0);
    list_.SetRowHeight(own + 20);
    list_.SetRowHeight(0);
    EXPECT_EQ(list_.rowHeight(0), own);
}

TEST_F(CCustomColorListCtrlTest, TakesANegativeHeightForItsOwn) {
    const int own = list_.rowHeight(0);
    list_.SetRowHeight(-3);
    EXPECT_EQ(list_.rowHeight(0), own);
}

TEST_F(CCustomColorListCtrlTest, MeasuresByAMessageWithItsHandleAndItsSize) {
    list_.SetRowHeight(33);
    ASSERT_EQ(list_.moves.size(), 1U);
    const WINDOWPOS& place = list_.moves[0];
    EXPECT_EQ(place.hwnd, list_.GetSafeHwnd());
    EXPECT_EQ(place.hwndInsertAfter, nullptr);
    EXPECT_EQ(place.x, 0);
    EXPECT_EQ(place.y, 0);
    EXPECT_EQ(place.cx, 400);
    EXPECT_EQ(place.cy, 200);
    EXPECT_EQ(place.flags, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOOWNERZORDER);
}

TEST_F(CCustomColorListCtrlTest, LeavesTheMeasureAloneUnlessAHeightIsSet) {
    MEASUREITEMSTRUCT measure;
    measure.itemHeight = 17;
    list_.MeasureItem(&measure);
    EXPECT_EQ(measure.itemHeight, 17U);
    list_.SetRowHeight(1);
    list_.MeasureItem(&measure);
    EXPECT_EQ(measure.itemHeight, 1U);
}

TEST_F(CCustomColorListCtrlTest, MapsItsMessagesInOrder) {
    const auto map = list_.GetMessageMap();
    ASSERT_EQ(map.size(), 3U);
    EXPECT_EQ(map[0].message, WM_MEASUREITEM);
    EXPECT_EQ(map[1].message, WM_NOTIFY);
    EXPECT_EQ(map[1].notification, TTN_NEEDTEXTW);
    EXPECT_EQ(map[2].message, WM_NOTIFY);
    EXPECT_EQ(map[2].notification, TTN_NEEDTEXTA);
    for (const auto& entry : {map[1], map[2]}) {
        EXPECT_EQ(entry.firstId, 0U);
        EXPECT_EQ(entry.lastId, 0xFFFFU);
    }
}

TEST_F(CCustomColorListCtrlTest, AnswersMessagesThroughTheMap) {
    list_.SetRowHeight(21);
    MEASUREITEMSTRUCT measure;
    list_.SendMessage(WM_MEASUREITEM, 0, &measure);
    EXPECT_EQ(measure.itemHeight, 21U);
    RestAt(CellAt(0, 0).center());
    TOOLTIPTEXTA question;
    question.hdr = {&list_, 5, TTN_NEEDTEXTA};
    EXPECT_EQ(list_.SendMessage(WM_NOTIFY, 0, &question), 1);
    EXPECT_EQ(Text(question), "MMMMMMMM");
}

TEST_F(CCustomColorListCtrlTest, ShowsTheWholeTextOfTheCellUnderTheMouse) {
    list_.SetItemText(1, 1, L"a long text that the column cuts off");
    EXPECT_EQ(RestAt(CellAt(1, 1).center()), "a long text that the column cuts off");
    EXPECT_EQ(RestAt(CellAt(1, 0).center()), "MMMMMMMM");
}

TEST_F(CCustomColorListCtrlTest, ShowsATextThatLooksLikeMarkupAsItIs) {
    list_.SetItemText(0, 0, L"<b>DN</b>");
    EXPECT_EQ(RestAt(CellAt(0, 0).center()), "<span>&lt;b&gt;DN&lt;/b&gt;</span>");
    list_.SetItemText(0, 0, L"a < b & c");
    EXPECT_EQ(RestAt(CellAt(0, 0).center()), "a < b & c");
}

TEST_F(CCustomColorListCtrlTest, ShowsNothingBesideTheLabels) {
    const QPoint below(10, list_.viewport()->height() - 3);
    EXPECT_EQ(RestAt(below), "");
    TOOLTIPTEXTW question;
    EXPECT_EQ(Ask(question, TTN_NEEDTEXTW), 0);
    EXPECT_EQ(result_, 0);
    EXPECT_STREQ(question.szText, L"");
    TOOLTIPTEXTA narrow;
    EXPECT_EQ(Ask(narrow, TTN_NEEDTEXTA), 0);
    EXPECT_EQ(result_, 0);
    EXPECT_STREQ(narrow.szText, "");
}

TEST_F(CCustomColorListCtrlTest, ShowsNoTooltipForTheListAsAWhole) {
    RestAt(CellAt(0, 0).center());
    TOOLTIPTEXTW wide;
    wide.hdr.idFrom = reinterpret_cast<UINT_PTR>(list_.GetSafeHwnd());
    wide.uFlags = TTF_IDISHWND;
    EXPECT_EQ(Ask(wide, TTN_NEEDTEXTW), 0);
    EXPECT_EQ(result_, 99);
    TOOLTIPTEXTA narrow;
    narrow.hdr.idFrom = wide.hdr.idFrom;
    narrow.uFlags = TTF_IDISHWND;
    EXPECT_EQ(Ask(narrow, TTN_NEEDTEXTA), 0);
    EXPECT_EQ(result_, 99);
}

TEST_F(CCustomColorListCtrlTest, AnswersWhenOnlyTheIdOrOnlyTheFlagFits) {
    RestAt(CellAt(0, 0).center());
    TOOLTIPTEXTW idOnly;
    idOnly.hdr.idFrom = reinterpret_cast<UINT_PTR>(list_.GetSafeHwnd());
    EXPECT_EQ(Ask(idOnly, TTN_NEEDTEXTW), 1);
    TOOLTIPTEXTW flagOnly;
    flagOnly.uFlags = TTF_IDISHWND;
    EXPECT_EQ(Ask(flagOnly, TTN_NEEDTEXTW), 1);
    EXPECT_EQ(result_, 0);
}

TEST_F(CCustomColorListCtrlTest, CutsAWideTextTo79CharactersAndATerminator) {
    const TOOLTIPTEXTW question = Wide(std::wstring(80, L'长'));
    EXPECT_EQ(question.szText[79], L'\0');
    EXPECT_EQ(std::wstring(question.szText), std::wstring(79, L'长'));
}

TEST_F(CCustomColorListCtrlTest, KeepsAWideTextOf79Characters) {
    EXPECT_EQ(std::wstring(Wide(std::wstring(79, L'x')).szText), std::wstring(79, L'x'));
}

TEST_F(CCustomColorListCtrlTest, ConvertsANarrowTextToTheCodePage) {
    EXPECT_EQ(Text(Narrow(L"水管 DN100")), "\xCB\xAE" + kPipe + " DN100");
}

TEST_F(CCustomColorListCtrlTest, KeepsANarrowTextOf79BytesWithItsTerminator) {
    const TOOLTIPTEXTA question = Narrow(std::wstring(79, L'x'));
    EXPECT_EQ(question.szText[79], '\0');
    EXPECT_EQ(Text(question), std::string(79, 'x'));
}

TEST_F(CCustomColorListCtrlTest, FillsAllOf80BytesWithALongerNarrowText) {
    EXPECT_EQ(Text(Narrow(std::wstring(80, L'x'))), std::string(80, 'x'));
    EXPECT_EQ(Text(Narrow(std::wstring(200, L'x'))), std::string(80, 'x'));
}

TEST_F(CCustomColorListCtrlTest, NeverCutsANarrowCharacterInHalf) {
    // One byte and then characters of two: the 40th of them would need bytes 80 and 81.
    const TOOLTIPTEXTA question = Narrow(L"x" + std::wstring(60, L'管'));
    EXPECT_EQ(Text(question), "x" + Repeated(kPipe, 39));
    EXPECT_EQ(question.szText[79], '\0');
    EXPECT_EQ(Text(Narrow(std::wstring(60, L'管'))), Repeated(kPipe, 40));
}

TEST_F(CCustomColorListCtrlTest, ReplacesWhatTheCodePageLacks) {
    EXPECT_EQ(Text(Narrow(L"a\U0001F600b")), "a?b");
}

TEST_F(CCustomColorListCtrlTest, ShowsNothingForAnEmptyCell) {
    EXPECT_EQ(RestAt(CellAt(0, 1).center()), "");
}

TEST_F(CCustomColorListCtrlTest, KnowsItsRuntimeClass) {
    EXPECT_STREQ(list_.GetRuntimeClass()->m_lpszClassName, "CCustomColorListCtrl");
    EXPECT_TRUE(list_.IsKindOf(&CBCGPListCtrl::classCBCGPListCtrl));
    EXPECT_TRUE(list_.IsKindOf(&CListCtrl::classCListCtrl));
}
