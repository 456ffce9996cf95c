// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/platform/widgets/CListCtrl.h"

/// A list that asks for the text colour of each cell as it draws it.
class KYCB_UI_API CBCGPListCtrl : public CListCtrl {
    Q_OBJECT

  public:
    static const CRuntimeClass classCBCGPListCtrl;

    explicit CBCGPListCtrl(QWidget* parent = nullptr);

    const CRuntimeClass* GetRuntimeClass() const override { return &classCBCGPListCtrl; }

    /// The text colour of a cell that is not selected; the default is the list's own. Rows and
    /// columns are those of the model.
    virtual COLORREF OnGetCellTextColor(int row, int column);

    /// What every delegate of the list has to do with a cell before it draws it: gives it its text
    /// colour, and keeps a left-to-right text in its order where the layout is right to left.
    void PrepareCell(QStyleOptionViewItem& option, const QModelIndex& index);
};
