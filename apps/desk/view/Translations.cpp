// SPDX-License-Identifier: Apache-2.0
#include "desk/view/Translations.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>

namespace desk {

Translations::Translations(const QLocale& locale, const QString& programFolder) {
    const QString name = QStringLiteral("kyclash-desk");
    if (!window_.load(locale, name, "_", programFolder + "/translations") &&
        !window_.load(locale, name, "_", programFolder + "/../share/kyclash/translations")) {
        return;
    }
    // A window in two languages is worse than one in English: the toolkit follows our own texts.
    if (toolkit_.load(locale, "qtbase", "_", QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(&toolkit_);
    QCoreApplication::installTranslator(&window_);
}

Translations::~Translations() {
    QCoreApplication::removeTranslator(&window_);
    QCoreApplication::removeTranslator(&toolkit_);
}

}  // namespace desk
