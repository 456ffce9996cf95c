// SPDX-License-Identifier: Apache-2.0
#include "desk/view/OpeningList.h"

#include "KYCollisionBase/result/CExistingHole.h"

#include <QEvent>
#include <QHeaderView>

#include "desk/view/SceneColors.h"

namespace desk {
namespace {

// The codes of openings that stay open: holes in walls and slabs, not doors and windows.
constexpr int kWallHole = 101;
constexpr int kSlabHole = 103;

std::wstring SizeText(const Session::Hole& hole) {
    if (hole.holeWidth == 0 && hole.holeHeight == 0) {
        return hole.holeSize == 0 ? std::wstring() : std::to_wstring(hole.holeSize);
    }
    return std::to_wstring(hole.holeWidth) + L" x " + std::to_wstring(hole.holeHeight);
}

COLORREF ToColorRef(const QColor& color) {
    return RGB(static_cast<std::uint8_t>(color.red()), static_cast<std::uint8_t>(color.green()),
               static_cast<std::uint8_t>(color.blue()));
}

}  // namespace

OpeningList::OpeningList(const KindNames& names, QWidget* parent)
    : CCustomColorListCtrl(parent), names_(names) {
    SetPaper(ListPaper::kTheme);
    setAlternatingRowColors(true);
    setTextElideMode(Qt::ElideMiddle);
    const int character = fontMetrics().averageCharWidth();
    const std::pair<QString, int> columns[] = {{tr("Floor"), 14},
                                               {tr("Kind"), 18},
                                               {tr("Name"), 30},
                                               {tr("Size"), 16},
                                               {tr("Elevation"), 14}};
    int index = 0;
    for (const auto& [heading, width] : columns)
        InsertColumn(index++, heading.toStdWString(), width * character);
    horizontalHeader()->setDefaultAlignment(Qt::AlignLeading | Qt::AlignVCenter);
    horizontalHeader()->setStretchLastSection(true);
    horizontalHeader()->setHighlightSections(false);
    SetRowHeight(fontMetrics().height() * 8 / 5);
    setAccessibleName(tr("Openings"));
}

void OpeningList::SetOpenings(const std::vector<std::shared_ptr<Session::Hole>>& openings) {
    DeleteAllItems();
    types_.clear();
    for (const auto& hole : openings) {
        const int row = InsertItem(-1, hole->floorName);
        SetItemText(row, 1, names_.Name(hole->attInfo.Subcategory).toStdWString());
        SetItemText(row, 2, hole->attInfo.Name);
        SetItemText(row, 3, SizeText(*hole));
        SetItemText(row, 4, hole->holeElev);
        types_.push_back(hole->holeType);
    }
    ColorRows();
}

void OpeningList::ColorRows() {
    for (std::size_t row = 0; row < types_.size(); ++row) {
        const bool isHole = types_[row] == kWallHole || types_[row] == kSlabHole;
        const QColor text = palette().color(QPalette::Text);
        const QColor hole = IsDark(palette()) ? QColor(0xF0, 0xB4, 0x5C) : QColor(0xA8, 0x5B, 0x00);
        SetItemColor(static_cast<int>(row), ToColorRef(isHole ? hole : text));
    }
}

void OpeningList::changeEvent(QEvent* event) {
    CCustomColorListCtrl::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) ColorRows();
}

}  // namespace desk
