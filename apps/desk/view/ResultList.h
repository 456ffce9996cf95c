// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/ui/widgets/CCustomColorListCtrl.h"

#include <vector>

namespace desk {

class ResultModel;

/// The list of results: a row's colour tells its state; state and remark are edited in place, and
/// the state of all selected rows at once by the keys 0 to 3.
class ResultList : public CCustomColorListCtrl {
    Q_OBJECT

  public:
    explicit ResultList(QWidget* parent = nullptr);

    void SetResultModel(ResultModel* model);

    COLORREF OnGetCellTextColor(int row, int column) override;

    /// The model rows that are selected, from the top down.
    std::vector<int> SelectedRows() const;
    /// Gives all selected rows a state.
    void SetStateOfSelected(int state);
    /// Takes over what is being typed.
    void FinishEditing();

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

  private:
    ResultModel* results_ = nullptr;
};

}  // namespace desk
