// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/ui/widgets/CCustomColorListCtrl.h"

#include "KYCollisionBase/platform/CodePage.h"

#include <QEvent>
#include <QPalette>
#include <algorithm>
#include <array>
#include <string>

const CRuntimeClass CCustomColorListCtrl::classCCustomColorListCtrl{
    "CCustomColorListCtrl", &CBCGPListCtrl::classCBCGPListCtrl};

namespace {

constexpr UINT kLastControlId = 0xFFFF;

// Below this a ground counts as dark: black text on it can no longer be read with ease.
constexpr int kDarkGround = 140;

CCustomColorListCtrl& List(CWnd& window) {
    return static_cast<CCustomColorListCtrl&>(window);
}

BOOL HandleMeasure(CWnd& window, UINT /*id*/, void* argument, LRESULT* /*result*/) {
    List(window).MeasureItem(static_cast<MEASUREITEMSTRUCT*>(argument));
    return 1;
}

BOOL HandleToolTip(CWnd& window, UINT id, void* argument, LRESULT* result) {
    return List(window).OnToolTipText(id, static_cast<NMHDR*>(argument), result);
}

constexpr std::array<MessageMapEntry, 3> kMessageMap{{
    {WM_MEASUREITEM, 0, 0, 0, HandleMeasure},
    {WM_NOTIFY, TTN_NEEDTEXTW, 0, kLastControlId, HandleToolTip},
    {WM_NOTIFY, TTN_NEEDTEXTA, 0, kLastControlId, HandleToolTip},
}};

UINT FlagsOf(const NMHDR& header) {
    return header.code == TTN_NEEDTEXTA ? reinterpret_cast<const TOOLTIPTEXTA&>(header).uFlags
                                        : reinterpret_cast<const TOOLTIPTEXTW&>(header).uFlags;
}

void CopyWide(const std::wstring& text, TOOLTIPTEXTW& question) {
    const std::size_t length =
        std::min(text.size(), static_cast<std::size_t>(kToolTipTextSize - 1));
    std::copy_n(text.begin(), length, question.szText);
    question.szText[length] = L'\0';
}

// Converts character by character, so that what is cut off is never half of one.
void CopyNarrow(const std::wstring& text, TOOLTIPTEXTA& question) {
    std::size_t used = 0;
    for (const wchar_t character : text) {
        const std::string bytes = KYTOOLS::CodePage::ToAnsi({&character, 1});
        if (used + bytes.size() > static_cast<std::size_t>(kToolTipTextSize)) break;
        std::copy(bytes.begin(), bytes.end(), question.szText + used);
        used += bytes.size();
    }
    if (used < static_cast<std::size_t>(kToolTipTextSize)) question.szText[used] = '\0';
}

}  // namespace

CCustomColorListCtrl::CCustomColorListCtrl(QWidget* parent) : CBCGPListCtrl(parent) {
    ApplyPaper();
}

void CCustomColorListCtrl::SetItemColor(int row, COLORREF color) {
    rowColors_[row] = color;
    viewport()->update();
}

COLORREF CCustomColorListCtrl::OnGetCellTextColor(int row, int /*column*/) {
    const auto found = rowColors_.find(row);
    return found == rowColors_.end() ? 0 : found->second;
}

void CCustomColorListCtrl::SetRowHeight(int height) {
    rowHeight_ = height;
    RECT frame;
    GetWindowRect(&frame);
    WINDOWPOS place;
    place.hwnd = GetSafeHwnd();
    place.cx = frame.right - frame.left;
    place.cy = frame.bottom - frame.top;
    place.flags = SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOOWNERZORDER;
    SendMessage(WM_WINDOWPOSCHANGED, 0, &place);
}

void CCustomColorListCtrl::MeasureItem(MEASUREITEMSTRUCT* measure) {
    if (rowHeight_ > 0) measure->itemHeight = static_cast<UINT>(rowHeight_);
}

BOOL CCustomColorListCtrl::OnToolTipText(UINT /*id*/, NMHDR* header, LRESULT* result) {
    const bool asksForWindow = header->idFrom == reinterpret_cast<UINT_PTR>(GetSafeHwnd()) &&
                               (FlagsOf(*header) & TTF_IDISHWND) != 0;
    if (asksForWindow) return 0;

    *result = 0;
    LVHITTESTINFO hit;
    hit.pt = GetMessagePos();
    ScreenToClient(&hit.pt);
    SubItemHitTest(&hit);
    if ((hit.flags & LVHT_ONITEMLABEL) == 0) return 0;

    const CString text = GetItemText(hit.iItem, hit.iSubItem);
    if (header->code == TTN_NEEDTEXTA) {
        CopyNarrow(text, reinterpret_cast<TOOLTIPTEXTA&>(*header));
    } else {
        CopyWide(text, reinterpret_cast<TOOLTIPTEXTW&>(*header));
    }
    return 1;
}

std::span<const MessageMapEntry> CCustomColorListCtrl::GetMessageMap() const {
    return kMessageMap;
}

void CCustomColorListCtrl::SetPaper(ListPaper paper) {
    paper_ = paper;
    ApplyPaper();
}

// The list's own palette, unless that is dark and the paper is to be light: then with the grounds
// and the text of a light theme.
std::optional<QPalette> CCustomColorListCtrl::LightPaper() const {
    QPalette paper = palette();
    const bool isDark = qGray(paper.color(QPalette::Base).rgb()) < kDarkGround;
    if (paper_ == ListPaper::kTheme || !isDark) return std::nullopt;
    paper.setColor(QPalette::Base, Qt::white);
    paper.setColor(QPalette::AlternateBase, QColor(0xF2, 0xF4, 0xF6));
    paper.setColor(QPalette::Text, Qt::black);
    return paper;
}

// Only the area of the rows: headings and scroll bars keep the theme. An empty palette lets the
// area inherit the list's.
void CCustomColorListCtrl::ApplyPaper() {
    viewport()->setPalette(LightPaper().value_or(QPalette()));
}

void CCustomColorListCtrl::initViewItemOption(QStyleOptionViewItem* option) const {
    CBCGPListCtrl::initViewItemOption(option);
    if (const auto paper = LightPaper()) option->palette = *paper;
}

void CCustomColorListCtrl::changeEvent(QEvent* event) {
    CBCGPListCtrl::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) ApplyPaper();
}
