// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <sys/resource.h>

#include "platform/HostileXml.h"
#include "platform/MSXMLUtilityPtr.h"
#include "platform/Text.h"
#include "support/TempFolder.h"

namespace KYTOOLS {
namespace {

using kycbtest::TempFolder;
using testing::ElementsAre;
using Xml = MSXMLUtilityPtr;

/// A document read from a file with the given bytes, or null.
std::shared_ptr<XmlDocument> Open(const TempFolder& folder, const std::string& bytes) {
    auto document = Xml::CreateDOMObj();
    return Xml::OpenXml(*document, folder.Write("in.xml", bytes)) ? document : nullptr;
}

XmlElement Root(const XmlDocument& document) {
    XmlElement root;
    EXPECT_TRUE(Xml::GetRootElement(document, root));
    return root;
}

std::vector<std::wstring> ChildTags(const XmlElement& element) {
    std::vector<std::wstring> tags;
    auto children = Xml::EnumChildNodes(element);
    for (XmlElement child; children.Next(child);)
        tags.push_back(child.GetTag());
    return tags;
}

TEST(MSXMLUtilityPtr, BuildsAndSavesADocument) {
    const TempFolder folder;
    const auto document = Xml::CreateDOMObj();
    XmlElement root = Xml::CreateElement(*document, L"\u6839");
    XmlElement child = Xml::CreateElement(*document, L"item");
    Xml::SetAttribute(child, L"b", L"2");
    Xml::SetAttribute(child, L"a", L"1");
    Xml::SetAttribute(child, L"b", L"3");
    root.AppendChild(child);
    Xml::SetRootElement(*document, root);
    ASSERT_TRUE(Xml::SaveXmlQuick(*document, folder.File("out.xml")));
    EXPECT_EQ(folder.Read("out.xml"),
              "<\xE6\xA0\xB9>\n<item b=\"3\" a=\"1\" />\n</\xE6\xA0\xB9>\n");
}

TEST(MSXMLUtilityPtr, SavesNothingWithoutARoot) {
    const TempFolder folder;
    const auto document = Xml::CreateDOMObj();
    Xml::CreateElement(*document, L"loose");
    EXPECT_FALSE(Xml::SaveXmlQuick(*document, folder.File("out.xml")));
    EXPECT_EQ(folder.CountFiles(), 0u);
}

TEST(MSXMLUtilityPtr, ReportsAFailedSave) {
    const TempFolder folder;
    const auto document = Xml::CreateDOMObj();
    Xml::SetRootElement(*document, Xml::CreateElement(*document, L"r"));
    EXPECT_FALSE(Xml::SaveXmlQuick(*document, folder.File("none/out.xml")));
    EXPECT_NE(document->GetErrorText().find(L"none/out.xml"), std::wstring::npos);
}

TEST(MSXMLUtilityPtr, RefusesToMixDocuments) {
    const auto a = Xml::CreateDOMObj();
    const auto b = Xml::CreateDOMObj();
    XmlElement parent = Xml::CreateElement(*a, L"r");
    EXPECT_THROW(parent.AppendChild(Xml::CreateElement(*b, L"c")), std::invalid_argument);
    EXPECT_THROW(parent.AppendChild(parent), std::invalid_argument);
}

TEST(MSXMLUtilityPtr, AttributeTextSurvivesAFile) {
    const TempFolder folder;
    const std::wstring text =
        L" \"'<>&amp; \t tab\r\n line\n\u6881 \u0085\u2028\uFFFD\U0001F600\U0010FFFD ]]> <!-- ";
    auto document = Xml::CreateDOMObj();
    XmlElement root = Xml::CreateElement(*document, L"r");
    Xml::SetAttribute(root, L"a", text);
    Xml::SetRootElement(*document, root);
    ASSERT_TRUE(Xml::SaveXmlQuick(*document, folder.File("out.xml")));
    ASSERT_TRUE(Xml::OpenXml(*document, folder.File("out.xml")));
    EXPECT_EQ(Xml::GetAttributeValue(Root(*document), L"a"), text);
}

TEST(MSXMLUtilityPtr, ForbiddenCharactersBecomeReplacementCharacters) {
    std::wstring text;
    for (wchar_t c = 0; c < 0x20; ++c)
        text += c;
    text += {static_cast<wchar_t>(0xFFFE), static_cast<wchar_t>(0xFFFF),
             static_cast<wchar_t>(0xDC00), L'z'};
    std::wstring expected = std::wstring(9, L'\uFFFD') + L"\t\n\uFFFD\uFFFD\r";
    expected += std::wstring(18 + 3, L'\uFFFD') + L"z";

    const TempFolder folder;
    auto document = Xml::CreateDOMObj();
    XmlElement root = Xml::CreateElement(*document, L"r");
    Xml::SetAttribute(root, L"a", text);
    EXPECT_EQ(Xml::GetAttributeValue(root, L"a"), expected);
    Xml::SetRootElement(*document, root);
    ASSERT_TRUE(Xml::SaveXmlQuick(*document, folder.File("out.xml")));
    ASSERT_TRUE(Xml::OpenXml(*document, folder.File("out.xml")));
    EXPECT_EQ(Xml::GetAttributeValue(Root(*document), L"a"), expected);
}

TEST(MSXMLUtilityPtr, MissingAttributeIsEmpty) {
    const TempFolder folder;
    const auto document = Open(folder, "<r a=\"1\"/>");
    ASSERT_TRUE(document);
    EXPECT_EQ(Xml::GetAttributeValue(Root(*document), L"b"), L"");
    EXPECT_EQ(Xml::GetAttributeValue(XmlElement(), L"a"), L"");
}

TEST(EnumChildNodes, WalksTheElementsInOrder) {
    const TempFolder folder;
    const auto document = Open(folder, "<r>\n  <a/>\n  <b><x/></b>\n  <a/>\n</r>");
    ASSERT_TRUE(document);
    EXPECT_TRUE(Xml::EnumChildNodes(Root(*document)).IsValid());
    EXPECT_THAT(ChildTags(Root(*document)), ElementsAre(L"a", L"b", L"a"));
}

TEST(EnumChildNodes, EndsAtAChildThatIsNoElement) {
    const TempFolder folder;
    for (const char* other : {"<!-- c -->", "text", "<![CDATA[x]]>", "<?pi x?>"}) {
        const auto document = Open(folder, std::string("<r><a/>") + other + "<b/></r>");
        ASSERT_TRUE(document);
        EXPECT_THAT(ChildTags(Root(*document)), ElementsAre(L"a")) << other;
    }
}

TEST(EnumChildNodes, IsValidButEmptyWithoutChildren) {
    const TempFolder folder;
    for (const char* bytes : {"<r/>", "<r></r>", "<r>\n</r>"}) {
        const auto document = Open(folder, bytes);
        ASSERT_TRUE(document);
        EXPECT_TRUE(Xml::EnumChildNodes(Root(*document)).IsValid());
        EXPECT_TRUE(ChildTags(Root(*document)).empty());
    }
}

TEST(EnumChildNodes, IsInvalidWithoutAnElement) {
    EXPECT_FALSE(Xml::EnumChildNodes(XmlElement()).IsValid());
    XmlElement root;
    EXPECT_FALSE(Xml::GetRootElement(*Xml::CreateDOMObj(), root));
}

TEST(OpenXml, ReadsEachEncoding) {
    const TempFolder folder;
    const std::u16string wide = u"<r a=\"\u6881\"/>";
    const std::string utf8 = "<r a=\"\xE6\xA2\x81\"/>";
    const auto utf16 = [&wide](kycbtest::ByteOrder order) {
        return kycbtest::Utf16WithMark(wide, order);
    };
    const std::vector<std::string> files = {
        utf8,
        "\xEF\xBB\xBF" + utf8,
        "<?xml version=\"1.0\" encoding=\"utf-8\"?>" + utf8,
        "\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"GBK\"?>" + utf8,
        utf16(kycbtest::ByteOrder::kLittle),
        utf16(kycbtest::ByteOrder::kBig),
        utf16(kycbtest::ByteOrder::kLittle).substr(2),
        utf16(kycbtest::ByteOrder::kBig).substr(2),
        "<?xml version='1.0' encoding='GB2312'?><r a=\"\xC1\xBA\"/>",
        "<?xml version=\"1.0\" encoding=\"gb18030\"?><r a=\"\xC1\xBA\"/>",
    };
    for (const std::string& bytes : files) {
        const auto document = Open(folder, bytes);
        ASSERT_TRUE(document) << bytes;
        EXPECT_EQ(Xml::GetAttributeValue(Root(*document), L"a"), L"\u6881") << bytes;
    }
}

TEST(OpenXml, TakesGb2312ForTheCodePageThatHoldsMore) {
    // U+9555 has the bytes E9 46 in code page 936 and none in GB 2312 itself.
    const TempFolder folder;
    const auto document =
        Open(folder, "<?xml version=\"1.0\" encoding=\"gb2312\"?><r a=\"\xE9\x46\"/>");
    ASSERT_TRUE(document);
    EXPECT_EQ(Xml::GetAttributeValue(Root(*document), L"a"), L"\u9555");
}

TEST(OpenXml, RefusesEachHostileFileClearly) {
    const TempFolder folder;
    for (const kycbtest::HostileXml& hostile : kycbtest::HostileXmlCorpus()) {
        auto document = Xml::CreateDOMObj();
        const std::wstring path = folder.Write("in.xml", hostile.bytes);
        EXPECT_FALSE(Xml::OpenXml(*document, path)) << hostile.name;
        EXPECT_TRUE(document->GetErrorText().starts_with(path)) << hostile.name;
        EXPECT_THAT(kycb::text::ToUtf8(document->GetErrorText()),
                    testing::HasSubstr(hostile.reason))
            << hostile.name;
        XmlElement root;
        EXPECT_FALSE(Xml::GetRootElement(*document, root)) << hostile.name;
    }
}

TEST(OpenXml, LeavesReferencesToUnknownEntitiesAsText) {
    const TempFolder folder;
    const auto document = Open(folder, "<!DOCTYPE r><r a=\"&lol;\"/>");
    ASSERT_TRUE(document);
    EXPECT_EQ(Xml::GetAttributeValue(Root(*document), L"a"), L"&lol;");
}

TEST(OpenXml, FailsForWhatIsNoFile) {
    const TempFolder folder;
    auto document = Xml::CreateDOMObj();
    for (const std::wstring& path : {folder.File("none.xml"), folder.File(""), std::wstring(),
                                     std::wstring(L"/dev/zero"), std::wstring(L"a\0b", 3)}) {
        EXPECT_FALSE(Xml::OpenXml(*document, path));
        EXPECT_FALSE(document->GetErrorText().empty());
    }
}

TEST(OpenXml, ReplacesWhatTheDocumentHeld) {
    const TempFolder folder;
    auto document = Open(folder, "<r/>");
    ASSERT_TRUE(document);
    EXPECT_FALSE(Xml::OpenXml(*document, folder.Write("bad.xml", "<r>")));
    XmlElement root;
    EXPECT_FALSE(Xml::GetRootElement(*document, root));
    EXPECT_TRUE(Xml::OpenXml(*document, folder.Write("good.xml", "<s/>")));
    EXPECT_EQ(document->GetErrorText(), L"");
    EXPECT_EQ(Root(*document).GetTag(), L"s");
}

TEST(OpenXml, ReadsAndReleasesAnyDepthOfNesting) {
    constexpr int kDepth = 100000;
    const TempFolder folder;
    auto document = Open(folder, kycbtest::NestedXml(kDepth));
    ASSERT_TRUE(document);
    int depth = 1;
    XmlElement element = Root(*document);
    while (Xml::EnumChildNodes(element).Next(element))
        ++depth;
    EXPECT_EQ(depth, kDepth);
    EXPECT_TRUE(Xml::SaveXmlQuick(*document, folder.File("out.xml")));
    document.reset();
}

TEST(OpenXml, ReadsAnAttributeOf100MegabytesInBoundedMemory) {
    constexpr std::size_t kSize = 100'000'000;
    constexpr std::size_t kKilobyte = 1024;
    // The bytes, the parser's copy, and the value as wide text while it grows.
    constexpr std::size_t kMaxUse = kSize * (1 + 1 + 2 * sizeof(wchar_t)) + 50'000'000;
    const TempFolder folder;
    const auto peak = [] {
        rusage usage = {};
        ::getrusage(RUSAGE_SELF, &usage);
        return static_cast<std::size_t>(usage.ru_maxrss) * kKilobyte;
    };
    folder.Write("in.xml", "<r a=\"" + std::string(kSize, 'x') + "\"/>");
    auto document = Xml::CreateDOMObj();
    ASSERT_TRUE(Xml::OpenXml(*document, folder.File("in.xml")));
    EXPECT_EQ(Xml::GetAttributeValue(Root(*document), L"a").size(), kSize);
    EXPECT_LT(peak(), kMaxUse);
}

}  // namespace
}  // namespace KYTOOLS
