// SPDX-License-Identifier: Apache-2.0
#include "JsonPlaces.h"

#include <set>

namespace ifchost {
namespace {

std::string Escaped(std::string_view key) {
    std::string out;
    for (const char c : key) {
        if (c == '~') {
            out += "~0";
        } else if (c == '/') {
            out += "~1";
        } else {
            out.push_back(c);
        }
    }
    return out;
}

}  // namespace

// Trusts the text to be valid, so it only looks at what separates values.
class JsonPlaces::Walker {
  public:
    Walker(std::string_view json, JsonPlaces& places) : json_(json), places_(places) {}

    void Value(const std::string& pointer) {
        SkipBlanks();
        places_.lines_.emplace(pointer, line_);
        if (Peek() == '{') {
            Object(pointer);
        } else if (Peek() == '[') {
            Array(pointer);
        } else if (Peek() == '"') {
            String();
        } else {
            while (at_ < json_.size() &&
                   std::string_view(",]} \t\r\n").find(json_[at_]) == std::string_view::npos) {
                ++at_;
            }
        }
    }

  private:
    char Peek() const { return at_ < json_.size() ? json_[at_] : '\0'; }

    void SkipBlanks() {
        // A byte order mark counts as blank, too.
        for (; at_ < json_.size(); ++at_) {
            if (json_[at_] == '\n') ++line_;
            if (std::string_view(" \t\r\n\xEF\xBB\xBF").find(json_[at_]) ==
                std::string_view::npos) {
                return;
            }
        }
    }

    // The text between the quotes, escapes as they stand.
    std::string_view String() {
        const std::size_t begin = ++at_;
        while (at_ < json_.size() && json_[at_] != '"')
            at_ += json_[at_] == '\\' ? 2 : 1;
        return json_.substr(begin, at_++ - begin);
    }

    // After a value: past the comma, or past the closing bracket and false.
    bool More() {
        SkipBlanks();
        return at_ < json_.size() && json_[at_++] == ',';
    }

    bool ClosesAtOnce() {
        ++at_;
        SkipBlanks();
        if (Peek() != '}' && Peek() != ']') return false;
        ++at_;
        return true;
    }

    void Object(const std::string& pointer) {
        if (ClosesAtOnce()) return;
        std::set<std::string, std::less<>> keys;
        do {
            SkipBlanks();
            const std::string child = pointer + "/" + Escaped(String());
            if (!keys.insert(child).second && places_.repeatedKey_.empty()) {
                places_.repeatedKey_ = child;
            }
            SkipBlanks();
            ++at_;  // the colon
            Value(child);
        } while (More());
    }

    void Array(const std::string& pointer) {
        if (ClosesAtOnce()) return;
        std::size_t index = 0;
        do {
            Value(pointer + "/" + std::to_string(index++));
        } while (More());
    }

    std::string_view json_;
    JsonPlaces& places_;
    std::size_t at_ = 0;
    std::size_t line_ = 1;
};

JsonPlaces::JsonPlaces(std::string_view json) {
    Walker(json, *this).Value("");
}

std::size_t JsonPlaces::Line(std::string_view pointer) const {
    while (true) {
        const auto found = lines_.find(pointer);
        if (found != lines_.end()) return found->second;
        const std::size_t slash = pointer.rfind('/');
        if (slash == std::string_view::npos) return 1;
        pointer = pointer.substr(0, slash);
    }
}

}  // namespace ifchost
