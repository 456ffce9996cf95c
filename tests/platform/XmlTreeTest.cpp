// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/platform/CXMLTreeCreator.h"

#include <gtest/gtest.h>

#include "platform/HostileXml.h"
#include "platform/XmlTree.h"
#include "support/TempFolder.h"

namespace kycb::xml {
namespace {

using kycbtest::TempFolder;

TreePtr Loaded(const std::wstring& text) {
    TreePtr tree(CXMLTreeCreator::Allocate());
    EXPECT_TRUE(tree->LoadText(text));
    return tree;
}

TEST(CXMLTreeCreator, GivesTheHostsTreesWhenToldTo) {
    CXMLTreeCreator::SetAllocator([]() -> IXMLTree* { return nullptr; });
    EXPECT_EQ(CXMLTreeCreator::Allocate(), nullptr);
    CXMLTreeCreator::SetAllocator({});
    EXPECT_NE(TreePtr(CXMLTreeCreator::Allocate()), nullptr);
}

TEST(XmlTree, StartsEmptyAboveTheRoot) {
    const TreePtr tree(CXMLTreeCreator::Allocate());
    EXPECT_FALSE(tree->GotoRoot(L"r"));
    EXPECT_FALSE(tree->GotoParent());
    EXPECT_EQ(tree->GetChildCount(), 0);
    EXPECT_FALSE(tree->SetAttribute(L"a", L"1"));
}

TEST(XmlTree, GotoRootComparesTheTag) {
    const TreePtr tree = Loaded(L"<r><r2/></r>");
    EXPECT_FALSE(tree->GotoRoot(L"R"));
    EXPECT_FALSE(tree->GotoRoot(L"r2"));
    EXPECT_TRUE(tree->GotoRoot(L"r"));
    EXPECT_TRUE(tree->GotoChild(0));
    EXPECT_TRUE(tree->GotoRoot(L"r")) << "from anywhere";
    EXPECT_EQ(tree->GetChildCount(), 1);
}

TEST(XmlTree, CountsAndReadsChildElementsOnly) {
    const TreePtr tree = Loaded(
        L"<r>\n text <a n=\"1\">x<!-- c -->y<b>z</b></a><!-- c --><?p i?>"
        L"<b><![CDATA[<cd>]]></b> <a n=\"2\"/></r>");
    ASSERT_TRUE(tree->GotoRoot(L"r"));
    EXPECT_EQ(tree->GetChildCount(), 3);
    EXPECT_EQ(tree->GetChildTag(1), L"b");
    EXPECT_EQ(tree->GetChildText(0), L"xy");
    EXPECT_EQ(tree->GetChildText(1), L"<cd>");
    EXPECT_EQ(tree->GetChildText(2), L"");
    EXPECT_EQ(tree->GetChildAttribute(2, L"n"), L"2");
    EXPECT_EQ(tree->GetChildAttribute(1, L"n"), L"");
}

TEST(XmlTree, RefusesAnIndexOutsideTheChildren) {
    const TreePtr tree = Loaded(L"<r><a>x</a></r>");
    ASSERT_TRUE(tree->GotoRoot(L"r"));
    for (const int index : {-1, 1, 1000}) {
        EXPECT_EQ(tree->GetChildTag(index), L"");
        EXPECT_EQ(tree->GetChildText(index), L"");
        EXPECT_EQ(tree->GetChildAttribute(index, L"n"), L"");
        EXPECT_FALSE(tree->GotoChild(index));
        EXPECT_FALSE(tree->GotoCountedChild(index));
    }
    EXPECT_EQ(tree->GetChildCount(), 1) << "the cursor has not moved";
}

TEST(XmlTree, EntersTheChildrenOfTheLastCount) {
    const TreePtr tree = Loaded(L"<r><a n='1'/><b n='2'/><a n='3'/></r>");
    ASSERT_TRUE(tree->GotoRoot(L"r"));
    EXPECT_EQ(tree->GetChildCountByTag(L"a"), 2);
    ASSERT_TRUE(tree->GotoCountedChild(1));
    std::wstring value;
    EXPECT_TRUE(tree->GetAttribute(L"n", value));
    EXPECT_EQ(value, L"3");
    ASSERT_TRUE(tree->GotoParent());
    EXPECT_TRUE(tree->GotoCountedChild(0)) << "the count of the parent still holds";
    tree->GetAttribute(L"n", value);
    EXPECT_EQ(value, L"1");
    tree->GotoParent();
    EXPECT_TRUE(tree->GotoChildByTag(L"b"));
    tree->GetAttribute(L"n", value);
    EXPECT_EQ(value, L"2");
    EXPECT_FALSE(tree->GotoChildByTag(L"b"));
}

TEST(XmlTree, GetAttributeEmptiesTheValueOfAnAbsentOne) {
    const TreePtr tree = Loaded(L"<r e=\"\"/>");
    ASSERT_TRUE(tree->GotoRoot(L"r"));
    std::wstring value = L"old";
    EXPECT_FALSE(tree->GetAttribute(L"n", value));
    EXPECT_EQ(value, L"");
    EXPECT_TRUE(tree->GetAttribute(L"e", value));
}

TEST(XmlTree, WritesWhatItReads) {
    const TempFolder folder;
    const std::wstring text = L"<a> & \"b\" \u6881 \U0001F600";
    const TreePtr tree = Loaded(L"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<r/>");
    ASSERT_TRUE(tree->GotoRoot(L"r"));
    ASSERT_TRUE(tree->AddChild(L"a", text));
    ASSERT_TRUE(tree->SetAttribute(L"n", text + L"\n\t"));
    ASSERT_TRUE(tree->GotoParent());
    ASSERT_TRUE(tree->AddChild(L"b", L""));
    ASSERT_TRUE(tree->SaveFile(folder.File("out.xml")));

    const TreePtr again(CXMLTreeCreator::Allocate());
    ASSERT_TRUE(again->LoadFile(folder.File("out.xml")));
    ASSERT_TRUE(again->GotoRoot(L"r"));
    EXPECT_EQ(again->GetChildCount(), 2);
    EXPECT_EQ(again->GetChildText(0), text);
    EXPECT_EQ(again->GetChildAttribute(0, L"n"), text + L"\n\t");
    EXPECT_EQ(again->GetChildTag(1), L"b");
    EXPECT_TRUE(folder.Read("out.xml").starts_with(
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<r>\n<a n="));
}

TEST(XmlTree, CountsChildrenThatWereAdded) {
    const TreePtr tree = Loaded(L"<r><a/></r>");
    ASSERT_TRUE(tree->GotoRoot(L"r"));
    EXPECT_EQ(tree->GetChildCount(), 1);
    ASSERT_TRUE(tree->AddChild(L"a", L"x"));
    tree->GotoParent();
    EXPECT_EQ(tree->GetChildCount(), 2);
    EXPECT_EQ(tree->GetChildCountByTag(L"a"), 2);
    EXPECT_EQ(tree->GetChildText(1), L"x");
}

TEST(XmlTree, AddsOneRootOnly) {
    const TreePtr tree(CXMLTreeCreator::Allocate());
    EXPECT_TRUE(tree->AddChild(L"r", L""));
    EXPECT_TRUE(tree->GotoParent());
    EXPECT_FALSE(tree->AddChild(L"s", L""));
}

TEST(XmlTree, KeepsATextOfBlanks) {
    const TempFolder folder;
    const TreePtr tree = Loaded(L"<r/>");
    tree->GotoRoot(L"r");
    tree->AddChild(L"a", L"  ");
    ASSERT_TRUE(tree->SaveFile(folder.File("out.xml")));
    ASSERT_TRUE(tree->LoadFile(folder.File("out.xml")));
    ASSERT_TRUE(tree->GotoRoot(L"r"));
    EXPECT_EQ(tree->GetChildText(0), L"  ");
}

TEST(XmlTree, KeepsEachKindOfLineEndInTextsAndAttributes) {
    const TempFolder folder;
    const std::wstring text = L"\rone\ntwo\r\nthree\r";
    const TreePtr tree = Loaded(L"<r/>");
    tree->GotoRoot(L"r");
    tree->AddChild(L"a", text);
    tree->SetAttribute(L"n", text);
    ASSERT_TRUE(tree->SaveFile(folder.File("out.xml")));
    ASSERT_TRUE(tree->LoadFile(folder.File("out.xml")));
    ASSERT_TRUE(tree->GotoRoot(L"r"));
    EXPECT_EQ(tree->GetChildText(0), text);
    EXPECT_EQ(tree->GetChildAttribute(0, L"n"), text);
}

TEST(XmlTree, IgnoresTheEncodingThatATextDeclares) {
    const TreePtr tree = Loaded(L"<?xml version=\"1.0\" encoding=\"GBK\"?><r a=\"\u6881\"/>");
    ASSERT_TRUE(tree->GotoRoot(L"r"));
    std::wstring value;
    tree->GetAttribute(L"a", value);
    EXPECT_EQ(value, L"\u6881");
}

TEST(XmlTree, RefusesEachHostileDocumentClearlyAndIsEmptyThen) {
    const TempFolder folder;
    for (const kycbtest::HostileXml& hostile : kycbtest::HostileXmlCorpus()) {
        const TreePtr tree = Loaded(L"<r/>");
        EXPECT_FALSE(tree->LoadFile(folder.Write("in.xml", hostile.bytes))) << hostile.name;
        EXPECT_NE(tree->GetErrorText(), L"") << hostile.name;
        EXPECT_EQ(tree->GetChildCount(), 0) << hostile.name;
    }
    const TreePtr tree = Loaded(L"<r/>");
    EXPECT_FALSE(tree->LoadText(L"<r>\n<"));
    EXPECT_EQ(tree->GetErrorText().find(L"XML text:2:"), 0u);
}

TEST(XmlTree, WalksManyChildrenByIndexInLinearTime) {
    constexpr int kChildren = 300000;
    std::wstring text = L"<r>";
    for (int i = 0; i < kChildren; ++i)
        text += L"<a n=\"1\"/>";
    const TreePtr tree = Loaded(text + L"</r>");
    ASSERT_TRUE(tree->GotoRoot(L"r"));
    int read = 0;
    for (int i = 0; i < tree->GetChildCount(); ++i) {
        read += tree->GotoChild(i) && tree->GotoParent();
    }
    EXPECT_EQ(read, kChildren);
}

}  // namespace
}  // namespace kycb::xml
