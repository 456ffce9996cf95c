// SPDX-License-Identifier: Apache-2.0
#include "result/ResultXml.h"

#include "KYCollisionBase/platform/HostServices.h"

#include <array>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <typeinfo>

#include <boost/lexical_cast.hpp>
#include <pugixml.hpp>

#include "platform/Text.h"
#include "platform/XmlFile.h"
#include "result/ResultItemAccess.h"
#include "result/XmlAttributeText.h"

namespace kycb {

using KYCOLLISION::RESULT::KyResultItem;

namespace {

// The elements from the root to the item, by level.
constexpr std::array<const char*, 3> kTags = {"碰撞检查结果", "工程", "楼层"};
constexpr const char* kItemTag = "碰撞点";

// What gathers before the file is given a piece (bytes).
constexpr std::size_t kPieceSize = std::size_t{1} << 16;

constexpr std::size_t kIndent = 2;

void AppendNumber(std::string& out, std::int64_t value) {
    std::array<char, 24> digits;
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value);
    out.append(digits.data(), end.ptr);
}

// Appends fields as attributes.
class FieldWriter {
  public:
    explicit FieldWriter(std::string& out) : out_(out) {}

    void operator()(const char* name, const std::wstring& value) {
        BeginAttribute(name);
        AppendAttributeText(out_, value);
        out_ += '"';
    }
    void operator()(const char* name, std::int64_t value) {
        BeginAttribute(name);
        AppendNumber(out_, value);
        out_ += '"';
    }

  private:
    void BeginAttribute(const char* name) {
        out_ += ' ';
        out_ += name;
        out_ += "=\"";
    }

    std::string& out_;
};

bool IsWholeNumber(std::string_view text) {
    if (!text.empty() && (text.front() == '-' || text.front() == '+')) text.remove_prefix(1);
    return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

// The digits are checked first because the conversion would take those of a locale that groups
// them, and a file must mean the same everywhere.
template <class Number>
Number ToNumber(const char* text) {
    if (!IsWholeNumber(text)) throw boost::bad_lexical_cast(typeid(std::string), typeid(Number));
    return boost::lexical_cast<Number>(text);
}

// Sets fields from the attributes of an element.
class FieldReader {
  public:
    explicit FieldReader(const pugi::xml_node& element)
        : element_(element), next_(element.first_attribute()) {}

    void operator()(const char* name, std::wstring& field) { field = text::FromUtf8(Value(name)); }
    void operator()(const char* name, int& field) { Convert(name, field); }
    void operator()(const char* name, std::int64_t& field) { Convert(name, field); }

    /// The attribute at which a conversion failed, as `name="value"`.
    std::string GetFault() const { return fault_; }

  private:
    template <class Number>
    void Convert(const char* name, Number& field) {
        const char* value = Value(name);
        try {
            field = ToNumber<Number>(value);
        } catch (const boost::bad_lexical_cast&) {
            fault_ = std::string(name) + "=\"" + value + "\"";
            throw;
        }
    }

    // Files of our own have the attributes in order, which saves the search.
    const char* Value(const char* name) {
        if (std::strcmp(next_.name(), name) != 0) return element_.attribute(name).value();
        const char* value = next_.value();
        next_ = next_.next_attribute();
        return value;
    }

    pugi::xml_node element_;
    pugi::xml_attribute next_;
    std::string fault_;
};

bool IsElement(const pugi::xml_node& node) {
    return node.type() == pugi::node_element;
}

}  // namespace

ResultXmlWriter::ResultXmlWriter(const std::wstring& path) : file_(path) {
    Begin(kRoot);
}

void ResultXmlWriter::BeginProject(int projectId) {
    Begin(kProject);
    FieldWriter{text_}("project", projectId);
}

void ResultXmlWriter::BeginFloor(const std::wstring& floorName) {
    Begin(kFloor);
    FieldWriter{text_}("floor", floorName);
}

void ResultXmlWriter::WriteItem(const KyResultItem& item) {
    if (isEmpty_) text_ += ">\n";
    isEmpty_ = false;
    text_.append(kIndent * static_cast<std::size_t>(openLevels_), ' ');
    text_ += '<';
    text_ += kItemTag;
    ResultItemAccess::VisitFields(item, FieldWriter(text_));
    text_ += " />\n";
    if (text_.size() >= kPieceSize) Flush();
}

Status ResultXmlWriter::Commit() {
    EndDownTo(kRoot);
    Flush();
    return file_.Commit();
}

void ResultXmlWriter::Begin(Level level) {
    EndDownTo(level);
    if (level != kRoot && isEmpty_) text_ += ">\n";
    text_.append(kIndent * static_cast<std::size_t>(level), ' ');
    text_ += '<';
    text_ += kTags[static_cast<std::size_t>(level)];
    ++openLevels_;
    isEmpty_ = true;
}

void ResultXmlWriter::EndDownTo(int level) {
    while (openLevels_ > level) {
        --openLevels_;
        if (isEmpty_) {
            text_ += " />\n";
        } else {
            text_.append(kIndent * static_cast<std::size_t>(openLevels_), ' ');
            text_ += "</";
            text_ += kTags[static_cast<std::size_t>(openLevels_)];
            text_ += ">\n";
        }
        isEmpty_ = false;
    }
}

void ResultXmlWriter::Flush() {
    file_.Write(text_.data(), text_.size());
    text_.clear();
}

Status ResultXmlReader::Read(const std::wstring& path,
                             const std::function<void(std::unique_ptr<Item>)>& take) {
    errorText_.clear();
    pugi::xml_document document;
    if (!BASETOOLS::CheckFileExist(path)) return {path + L": no such file"};
    if (Status status = xml::LoadFile(document, path, xml::Keep::kElementsAndText);
        !status.IsOk()) {
        return status;
    }
    std::int64_t number = 0;
    for (const pugi::xml_node& project : xml::RootOf(document)) {
        for (const pugi::xml_node& floor : project) {
            for (const pugi::xml_node& element : floor) {
                if (!IsElement(element)) continue;
                ++number;
                auto item = std::make_unique<Item>();
                FieldReader reader(element);
                try {
                    ResultItemAccess::VisitFields(*item, reader);
                } catch (const boost::bad_lexical_cast&) {
                    errorText_ = path + L": item " + text::FromInt(number) +
                                 L": not a whole number of its type: " +
                                 text::FromUtf8(reader.GetFault());
                    throw;
                }
                take(std::move(item));
            }
        }
    }
    return {};
}

}  // namespace kycb
