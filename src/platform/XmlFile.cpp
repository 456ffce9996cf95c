// SPDX-License-Identifier: Apache-2.0
#include "platform/XmlFile.h"

#include <algorithm>
#include <fstream>
#include <new>
#include <optional>
#include <utility>

#include <unicode/ucnv.h>

#include "platform/Converter.h"
#include "platform/Path.h"
#include "platform/SafeFile.h"
#include "platform/Text.h"

namespace kycb::xml {
namespace {

using text::FromUtf8;

/// A larger file is no rule, result or configuration file, and would exhaust the memory.
constexpr std::uintmax_t kMaxFileSize = std::uintmax_t{1} << 30;

/// The declaration stands at the start; what is further away is not searched for it.
constexpr std::size_t kMaxDeclarationSize = 512;

Status Failure(const std::wstring& name, std::string_view reason) {
    return {name + L": " + FromUtf8(reason)};
}

Status FailureAt(const std::wstring& name, std::string_view bytes, std::size_t offset,
                 std::string_view reason) {
    const std::string_view before = bytes.substr(0, std::min(offset, bytes.size()));
    const auto line = 1 + std::count(before.begin(), before.end(), '\n');
    const std::size_t lineStart = before.rfind('\n') + 1;
    const std::string place =
        std::to_string(line) + ":" + std::to_string(before.size() - lineStart + 1) + ": ";
    return {name + L":" + FromUtf8(place) + FromUtf8(reason)};
}

Status ReadBytes(const std::wstring& path, std::string& bytes) {
    if (!platform::IsUsablePath(path)) return Failure(path, "not a file name");
    const std::filesystem::path native = platform::ToNativePath(path);
    std::error_code error;
    if (!std::filesystem::is_regular_file(native, error)) {
        return Failure(path, error ? error.message() : "not a regular file");
    }
    if (std::filesystem::file_size(native, error) > kMaxFileSize) {
        return Failure(path, error ? error.message() : "larger than 1 GiB");
    }
    std::ifstream file(native, std::ios::binary);
    bytes.resize(static_cast<std::size_t>(std::filesystem::file_size(native, error)));
    file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!file) return Failure(path, "cannot be read");
    return {};
}

struct Encoding {
    std::string name;
    std::size_t markSize = 0;
};

/// The value of encoding="..." in the declaration, empty when it names none.
std::string DeclaredEncoding(std::string_view bytes) {
    bytes = bytes.substr(0, kMaxDeclarationSize);
    if (!bytes.starts_with("<?xml")) return {};
    bytes = bytes.substr(0, bytes.find("?>"));
    const std::size_t key = bytes.find("encoding");
    if (key == std::string_view::npos) return {};
    const std::size_t open = bytes.find_first_of("\"'", key);
    if (open == std::string_view::npos) return {};
    const std::size_t close = bytes.find(bytes[open], open + 1);
    if (close == std::string_view::npos) return {};
    return std::string(bytes.substr(open + 1, close - open - 1));
}

bool IsEncoding(std::string_view name, std::wstring_view other) {
    return text::EqualIgnoringAsciiCase(FromUtf8(name), other);
}

/// An encoding of two or four bytes a character shows in how it writes the first "<".
std::string EncodingOfFirstCharacter(std::string_view bytes) {
    using namespace std::string_view_literals;
    if (bytes.starts_with("<\0\0\0"sv)) return "UTF-32LE";
    if (bytes.starts_with("\0\0\0<"sv)) return "UTF-32BE";
    if (bytes.starts_with("<\0"sv)) return "UTF-16LE";
    if (bytes.starts_with("\0<"sv)) return "UTF-16BE";
    return {};
}

Encoding DetectEncoding(std::string_view bytes) {
    int32_t markSize = 0;
    UErrorCode error = U_ZERO_ERROR;
    const auto head = static_cast<int32_t>(std::min(bytes.size(), kMaxDeclarationSize));
    if (const char* marked = ucnv_detectUnicodeSignature(bytes.data(), head, &markSize, &error)) {
        return {marked, static_cast<std::size_t>(markSize)};
    }
    std::string name = EncodingOfFirstCharacter(bytes);
    if (name.empty()) name = DeclaredEncoding(bytes);
    if (name.empty()) name = "UTF-8";
    // Who declares GB2312 writes code page 936, which holds it and more, and for which that is the
    // customary name.
    if (IsEncoding(name, L"gb2312")) name = "GBK";
    return {name, 0};
}

/// The content of a file as UTF-8 without a byte order mark.
Status ToUtf8(const std::wstring& name, std::string& bytes) {
    const Encoding encoding = DetectEncoding(bytes);
    bytes.erase(0, encoding.markSize);
    if (IsEncoding(encoding.name, L"utf-8")) return {};
    std::optional<text::Converter> converter = text::Converter::Open(encoding.name);
    if (!converter) return Failure(name, "unknown encoding \"" + encoding.name + "\"");
    const auto decoded = converter->Decode(bytes, text::InvalidBytes::kRefuse);
    if (!decoded) return Failure(name, "holds bytes that are invalid in " + encoding.name);
    bytes = text::ToUtf8(*decoded);
    return {};
}

bool IsForbidden(char32_t c) {
    if (c < 0x20) return c != U'\t' && c != U'\n' && c != U'\r';
    return c == 0xFFFE || c == 0xFFFF;
}

Status CheckCharacters(const std::wstring& name, std::string_view bytes) {
    for (std::size_t i = 0; i < bytes.size();) {
        const std::size_t start = i;
        const char32_t c = text::NextFromUtf8(bytes, i);
        if (c == text::kInvalidUtf8) return FailureAt(name, bytes, start, "invalid UTF-8");
        if (IsForbidden(c)) return FailureAt(name, bytes, start, "a character that XML forbids");
    }
    return {};
}

unsigned int ParseFlags(Keep keep) {
    // A text of nothing but blanks counts when it is all that an element holds. Text beside the
    // root element is kept only to be refused.
    unsigned int flags = pugi::parse_default | pugi::parse_ws_pcdata_single |
                         pugi::parse_declaration | pugi::parse_doctype | pugi::parse_fragment;
    if (keep == Keep::kAllNodes) flags |= pugi::parse_comments | pugi::parse_pi;
    return flags;
}

struct Fault {
    const char* reason = nullptr;
    std::ptrdiff_t offset = 0;
};

/// What the parser lets pass although it is no document that we should read.
Fault FaultOf(const pugi::xml_document& document) {
    bool hasRoot = false;
    for (const pugi::xml_node& node : document) {
        const std::ptrdiff_t offset = node.offset_debug();
        if (node.type() == pugi::node_element) {
            if (hasRoot) return {"more than one root element", offset};
            hasRoot = true;
        }
        if (node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata) {
            return {"text outside the root element", offset};
        }
        if (node.type() == pugi::node_doctype &&
            std::string_view(node.value()).find("<!ENTITY") != std::string_view::npos) {
            return {"entity declarations are not allowed", offset};
        }
    }
    return {hasRoot ? nullptr : "no root element"};
}

Status Parse(pugi::xml_document& document, const std::wstring& name, std::string_view bytes,
             Keep keep) {
    if (Status status = CheckCharacters(name, bytes); !status.IsOk()) return status;
    const pugi::xml_parse_result result =
        document.load_buffer(bytes.data(), bytes.size(), ParseFlags(keep), pugi::encoding_utf8);
    const Fault fault = result ? FaultOf(document) : Fault{result.description(), result.offset};
    if (!fault.reason) return {};
    const auto offset = static_cast<std::size_t>(std::max<std::ptrdiff_t>(fault.offset, 0));
    Status failure = FailureAt(name, bytes, offset, fault.reason);
    document.reset();
    return failure;
}

/// A carriage return in the output can only come from the text of an element, where the printer
/// leaves it as it is and a reader would take it for a line feed; a reference to it survives.
class FileWriter : public pugi::xml_writer {
  public:
    explicit FileWriter(platform::SafeFile& file) : file_(file) {}

