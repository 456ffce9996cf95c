// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QWidget>

#include "desk/core/ResultRows.h"
#include "desk/view/KindNames.h"

class QComboBox;
class QLineEdit;
class QTimer;

namespace desk {

/// The fields above the result list by which it is filtered.
class FilterBar : public QWidget {
    Q_OBJECT

  public:
    explicit FilterBar(const KindNames& names, QWidget* parent = nullptr);

    /// Offers what occurs in these rows; choices that still exist are kept.
    void SetChoices(const ResultRows& rows);
    ResultFilter Filter() const;
    void Clear();

  signals:
    /// The filter is another one now. Typing counts once it pauses, or with the return key.
    void Changed();

  private:
    void ApplyNow();

    const KindNames& names_;
    QLineEdit* text_;
    QComboBox* floor_;
    QComboBox* kind_;
    QComboBox* state_;
    QLineEdit* above_;
    QLineEdit* upTo_;
    QTimer* pause_;
};

}  // namespace desk
