// SPDX-License-Identifier: Apache-2.0
#include "kyclash/Csv.h"

namespace kyclash {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kRowEnd = "\r\n";

bool IsTakenForFormula(std::string_view text) {
    if (text.empty()) return false;
    const char first = text.front();
    if (first == '+' || first == '-') {
        return text.find_first_not_of("0123456789+-.,~ ") != std::string_view::npos;
    }
    return std::string_view("=@\t\r\n").find(first) != std::string_view::npos;
}

}  // namespace

std::string CsvCell(std::string_view text) {
    const std::string_view guard = IsTakenForFormula(text) ? "'" : "";
    if (text.find_first_of("\",\r\n") == std::string_view::npos) {
        return std::string(guard).append(text);
    }
    std::string cell = "\"";
    cell += guard;
    for (const char c : text) {
        if (c == '"') cell += '"';
        cell += c;
    }
    return cell + '"';
}

CsvText::CsvText(const std::vector<std::string>& header) : text_(kByteOrderMark) {
    AddRow(header);
}

void CsvText::AddRow(const std::vector<std::string>& cells) {
    for (std::size_t i = 0; i < cells.size(); ++i) {
        if (i > 0) text_ += ',';
        text_ += CsvCell(cells[i]);
    }
    text_ += kRowEnd;
}

}  // namespace kyclash
