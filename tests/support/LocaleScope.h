// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdlib>
#include <locale>
#include <optional>
#include <stdexcept>
#include <string>

#include "support/TempFolder.h"

namespace kycbtest {

/// Makes a locale the global one of both C and C++ for a test. Where the machine lacks the locale
/// it is compiled into a folder of its own (with localedef, from Debian's package "locales").
class LocaleScope {
  public:
    /// `language` like "de_DE"; the encoding is UTF-8.
    explicit LocaleScope(const std::string& language) {
        const std::string name = language + ".UTF-8";
        if (!Activate(name) && Compile(language, name)) Activate(name);
    }
    ~LocaleScope() {
        std::locale::global(before_);
        if (compiled_) ::unsetenv("LOCPATH");
    }
    LocaleScope(const LocaleScope&) = delete;
    LocaleScope& operator=(const LocaleScope&) = delete;

    /// False when the locale cannot be had here; the test is to be skipped then.
    bool IsActive() const { return active_; }

  private:
    bool Activate(const std::string& name) {
        try {
            std::locale::global(std::locale(name));
            active_ = true;
        } catch (const std::runtime_error&) {
            active_ = false;
        }
        return active_;
    }

    bool Compile(const std::string& language, const std::string& name) {
        compiled_.emplace();
        const std::string folder = compiled_->Path().string();
        const std::string command =
            "localedef -i " + language + " -f UTF-8 '" + folder + "/" + name + "' >/dev/null 2>&1";
        if (std::system(command.c_str()) != 0) return false;
        return ::setenv("LOCPATH", folder.c_str(), 1) == 0;
    }

    std::locale before_;
    std::optional<TempFolder> compiled_;
    bool active_ = false;
};

}  // namespace kycbtest
