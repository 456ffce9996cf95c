// SPDX-License-Identifier: Apache-2.0
// Comma-separated values that spreadsheets open as they are.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kyclash {

/// Builds a CSV text: UTF-8 with a byte order mark (spreadsheets take the text for another encoding
/// without it), rows ended by CR LF, and quotes as RFC 4180 has them.
///
/// Cells that a spreadsheet would take for a formula get an apostrophe in front: names in a model
/// come from anybody, and a formula runs when the file is opened. That is every cell that begins
/// with "=", "@", a tab or a line break, and one that begins with "+" or "-" unless it is made of
/// digits, signs, separators and blanks only, as offsets and heights are.
class CsvText {
  public:
    explicit CsvText(const std::vector<std::string>& header);

    /// Precondition: as many cells as the header has. All texts are UTF-8.
    void AddRow(const std::vector<std::string>& cells);

    const std::string& Text() const { return text_; }

  private:
    std::string text_;
};

/// A cell as it stands in the file.
std::string CsvCell(std::string_view text);

}  // namespace kyclash
