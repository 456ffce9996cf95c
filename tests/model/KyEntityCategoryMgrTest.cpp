// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/model/KyEntityCategoryMgr.h"
#include "KYCollisionBase/platform/CXMLTreeCreator.h"
#include "KYCollisionBase/platform/HostServices.h"

#include <climits>

#include <gmock/gmock.h>

#include "platform/HostileXml.h"
#include "support/TempFolder.h"

namespace KYCOLLISION::MODEL {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A tree of its own, since the process's tree is loaded only once.
class LoadedTree : public KyEntityCategoryMgr {};

/// Records what is inserted, as paths, and refuses items with one text.
class RecordingControl : public ITreeControl {
  public:
    HTREEITEM InsertItem(const std::wstring& text, HTREEITEM parent) override {
        if (text == refused) return nullptr;
        const std::wstring above = parent ? paths.at(IndexOf(parent)) + L"/" : L"";
        paths.push_back(above + text);
        return reinterpret_cast<HTREEITEM>(paths.size());
    }

    std::vector<std::wstring> paths;
    std::wstring refused;

  private:
    static std::size_t IndexOf(HTREEITEM item) { return reinterpret_cast<std::size_t>(item) - 1; }
};

class KyEntityCategoryMgrTest : public testing::Test {
  protected:
    KyEntityCategoryMgrTest() { BASETOOLS::SetSysRoot(folder_.File("")); }
    ~KyEntityCategoryMgrTest() override {
        BASETOOLS::SetSysRoot(L"");
        CXMLTreeCreator::SetAllocator({});
    }

    void WriteConfig(const std::string& bytes) const {
        folder_.Write("config/system/productsort.xml", bytes);
    }

