// SPDX-License-Identifier: Apache-2.0
#include "NominalDiameter.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <string>
#include <system_error>

#include "HostText.h"

namespace ifchost {
namespace {

struct PipeSize {
    double outer;
    double nominal;
};

// Outer diameters of steel pipes and their nominal sizes (mm).
constexpr std::array<PipeSize, 24> kSteelPipes = {{
    {17.2, 10},   {21.3, 15},   {26.9, 20},   {33.7, 25},   {42.4, 32},   {48.3, 40},
    {60.3, 50},   {76.1, 65},   {88.9, 80},   {114.3, 100}, {139.7, 125}, {168.3, 150},
    {219.1, 200}, {273.0, 250}, {323.9, 300}, {355.6, 350}, {406.4, 400}, {457.0, 450},
    {508.0, 500}, {559.0, 550}, {610.0, 600}, {711.0, 700}, {813.0, 800}, {914.0, 900},
}};
// Standards and tessellation differ by less than this (mm) from one another.
constexpr double kOuterSlack = 0.6;
constexpr double kLargestDiameter = 10000.0;

constexpr std::array kMarks = {std::string_view("dn"), std::string_view("\xC3\xB8"),  // ø
                               std::string_view("\xCF\x86"),                          // φ
                               std::string_view("\xE2\x8C\x80"),  // diameter sign
                               std::string_view("de")};

bool IsAsciiLetter(char c) {
    return c >= 'a' && c <= 'z';
}

// The number right after position `at`, blanks and an equals sign skipped.
std::optional<double> NumberAt(std::string_view text, std::size_t at) {
    at = text.find_first_not_of(" =:", at);
    if (at == std::string_view::npos) return std::nullopt;
    double number = 0.0;
    const auto [end, code] = std::from_chars(text.data() + at, text.data() + text.size(), number,
                                             std::chars_format::fixed);
    const bool plausible = code == std::errc() && number > 0.0 && number <= kLargestDiameter;
    return plausible ? std::optional(number) : std::nullopt;
}

std::optional<double> DiameterAfterMark(std::string_view text, std::string_view mark) {
    for (std::size_t at = text.find(mark); at != std::string_view::npos;
         at = text.find(mark, at + 1)) {
        if (at > 0 && IsAsciiLetter(mark.front()) && IsAsciiLetter(text[at - 1])) continue;
        if (const auto number = NumberAt(text, at + mark.size())) return number;
    }
    return std::nullopt;
}

}  // namespace

std::optional<double> NominalDiameterInText(std::string_view utf8) {
    const std::string text = FoldCase(utf8);
    for (const std::string_view mark : kMarks) {
        if (const auto diameter = DiameterAfterMark(text, mark)) return diameter;
    }
    return std::nullopt;
}

double NominalDiameterOfOuter(double outerMm) {
    for (const PipeSize& pipe : kSteelPipes) {
        if (std::abs(pipe.outer - outerMm) <= kOuterSlack) return pipe.nominal;
    }
    return std::round(outerMm);
}

}  // namespace ifchost
