// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QWidget>

#include "desk/core/Session.h"
#include "desk/view/KindNames.h"

class CThreeStateTree;

namespace desk {

class KindTree;

/// The pane of what the next run checks: the kinds and the floors of the open models.
class ScopePane : public QWidget {
    Q_OBJECT

  public:
    explicit ScopePane(const KindNames& names, QWidget* parent = nullptr);

    /// Shows what the session's models have; all of it is checked.
    void ShowModels(const Session& session);

    /// What is checked now.
    CheckRequest Chosen() const;

  signals:
    void ChoiceChanged();

  private:
    std::vector<std::wstring> CheckedFloors() const;

    KindTree* kinds_;
    CThreeStateTree* floors_;
};

}  // namespace desk
