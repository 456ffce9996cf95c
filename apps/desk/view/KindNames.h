// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/result/SObjAttInfo.h"

#include <QHash>
#include <QString>
#include <string>

namespace desk {

/// How kinds of components are called on the screen. Models, rules and results name them in the
/// words of the category tree; a user whose language is another one sees a translation of those
/// that are known. The same goes for the library's word for a place off the grid.
class KindNames {
  public:
    /// Names for a language ("en", "zh", ...); without a list for it the names stay as they are.
    explicit KindNames(const QString& language);

    QString Name(const std::wstring& name) const;
    /// Major and minor category.
    QString Kind(const SObjAttInfo& info) const;
    /// A category path, as rules name a kind: what its parts are called and, when that is something
    /// else, the path as it is behind it.
    QString Path(const QString& path) const;

  private:
    QHash<QString, QString> names_;
};

}  // namespace desk
