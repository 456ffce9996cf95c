// SPDX-License-Identifier: Apache-2.0
#include "desk/view/KindNames.h"

#include "KYCollisionBase/result/KyResultItem.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

using KYCOLLISION::RESULT::KyResultItem;

// Resources of a static library are there only once this was called, outside of any namespace.
static void UseDeskResources() {
    Q_INIT_RESOURCE(desk);
}

namespace desk {

KindNames::KindNames(const QString& language) {
    UseDeskResources();
    QFile file(QStringLiteral(":/desk/category-names.json"));
    if (!file.open(QIODevice::ReadOnly)) return;
    const QJsonObject names =
        QJsonDocument::fromJson(file.readAll()).object().value(language).toObject();
    for (auto name = names.begin(); name != names.end(); ++name)
        names_.insert(name.key(), name.value().toString());
}

QString KindNames::Name(const std::wstring& name) const {
    const QString text = QString::fromStdWString(name);
    return names_.value(text, text);
}

QString KindNames::Kind(const SObjAttInfo& info) const {
    if (info.Subcategory.empty()) return Name(info.Category);
    if (info.Category.empty()) return Name(info.Subcategory);
    return Name(info.Category) + QString::fromStdWString(KyResultItem::s_strSeparator) +
           Name(info.Subcategory);
}

QString KindNames::Path(const QString& path) const {
    QStringList parts = path.split('/');
    for (QString& part : parts)
        part = names_.value(part, part);
    const QString called = parts.join('/');
    return called == path ? path : QStringLiteral("%1 [%2]").arg(called, path);
}

}  // namespace desk