    kycbtest::TempFolder folder_;
};

const char* const kConfig =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<root>\n"
    "  <zhuanye name=\"土建\">\n"
    "    <dalei name=\"墙\"><xiaolei name=\"砖内墙\"/><xiaolei/><xiaolei "
    "name=\"砼外墙\"/></dalei>\n"
    "    <other name=\"no category\"><xiaolei name=\"lost\"/></other>\n"
    "    <dalei><xiaolei name=\"of a major category without a name\"/></dalei>\n"
    "    <dalei name=\"柱\"/>\n"
    "  </zhuanye>\n"
    "  <!-- comments do not count -->\n"
    "  <zhuanye><dalei name=\"of a specialty without a name\"/></zhuanye>\n"
    "  <zhuanye name=\"电气\"/>\n"
    "  <zhuanye name=\"土建\"><dalei name=\"second\"/></zhuanye>\n"
    "</root>\n";

void ExpectEmpty(const KyEntityCategoryMgr& tree) {
    EXPECT_EQ(tree.GetSpecNodeCount(), 0);
    EXPECT_EQ(tree.GetSpecNode(0), nullptr);
    EXPECT_EQ(tree.GetSpecNode(L"土建"), nullptr);
    EXPECT_EQ(tree.GetSpecNodeIndexByName(L"土建"), -1);
    RecordingControl control;
    EXPECT_TRUE(tree.InitTreeControl(&control, nullptr, nullptr));
    EXPECT_THAT(control.paths, IsEmpty());
}

TEST(EnumNodeType, HasTheValuesOfTheLevels) {
    EXPECT_EQ(eNodeNone, 0);
    EXPECT_EQ(eNodeZhuanye, 1);
    EXPECT_EQ(eNodeDaLei, 2);
    EXPECT_EQ(eNodeXiaoLei, 3);
    EXPECT_EQ(KyCategoryNode().type, eNodeNone);
}

TEST_F(KyEntityCategoryMgrTest, HoldsTheThreeLevelsInFileOrder) {
    WriteConfig(kConfig);
    const LoadedTree tree;
    EXPECT_EQ(tree.GetSpecNodeCount(), 4);
    ASSERT_NE(tree.GetSpecNode(0), nullptr);
    EXPECT_EQ(tree.GetSpecNode(0)->name, L"土建");
    EXPECT_EQ(tree.GetSpecNode(0)->type, eNodeZhuanye);
    EXPECT_EQ(tree.GetDaLeiNodeCount(0), 3);
    EXPECT_EQ(tree.GetDaLeiNode(0, 0)->name, L"墙");
    EXPECT_EQ(tree.GetDaLeiNode(0, 0)->type, eNodeDaLei);
    EXPECT_EQ(tree.GetDaLeiNode(0, 2)->name, L"柱");
    EXPECT_EQ(tree.GetXiaoLeiNodeCount(0, 0), 3);
    EXPECT_EQ(tree.GetXiaoLeiNode(0, 0, 0)->name, L"砖内墙");
    EXPECT_EQ(tree.GetXiaoLeiNode(0, 0, 2)->name, L"砼外墙");
    EXPECT_EQ(tree.GetXiaoLeiNode(0, 0, 2)->type, eNodeXiaoLei);
    EXPECT_THAT(tree.GetXiaoLeiNode(0, 0, 0)->children, IsEmpty());
}

TEST_F(KyEntityCategoryMgrTest, CountsNodesWithoutANameButGivesThemToNobody) {
    WriteConfig(kConfig);
    const LoadedTree tree;
    EXPECT_EQ(tree.GetSpecNode(1), nullptr);
    EXPECT_EQ(tree.GetDaLeiNodeCount(1), 0);
    EXPECT_EQ(tree.GetDaLeiNode(1, 0), nullptr);
    EXPECT_EQ(tree.GetDaLeiNode(0, 1), nullptr);
    EXPECT_EQ(tree.GetXiaoLeiNodeCount(0, 1), 0);
    EXPECT_EQ(tree.GetXiaoLeiNode(0, 1, 0), nullptr);
    EXPECT_EQ(tree.GetXiaoLeiNode(0, 0, 1), nullptr);
}

TEST_F(KyEntityCategoryMgrTest, FindsTheFirstSpecialtyOfAName) {
    WriteConfig(kConfig);
    const LoadedTree tree;
    EXPECT_EQ(tree.GetSpecNodeIndexByName(L"土建"), 0);
    EXPECT_EQ(tree.GetSpecNode(L"土建"), tree.GetSpecNode(0));
    EXPECT_EQ(tree.GetSpecNodeIndexByName(L"电气"), 2);
    EXPECT_EQ(tree.GetSpecNodeIndexByName(L"消防"), -1);
    EXPECT_EQ(tree.GetSpecNode(L"消防"), nullptr);
}

TEST_F(KyEntityCategoryMgrTest, FindsASpecialtyWithoutANameByTheEmptyName) {
    WriteConfig(kConfig);
    const LoadedTree tree;
    EXPECT_EQ(tree.GetSpecNodeIndexByName(L""), 1);
    ASSERT_NE(tree.GetSpecNode(L""), nullptr);
    EXPECT_EQ(tree.GetSpecNode(L"")->type, eNodeZhuanye);
    EXPECT_EQ(tree.GetSpecNode(1), nullptr) << "although its index gives nothing";
}

TEST_F(KyEntityCategoryMgrTest, GivesNothingForIndexesOutside) {
    WriteConfig(kConfig);
    const LoadedTree tree;
    for (const int outside : {-1, 4, INT_MAX, INT_MIN}) {
        EXPECT_EQ(tree.GetSpecNode(outside), nullptr);
        EXPECT_EQ(tree.GetDaLeiNodeCount(outside), 0);
        EXPECT_EQ(tree.GetDaLeiNode(outside, 0), nullptr);
        EXPECT_EQ(tree.GetDaLeiNode(0, outside), nullptr);
        EXPECT_EQ(tree.GetXiaoLeiNodeCount(outside, 0), 0);
        EXPECT_EQ(tree.GetXiaoLeiNodeCount(0, outside), 0);
        EXPECT_EQ(tree.GetXiaoLeiNode(0, 0, outside), nullptr);
    }
}

TEST_F(KyEntityCategoryMgrTest, LeavesBoltsAndItemsOutOfTekla) {
    WriteConfig(
        "<root><zhuanye name=\"Tekla\"><dalei name=\"钢结构\"/><dalei name=\"螺栓\"/>"
        "<dalei name=\"混凝土\"/><dalei name=\"项\"/></zhuanye>"
        "<zhuanye name=\"土建\"><dalei name=\"螺栓\"/></zhuanye></root>");
    const LoadedTree tree;
    EXPECT_EQ(tree.GetDaLeiNodeCount(0), 2);
    EXPECT_EQ(tree.GetDaLeiNode(0, 0)->name, L"钢结构");
    EXPECT_EQ(tree.GetDaLeiNode(0, 1)->name, L"混凝土");
    EXPECT_EQ(tree.GetDaLeiNodeCount(1), 1) << "other specialties keep them";
}

TEST_F(KyEntityCategoryMgrTest, IsEmptyWithoutAReadableFile) {
    ExpectEmpty(LoadedTree());
    for (const char* bytes : {"", "<root>", "<other><zhuanye name=\"土建\"/></other>", "<root/>"}) {
        WriteConfig(bytes);
        ExpectEmpty(LoadedTree());
    }
}

TEST_F(KyEntityCategoryMgrTest, IsEmptyWhenTheFileIsHostile) {
    for (const kycbtest::HostileXml& hostile : kycbtest::HostileXmlCorpus()) {
        WriteConfig(hostile.bytes);
        EXPECT_EQ(LoadedTree().GetSpecNodeCount(), 0) << hostile.name;
    }
}

TEST_F(KyEntityCategoryMgrTest, ReadsThreeLevelsOfAFileNestedWithoutEnd) {
    WriteConfig("<root><zhuanye name=\"a\"><dalei name=\"b\"><xiaolei name=\"c\">" +
                kycbtest::NestedXml(100000) + "</xiaolei></dalei></zhuanye></root>");
    const LoadedTree tree;
    ASSERT_NE(tree.GetXiaoLeiNode(0, 0, 0), nullptr);
    EXPECT_EQ(tree.GetXiaoLeiNode(0, 0, 0)->name, L"c");
    EXPECT_THAT(tree.GetXiaoLeiNode(0, 0, 0)->children, IsEmpty());
}

TEST_F(KyEntityCategoryMgrTest, HoldsANameOf100Megabytes) {
    constexpr std::size_t kLength = std::size_t{100} << 20;
    WriteConfig("<root><zhuanye name=\"" + std::string(kLength, 'x') + "\"/></root>");
    const LoadedTree tree;
    ASSERT_NE(tree.GetSpecNode(0), nullptr);
    EXPECT_EQ(tree.GetSpecNode(0)->name.size(), kLength);
}

TEST_F(KyEntityCategoryMgrTest, IsEmptyWhenNoXmlTreeCanBeHad) {
    WriteConfig(kConfig);
    CXMLTreeCreator::SetAllocator([]() -> IXMLTree* { return nullptr; });
    ExpectEmpty(LoadedTree());
}

TEST_F(KyEntityCategoryMgrTest, FillsATreeControlWithTheValidNodes) {
    WriteConfig(kConfig);
    RecordingControl control;
    EXPECT_TRUE(LoadedTree().InitTreeControl(&control, nullptr, nullptr));
    EXPECT_THAT(control.paths,
                ElementsAre(L"土建", L"土建/墙", L"土建/墙/砖内墙", L"土建/墙/砼外墙", L"土建/柱",
                            L"电气", L"土建", L"土建/second"));
}

TEST_F(KyEntityCategoryMgrTest, FillsATreeControlBelowAGivenItem) {
    WriteConfig(kConfig);
    RecordingControl control;
    const HTREEITEM top = control.InsertItem(L"top", nullptr);
    EXPECT_TRUE(LoadedTree().InitTreeControl(&control, top, nullptr));
    EXPECT_EQ(control.paths.at(1), L"top/土建");
}

TEST_F(KyEntityCategoryMgrTest, FillsATreeControlWithChosenSpecialties) {
    WriteConfig(kConfig);
    const LoadedTree tree;
    const std::vector<std::wstring> specs = {L"no such", L"电气"};
    RecordingControl control;
    EXPECT_TRUE(tree.InitTreeControl(&control, nullptr, &specs));
    EXPECT_THAT(control.paths, ElementsAre(L"电气"));
    const std::vector<std::wstring> none;
    RecordingControl empty;
    EXPECT_TRUE(tree.InitTreeControl(&empty, nullptr, &none));
    EXPECT_THAT(empty.paths, IsEmpty());
}

TEST_F(KyEntityCategoryMgrTest, LeavesOutWhatHangsOnARefusedItem) {
    WriteConfig(kConfig);
    RecordingControl control;
    control.refused = L"墙";
    EXPECT_TRUE(LoadedTree().InitTreeControl(&control, nullptr, nullptr));
    EXPECT_THAT(control.paths, ElementsAre(L"土建", L"土建/柱", L"电气", L"土建", L"土建/second"));
    RecordingControl other;
    other.refused = L"土建";
    EXPECT_TRUE(LoadedTree().InitTreeControl(&other, nullptr, nullptr));
    EXPECT_THAT(other.paths, ElementsAre(L"电气")) << "the next specialty still comes";
}

TEST_F(KyEntityCategoryMgrTest, NeedsATreeControl) {
    WriteConfig(kConfig);
    EXPECT_FALSE(LoadedTree().InitTreeControl(nullptr, nullptr, nullptr));
}

TEST_F(KyEntityCategoryMgrTest, IsOneForTheProcess) {
    EXPECT_NE(KyEntityCategoryMgr::GetInstance(), nullptr);
    EXPECT_EQ(KyEntityCategoryMgr::GetInstance(), KyEntityCategoryMgr::GetInstance());
}

}  // namespace
}  // namespace KYCOLLISION::MODEL
