// SPDX-License-Identifier: Apache-2.0
#include "TextPattern.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <stdexcept>

#include "HostText.h"

namespace ifchost {
namespace {

// Some hundred milliseconds; a sane expression on a name needs a millionth of it.
constexpr std::int32_t kRegexTimeLimit = 500;

bool IsContinuation(char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

// Moves past one UTF-8 character.
std::size_t NextCharacter(const std::string& text, std::size_t i) {
    do {
        ++i;
    } while (i < text.size() && IsContinuation(text[i]));
    return i;
}

// The usual greedy wildcard match: on a mismatch the latest "*" takes one character more.
bool MatchesWildcard(const std::string& pattern, const std::string& text) {
    constexpr std::size_t kNone = std::string::npos;
    std::size_t p = 0;
    std::size_t t = 0;
    std::size_t starPattern = kNone;
    std::size_t starText = 0;
    while (t < text.size()) {
        if (p < pattern.size() && pattern[p] == '*') {
            starPattern = ++p;
            starText = t;
        } else if (p < pattern.size() && pattern[p] == '?') {
            ++p;
            t = NextCharacter(text, t);
        } else if (p < pattern.size() && pattern[p] == text[t]) {
            ++p;
            ++t;
        } else if (starPattern != kNone) {
            p = starPattern;
            t = starText = NextCharacter(text, starText);
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == '*')
        ++p;
    return p == pattern.size();
}

bool IsExpression(std::string_view pattern) {
    return pattern.size() > 2 && pattern.front() == '/' && pattern.back() == '/';
}

icu::UnicodeString Utf16Of(std::string_view utf8) {
    return icu::UnicodeString::fromUTF8(
        icu::StringPiece(utf8.data(), static_cast<std::int32_t>(utf8.size())));
}

}  // namespace

PatternSubject::PatternSubject(std::string_view utf8) : text_(utf8), folded_(FoldCase(utf8)) {}

const icu::UnicodeString& PatternSubject::Utf16() const {
    if (!utf16_) utf16_ = Utf16Of(text_);
    return *utf16_;
}

std::optional<TextPattern> TextPattern::Parse(std::string_view pattern, std::string& reason) {
    TextPattern out;
    out.source_ = pattern;
    if (!IsExpression(pattern)) {
        out.wildcard_ = FoldCase(pattern);
        return out;
    }
    UErrorCode status = U_ZERO_ERROR;
    UParseError where{};
    out.expression_.reset(icu::RegexPattern::compile(Utf16Of(pattern.substr(1, pattern.size() - 2)),
                                                     UREGEX_CASE_INSENSITIVE, where, status));
    if (U_FAILURE(status)) {
        reason = "not a regular expression (" + std::string(u_errorName(status)) +
                 " at character " + std::to_string(where.offset) + ")";
        return std::nullopt;
    }
    return out;
}

bool TextPattern::Matches(const PatternSubject& subject) const {
    if (!expression_) return MatchesWildcard(wildcard_, subject.Folded());
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::RegexMatcher> matcher(expression_->matcher(subject.Utf16(), status));
    if (U_SUCCESS(status)) matcher->setTimeLimit(kRegexTimeLimit, status);
    const bool found = U_SUCCESS(status) && matcher->find(status) != 0;
    if (U_FAILURE(status)) {
        throw std::runtime_error("the expression " + source_ + " gives up (" + u_errorName(status) +
                                 ") on the text \"" + subject.Folded() + "\"");
    }
    return found;
}

}  // namespace ifchost
