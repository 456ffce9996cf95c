// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/platform/widgets/CBCGPListCtrl.h"

#include <QPalette>
#include <map>
#include <optional>

/// On what the rows are drawn.
enum class ListPaper {
    kLight,  ///< always a light ground, so that the row colours (black by default) can be read
    kTheme,  ///< the theme's ground; the host then gives each row a colour that suits it
};

/// A list with a text colour for each row, an adjustable row height, and tooltips that show the
/// whole text of the cell under the mouse.
class KYCB_UI_API CCustomColorListCtrl : public CBCGPListCtrl {
    Q_OBJECT

  public:
    static const CRuntimeClass classCCustomColorListCtrl;

    explicit CCustomColorListCtrl(QWidget* parent = nullptr);

    const CRuntimeClass* GetRuntimeClass() const override { return &classCCustomColorListCtrl; }

    /// Sets or replaces the text colour of a row. The colour stays with the row's number, whatever
    /// is inserted, deleted or sorted.
    void SetItemColor(int row, COLORREF color);

    /// The row's colour, or 0 (black) where none was set; the column does not matter.
    COLORREF OnGetCellTextColor(int row, int column) override;

    /// Sets the height of all rows in logical pixels and measures them anew; 0 or less returns to
    /// the list's own height.
    void SetRowHeight(int height);

    /// The paper; light at first.
    void SetPaper(ListPaper paper);

    /// Answers WM_MEASUREITEM: the height that was set, if any.
    void MeasureItem(MEASUREITEMSTRUCT* measure);

    /// Answers a tooltip's question with the text of the cell under the mouse: at most 79
    /// characters and a terminator in the wide form; at most 80 bytes of the thread's code page in
    /// the narrow form, whole characters only, and a terminator where there is room for it.
    /// False, and no text, where the mouse is not over a cell's label, and when the question is
    /// about the list as a whole.
    BOOL OnToolTipText(UINT id, NMHDR* header, LRESULT* result);

    std::span<const MessageMapEntry> GetMessageMap() const override;

  protected:
    void initViewItemOption(QStyleOptionViewItem* option) const override;
    void changeEvent(QEvent* event) override;

  private:
    std::optional<QPalette> LightPaper() const;
    void ApplyPaper();

    std::map<int, COLORREF> rowColors_;
    int rowHeight_ = 0;
    ListPaper paper_ = ListPaper::kLight;
};