    void write(const void* data, std::size_t size) override {
        constexpr std::string_view kReference = "&#13;";
        std::string_view rest(static_cast<const char*>(data), size);
        for (std::size_t at; (at = rest.find('\r')) != std::string_view::npos;
             rest.remove_prefix(at + 1)) {
            file_.Write(rest.data(), at);
            file_.Write(kReference.data(), kReference.size());
        }
        file_.Write(rest.data(), rest.size());
    }

  private:
    platform::SafeFile& file_;
};

}  // namespace

Status LoadFile(pugi::xml_document& document, const std::wstring& path, Keep keep) {
    document.reset();
    std::string bytes;
    if (Status status = ReadBytes(path, bytes); !status.IsOk()) return status;
    return LoadBytes(document, path, std::move(bytes), keep);
}

Status LoadBytes(pugi::xml_document& document, const std::wstring& name, std::string bytes,
                 Keep keep) {
    document.reset();
    if (Status status = ToUtf8(name, bytes); !status.IsOk()) return status;
    return Parse(document, name, bytes, keep);
}

Status LoadText(pugi::xml_document& document, std::wstring_view text, Keep keep) {
    document.reset();
    return Parse(document, L"XML text", text::ToUtf8(text), keep);
}

Status SaveFile(const pugi::xml_node& node, const std::wstring& path) {
    platform::SafeFile file(path);
    FileWriter writer(file);
    // Indentation would make the file of a deeply nested document grow with the depth's square.
    constexpr const char* kNoIndentation = "";
    node.print(writer, kNoIndentation, pugi::format_indent, pugi::encoding_utf8);
    return file.Commit();
}

std::string ToXmlText(std::wstring_view text) {
    std::wstring allowed(text);
    std::replace_if(
        allowed.begin(), allowed.end(),
        [](wchar_t c) { return IsForbidden(static_cast<char32_t>(c)); }, L'\xFFFD');
    return text::ToUtf8(allowed);
}

std::wstring TextOf(const pugi::xml_node& element) {
    std::string joined;
    for (const pugi::xml_node& child : element) {
        if (child.type() == pugi::node_pcdata || child.type() == pugi::node_cdata) {
            joined += child.value();
        }
    }
    return FromUtf8(joined);
}

std::wstring AttributeOf(const pugi::xml_node& element, const std::wstring& name) {
    return FromUtf8(element.attribute(text::ToUtf8(name).c_str()).value());
}

void SetAttributeOf(pugi::xml_node element, const std::wstring& name, const std::wstring& value) {
    const std::string key = text::ToUtf8(name);
    pugi::xml_attribute attribute = element.attribute(key.c_str());
    if (!attribute) attribute = element.append_attribute(key.c_str());
    if (!attribute.set_value(ToXmlText(value).c_str())) throw std::bad_alloc();
}

pugi::xml_node AppendElement(pugi::xml_node parent, const std::wstring& tag) {
    const pugi::xml_node element = parent.append_child(text::ToUtf8(tag).c_str());
    if (!element) throw std::bad_alloc();
    return element;
}

pugi::xml_node RootOf(const pugi::xml_document& document) {
    return document.document_element();
}

}  // namespace kycb::xml
