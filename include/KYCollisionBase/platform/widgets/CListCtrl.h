// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/platform/widgets/CWnd.h"

#include <QPoint>
#include <QTableView>

/// A list of rows and columns.
///
/// It is a table view. Small lists are filled by InsertColumn and InsertItem, which write into a
/// model that the list brings along; a host with many rows sets a model of its own, and only the
/// rows on display are then ever asked for. All rows are equally high, so that any number of them
/// scrolls without delay; their height is measured by WM_MEASUREITEM, which starts from the list's
/// own height (one line of text in its font with the style's margins).
class KYCB_UI_API CListCtrl : public QTableView, public CWnd {
    Q_OBJECT

  public:
    static const CRuntimeClass classCListCtrl;

    explicit CListCtrl(QWidget* parent = nullptr);

    const CRuntimeClass* GetRuntimeClass() const override { return &classCListCtrl; }

    /// Adds a column to the list's own model; an index outside counts as "behind the last". A
    /// width of 0 or less leaves the toolkit's. Returns the column's index, -1 when the host has
    /// set another model.
    int InsertColumn(int index, const std::wstring& heading, int width = 0);

    /// Adds a row to the list's own model, in the same way.
    int InsertItem(int row, const std::wstring& text);
    bool SetItemText(int row, int column, const std::wstring& text);
    bool DeleteItem(int row);
    /// Deletes the rows, not the columns.
    bool DeleteAllItems();

    int GetItemCount() const;
    /// The text on display; empty for a cell that does not exist. Works with every model.
    CString GetItemText(int row, int column) const;

    /// Finds the cell at a point in client coordinates, which count from the corner of the area of
    /// the rows. Where the text of a cell stands is its label, also where the text is shorter; a
    /// check box or picture is its icon. Returns the row, or -1 (then the flags say LVHT_NOWHERE).
    int SubItemHitTest(LVHITTESTINFO* info) const;

    /// Where the mouse was in the event being handled, in global coordinates.
    POINT GetMessagePos() const;
    /// Global to client coordinates.
    void ScreenToClient(POINT* point) const;

    void GetWindowRect(RECT* rect) const override;

    void setModel(QAbstractItemModel* model) override;

  protected:
    LRESULT DefWindowProc(UINT message, UINT_PTR parameter, void* argument) override;
    bool viewportEvent(QEvent* event) override;
    void changeEvent(QEvent* event) override;

    /// Asks WM_MEASUREITEM for the height of the rows and applies it.
    void MeasureRows();

  private:
    class TextModel;

    TextModel* OwnModel() const;
    bool ShowToolTip(const QPoint& globalPos);
    int OwnRowHeight() const;

    TextModel* textModel_;
    QPoint messagePos_;
};
