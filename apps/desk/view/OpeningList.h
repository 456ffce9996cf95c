// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/ui/widgets/CCustomColorListCtrl.h"

#include <memory>
#include <vector>

#include "desk/core/Session.h"
#include "desk/view/KindNames.h"

namespace desk {

/// The doors, windows and holes that the models have, a colour for each kind.
class OpeningList : public CCustomColorListCtrl {
    Q_OBJECT

  public:
    explicit OpeningList(const KindNames& names, QWidget* parent = nullptr);

    void SetOpenings(const std::vector<std::shared_ptr<Session::Hole>>& openings);

  protected:
    void changeEvent(QEvent* event) override;

  private:
    void ColorRows();

    const KindNames& names_;
    std::vector<int> types_;
};

}  // namespace desk
