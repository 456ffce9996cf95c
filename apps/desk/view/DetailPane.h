// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/result/KyResultItem.h"

#include <QWidget>

#include "desk/view/KindNames.h"

class QLabel;

namespace desk {

/// All about one clash in words, with the two components in their colours.
class DetailPane : public QWidget {
    Q_OBJECT

  public:
    explicit DetailPane(const KindNames& names, QWidget* parent = nullptr);

    /// Null: no clash is selected.
    void Show(const KYCOLLISION::RESULT::KyResultItem* item);

  protected:
    void changeEvent(QEvent* event) override;

  private:
    void AlignTexts();

    const KindNames& names_;
    QLabel* main_;
    QLabel* second_;
    QLabel* place_;
    QLabel* hint_;
};

}  // namespace desk
