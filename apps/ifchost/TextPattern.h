// SPDX-License-Identifier: Apache-2.0
// A text pattern of the mapping file: a text with wildcards, or a regular expression.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <unicode/regex.h>

namespace ifchost {

/// A text in the two forms that patterns look at, made once per text.
class PatternSubject {
  public:
    explicit PatternSubject(std::string_view utf8);

    const std::string& Folded() const { return folded_; }
    /// The text as it stands, converted when it is first asked for.
    const icu::UnicodeString& Utf16() const;

  private:
    std::string text_;
    std::string folded_;
    mutable std::optional<icu::UnicodeString> utf16_;
};

/// A compiled pattern. Copies share their expression. Case is always ignored.
///
/// "/…/" is a regular expression that must be found somewhere in the text. Anything else must
/// match the whole text; "*" stands for any characters, also none, and "?" for exactly one.
class TextPattern {
  public:
    /// Nothing, and `reason` filled, for a regular expression that is none.
    static std::optional<TextPattern> Parse(std::string_view pattern, std::string& reason);

    /// Throws std::runtime_error when a regular expression backtracks without end on the text.
    bool Matches(const PatternSubject& subject) const;

  private:
    std::string source_;
    std::string wildcard_;  // folded; unused for expressions
    std::shared_ptr<const icu::RegexPattern> expression_;
};

}  // namespace ifchost
