// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QTranslator>

class QLocale;

namespace desk {

/// The window's and the toolkit's texts in a language, as far as there are translations: from
/// `translations` beside the program, else from `share/kyclash/translations` of its installation.
/// They hold for as long as the object lives.
class Translations {
  public:
    Translations(const QLocale& locale, const QString& programFolder);
    ~Translations();
    Translations(const Translations&) = delete;
    Translations& operator=(const Translations&) = delete;

    /// Whether there is a translation of the window's own texts.
    bool HasWindowTexts() const { return !window_.isEmpty(); }

  private:
    QTranslator toolkit_;
    QTranslator window_;
};

}  // namespace desk
