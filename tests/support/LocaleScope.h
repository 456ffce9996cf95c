// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <clocale>
#include <cstdlib>
#include <locale>
#include <optional>
#include <string>

#include "support/TemporaryFolder.h"

#if defined(__SANITIZE_ADDRESS__)
#define KYCB_TEST_FINDS_LEAKS
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define KYCB_TEST_FINDS_LEAKS
#endif
#endif
#if defined(KYCB_TEST_FINDS_LEAKS)
#include <sanitizer/lsan_interface.h>
#endif

namespace kycbtest {

/// Makes a locale the process's for a test: for C, and for C++ a locale with the same decimal mark
/// that groups digits. Where the machine lacks the locale it is compiled into a folder of its own
/// (with localedef, from Debian's package "locales").
class LocaleScope {
  public:
    /// `language` like "de_DE"; the encoding is UTF-8.
    explicit LocaleScope(const std::string& language)
        : name_(language + ".UTF-8"), before_(std::setlocale(LC_ALL, nullptr)) {
        active_ = Activate(name_) || (Compile(language, name_) && Activate(name_));
        if (!active_) return;
        const char decimal = *std::localeconv()->decimal_point;
        const std::locale narrow(std::locale::classic(), new Grouping<char>(decimal));
        std::locale::global(std::locale(narrow, new Grouping<wchar_t>(decimal)));
    }
    ~LocaleScope() {
        std::locale::global(std::locale::classic());
        Set(before_);
        if (compiled_) ::unsetenv("LOCPATH");
    }
    LocaleScope(const LocaleScope&) = delete;
    LocaleScope& operator=(const LocaleScope&) = delete;

    /// False when the locale cannot be had here; the test is to be skipped then.
    bool IsActive() const { return active_; }

    /// What to say of a test that is skipped for it.
    std::string WhyInactive() const {
        return "locale " + name_ + " cannot be had: install \"locales\"";
    }

  private:
    template <class Char>
    class Grouping : public std::numpunct<Char> {
      public:
        explicit Grouping(char decimal) : decimal_(static_cast<Char>(decimal)) {}

      protected:
        Char do_decimal_point() const override { return decimal_; }
        Char do_thousands_sep() const override {
            return static_cast<Char>(decimal_ == Char(',') ? '.' : ',');
        }
        std::string do_grouping() const override { return "\3"; }

      private:
        Char decimal_;
    };

    static bool Activate(const std::string& name) { return Set(name) != nullptr; }

    static const char* Set(const std::string& name) {
#if defined(KYCB_TEST_FINDS_LEAKS)
        // The C library never frees the folder list that it makes of LOCPATH.
        const __lsan::ScopedDisabler notOurs;
#endif
        return std::setlocale(LC_ALL, name.c_str());
    }

    bool Compile(const std::string& language, const std::string& name) {
        compiled_.emplace();
        const std::string folder = compiled_->Path().string();
        const std::string command =
            "localedef -i " + language + " -f UTF-8 '" + folder + "/" + name + "' >/dev/null 2>&1";
        if (std::system(command.c_str()) != 0) return false;
        return ::setenv("LOCPATH", folder.c_str(), 1) == 0;
    }

    std::string name_;
    std::string before_;
    std::optional<TemporaryFolder> compiled_;
    bool active_ = false;
};

}  // namespace kycbtest
