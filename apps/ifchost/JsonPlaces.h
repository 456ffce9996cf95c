// SPDX-License-Identifier: Apache-2.0
// Where in a JSON text its values stand, for messages to whoever wrote it.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>

namespace ifchost {

/// The lines of all values of a JSON text, by JSON pointer.
class JsonPlaces {
  public:
    /// Precondition: `json` is valid JSON and not nested deeper than the stack allows (some
    /// thousand levels).
    explicit JsonPlaces(std::string_view json);

    /// The 1-based line on which the value begins, or the nearest value around it that exists.
    std::size_t Line(std::string_view pointer) const;

    /// JSON pointer of the first member whose key its object has twice; empty when there is none.
    const std::string& RepeatedKey() const { return repeatedKey_; }

  private:
    class Walker;
    std::map<std::string, std::size_t, std::less<>> lines_;
    std::string repeatedKey_;
};

}  // namespace ifchost
