// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/platform/HostServices.h"
#include "KYCollisionBase/result/KyWorksetResultData.h"

#include <limits>
#include <map>
#include <random>

#include <boost/lexical_cast.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pugixml.hpp>

#include "platform/HostileXml.h"
#include "platform/Text.h"
#include "result/ResultBuilder.h"
#include "result/ResultItemAccess.h"
#include "result/ResultXml.h"
#include "support/ChildProcess.h"
#include "support/LocaleScope.h"
#include "support/TempFolder.h"

using kycb::ResultItemAccess;
using kycbtest::GuidsA;
using kycbtest::KyResultItem;
using kycbtest::NewItem;
using kycbtest::TempFolder;
using KYCOLLISION::RESULT::KyWorksetResultData;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

using Guids = std::vector<std::wstring>;
using FloorKey = KyWorksetResultData::FloorKey;

std::unique_ptr<KyWorksetResultData> NewResults() {
    return KyWorksetResultData::Create(KyModelTypeDefault, 1);
}

std::vector<KyResultItem*> Items(KyWorksetResultData& results, const FloorKey& key) {
    std::vector<KyResultItem*> items;
    results.GetResultItems(key, items);
    return items;
}

std::size_t CountAll(KyWorksetResultData& results) {
    std::map<FloorKey, std::vector<KyResultItem*>> all;
    results.GetAllResultItems(all);
    std::size_t count = 0;
    for (const auto& [key, items] : all)
        count += items.size();
    return count;
}

// All fields as texts, in the order of the file.
std::vector<std::wstring> Fields(const KyResultItem& item) {
    struct {
        void operator()(const char*, const std::wstring& value) { fields.push_back(value); }
        void operator()(const char*, std::int64_t value) {
            fields.push_back(std::to_wstring(value));
        }
        std::vector<std::wstring> fields;
    } collect;
    ResultItemAccess::VisitFields(item, collect);
    return collect.fields;
}

// An item whose texts are all `text` and whose numbers are all different.
std::unique_ptr<KyResultItem> FullItem(const std::wstring& text) {
    auto item = std::make_unique<KyResultItem>();
    item->SetResultId(text + L"1");
    item->SetBaseInfo(1, L"F1", text + L"3", -2, text + L"4", text + L"5", text + L"6");
    item->SetClashModel(text + L"7");
    item->SetDisposeState(-1);
    item->SetRemark(text + L"8");
    item->SetViewport(text + L"9");
    item->SetPicture(text + L"10", text + L"11", 5'000'000'000);
    item->SetObjAttInfo_Main(
        {text + L"12", text + L"13", text + L"14", text + L"15", text + L"16"});
    item->SetHeightA(text + L"17");
    item->SetObjAttInfo_Second(
        {text + L"18", text + L"19", text + L"20", text + L"21", text + L"22"});
    item->SetHeightB(text + L"23");
    return item;
}

// The file that holds one clash point element with these attributes.
std::string FileWith(const std::string& attributes) {
    return "<碰撞检查结果><工程 project=\"1\"><楼层 floor=\"F1\"><碰撞点 " + attributes +
           "/></楼层></工程></碰撞检查结果>";
}

std::string Numbers(const std::string& projectA, const std::string& projectB,
                    const std::string& dispose, const std::string& picsize) {
    return "projectA=\"" + projectA + "\" projectB=\"" + projectB + "\" dispose=\"" + dispose +
           "\" picsize=\"" + picsize + "\"";
}

// What is read from one clash point element with these attributes.
class ReadItem {
  public:
    explicit ReadItem(const std::string& attributes) : results_(NewResults()) {
        const std::wstring path = folder_.Write("r.xml", FileWith(attributes));
        try {
            EXPECT_TRUE(results_->InitByXml(path));
        } catch (const boost::bad_lexical_cast&) {
            failed_ = true;
        }
        std::map<FloorKey, std::vector<KyResultItem*>> all;
        results_->GetAllResultItems(all);
        if (!all.empty()) item_ = all.begin()->second.at(0);
    }

    bool Failed() const { return failed_; }
    const KyResultItem* operator->() const { return item_; }

  private:
    TempFolder folder_;
    std::unique_ptr<KyWorksetResultData> results_;
    bool failed_ = false;
    KyResultItem* item_ = nullptr;
};

}  // namespace

TEST(ResultXml, AnEmptyContainerIsTheBareRoot) {
    const TempFolder folder;
    const auto results = NewResults();
    ASSERT_TRUE(results->SerializeToXml(folder.File("r.xml")));
    EXPECT_EQ(folder.Read("r.xml"), "<碰撞检查结果 />\n");
    const auto read = NewResults();
    EXPECT_TRUE(read->InitByXml(folder.File("r.xml")));
    EXPECT_EQ(CountAll(*read), 0u);
}

TEST(ResultXml, WritesProjectsByIdAndFloorsByNameAlsoWithoutItems) {
    const TempFolder folder;
    const auto results = NewResults();
    results->AppendNewResults({10, L"F2"}, {});
    results->AppendNewResults({10, L"F1 & \"roof\""}, {});
    results->AppendNewResults({2, L"F1"}, {});
    results->RemoveOldResults({2, L"F1"});
    ASSERT_TRUE(results->SerializeToXml(folder.File("r.xml")));
    EXPECT_EQ(folder.Read("r.xml"),
              "<碰撞检查结果>\n"
              "  <工程 project=\"2\" />\n"
              "  <工程 project=\"10\">\n"
              "    <楼层 floor=\"F1 &amp; &quot;roof&quot;\" />\n"
              "    <楼层 floor=\"F2\" />\n"
              "  </工程>\n"
              "</碰撞检查结果>\n");
}

TEST(ResultXml, WritesEveryFieldInOrderEmptyOrNot) {
    const TempFolder folder;
    const auto results = NewResults();
    results->AppendResultItem(FullItem(L"t").release());
    results->AppendResultItem(NewItem(1, L"F1", L"g").release());
    ASSERT_TRUE(results->SerializeToXml(folder.File("r.xml")));
    EXPECT_EQ(
        folder.Read("r.xml"),
        "<碰撞检查结果>\n"
        "  <工程 project=\"1\">\n"
        "    <楼层 floor=\"F1\">\n"
        "      <碰撞点 resultId=\"t1\" projectA=\"1\" floorA=\"F1\" objectA=\"t3\" projectB=\"-2\" "
        "floorB=\"t4\" objectB=\"t5\" clashPoint=\"t6\" clashModel=\"t7\" dispose=\"-1\" "
        "remark=\"t8\" viewport=\"t9\" picuuid=\"t10\" picmd5=\"t11\" picsize=\"5000000000\" "
        "specA=\"t12\" bigA=\"t13\" smallA=\"t14\" attnameA=\"t15\" syscodeA=\"t16\" "
        "heightA=\"t17\" specB=\"t18\" bigB=\"t19\" smallB=\"t20\" attnameB=\"t21\" "
        "syscodeB=\"t22\" heightB=\"t23\" axisPos=\"\" />\n"
        "      <碰撞点 resultId=\"\" projectA=\"1\" floorA=\"F1\" objectA=\"g\" projectB=\"1\" "
        "floorB=\"F1\" objectB=\"b\" clashPoint=\"0.00,0.00,0.00\" clashModel=\"\" dispose=\"0\" "
        "remark=\"\" viewport=\"\" picuuid=\"\" picmd5=\"\" picsize=\"0\" specA=\"\" bigA=\"\" "
        "smallA=\"\" attnameA=\"\" syscodeA=\"\" heightA=\"\" specB=\"\" bigB=\"\" smallB=\"\" "
        "attnameB=\"\" syscodeB=\"\" heightB=\"\" axisPos=\"\" />\n"
        "    </楼层>\n"
        "  </工程>\n"
        "</碰撞检查结果>\n");
}

TEST(ResultXml, WritesTheSystemCodeItselfAndNotWhatStandsInForIt) {
    const TempFolder folder;
    const auto results = NewResults();
    auto item = NewItem(1, L"F1", L"g");
    item->SetObjAttInfo_Main({L"钢筋", L"", L"", L"", L"code"});
    results->AppendResultItem(item.release());
    ASSERT_TRUE(results->SerializeToXml(folder.File("r.xml")));
    EXPECT_THAT(folder.Read("r.xml"), HasSubstr("syscodeA=\"code\""));
}

TEST(ResultXml, ReadingBackGivesEveryFieldAsItWas) {
    const TempFolder folder;
    const auto results = NewResults();
    results->AppendResultItem(FullItem(L"文").release());
    results->AppendResultItem(FullItem(L"").release());
    results->AppendResultItem(NewItem(1, L"F1", L"g", L"5,0,0").release());
    Items(*results, {1, L"F1"}).at(2)->ReCatulateAxisInfo({});
    ASSERT_TRUE(results->SerializeToXml(folder.File("r.xml")));
    const auto read = NewResults();
    ASSERT_TRUE(read->InitByXml(folder.File("r.xml")));
    const auto written = Items(*results, {1, L"F1"});
    const auto back = Items(*read, {1, L"F1"});
    ASSERT_EQ(back.size(), 3u);
    for (std::size_t i = 0; i < 3; ++i) {
        ASSERT_EQ(Fields(*back[i]).size(), static_cast<std::size_t>(ResultItemAccess::kFieldCount));
        EXPECT_EQ(Fields(*back[i]), Fields(*written[i]));
    }
    EXPECT_EQ(back[2]->GetAxisPos(), L"其他位置");
}

TEST(ResultXml, TimeStampAndModelInfoAreNotInTheFile) {
    const TempFolder folder;
    const auto results = NewResults();
    results->SetTimeStamp(L"now");
    ASSERT_TRUE(results->SerializeToXml(folder.File("r.xml")));
    const auto read = KyWorksetResultData::Create(KyModelTypeDefault, 77);
    read->SetTimeStamp(L"before");
    ASSERT_TRUE(read->InitByXml(folder.File("r.xml")));
    EXPECT_EQ(read->GetTimeStamp(), L"before");
    EXPECT_EQ(read->GetModelInfo().modelId, 77);
}

TEST(ResultXml, EveryTextThatAUserCanTypeComesBack) {
    const std::wstring texts[] = {
        L"\"quotes\" 'and' <angle> & brackets &amp; &#10; ]]>",
        L"line\none\r\ntwo\rthree\ttab",
        L"  blanks at both ends  ",
        L"\n",
        L"\U0001F600\U0001F3E0 \U00020000 e\u0301",
        L"\u0085\u2028\u00A0\u200B\uFEFF\uFFFD\u007F",
        L"钢筋\u3000墙",
        L"<碰撞点 remark=\"x\"/>",
        L"<!-- --> <![CDATA[x]]> <?pi?>",
        std::wstring(200000, L'<'),
    };
    for (const std::wstring& text : texts) {
        const TempFolder folder;
        const auto results = NewResults();
        auto item = FullItem(text);
        item->SetBaseInfo(1, text, text, 1, text, text, text);
        results->AppendResultItem(item.release());
        ASSERT_TRUE(results->SerializeToXml(folder.File("r.xml")));
        const auto read = NewResults();
        ASSERT_TRUE(read->InitByXml(folder.File("r.xml")));
        const auto back = Items(*read, {1, text});
        ASSERT_EQ(back.size(), 1u);
        EXPECT_EQ(Fields(*back[0]), Fields(*Items(*results, {1, text}).at(0)));
    }
}

TEST(ResultXml, CharactersThatXmlForbidsComeBackReplacedAndTheFileStaysReadable) {
    const TempFolder folder;
    const auto results = NewResults();
    auto item = NewItem(1, L"F1", L"g");
    item->SetRemark(std::wstring(L"a\0b", 3) + L"\x01\x1F\xFFFE" + static_cast<wchar_t>(0xD800));
    results->AppendResultItem(item.release());
    ASSERT_TRUE(results->SerializeToXml(folder.File("r.xml")));
    const auto read = NewResults();
    ASSERT_TRUE(read->InitByXml(folder.File("r.xml")));
    EXPECT_EQ(Items(*read, {1, L"F1"}).at(0)->GetRemark(), L"a\uFFFDb\uFFFD\uFFFD\uFFFD\uFFFD");
}

TEST(ResultXml, RandomTextsComeBack) {
    std::mt19937 random(541);
    const std::wstring alphabet =
        L"aZ09 \t\r\n<>&\"'/=?!-[];#x\u00e9\u0416\u4e2d\u6587\uFFFD\U0001F600";
    for (int round = 0; round < 60; ++round) {
        const TempFolder folder;
        const auto results = NewResults();
        for (int i = 0; i < 5; ++i) {
            std::wstring text;
            for (auto n = random() % 30; n > 0; --n)
                text += alphabet[random() % alphabet.size()];
            results->AppendResultItem(FullItem(text).release());
        }
        ASSERT_TRUE(results->SerializeToXml(folder.File("r.xml")));
        const auto read = NewResults();
        ASSERT_TRUE(read->InitByXml(folder.File("r.xml")));
        const auto written = Items(*results, {1, L"F1"});
        const auto back = Items(*read, {1, L"F1"});
        ASSERT_EQ(back.size(), 5u);
        for (std::size_t i = 0; i < 5; ++i)
            EXPECT_EQ(Fields(*back[i]), Fields(*written[i]));
    }
}

TEST(ResultXml, AnItemIsFiledUnderItsOwnProjectAndFloor) {
    const TempFolder folder;
    const std::wstring path = folder.Write(
        "r.xml", FileWith("objectA=\"g\" floorA=\"F7\" " + Numbers("4", "5", "0", "0")));
    const auto read = NewResults();
    ASSERT_TRUE(read->InitByXml(path));
    EXPECT_EQ(GuidsA(Items(*read, {4, L"F7"})), Guids{L"g"});
    EXPECT_EQ(read->GetProjectResults(1), nullptr);
    EXPECT_EQ(Items(*read, {4, L"F1"}).size(), 0u);
}

TEST(ResultXml, ElementsAreKnownByTheirPlaceNotByTheirTags) {
    const TempFolder folder;
    const std::string item = "<z " + Numbers("1", "1", "0", "0") + "/>";
    const std::wstring path =
        folder.Write("r.xml", "<a><b>" + item + "<c>" + item + item + "</c>" + "</b><d/></a>");
    const auto read = NewResults();
    ASSERT_TRUE(read->InitByXml(path));
    EXPECT_EQ(CountAll(*read), 2u);
}

TEST(ResultXml, CommentsAndTextsBetweenElementsArePassedOver) {
    const TempFolder folder;
    const std::string item = "<i " + Numbers("1", "1", "0", "0") + "/>";
    const std::wstring path = folder.Write(
        "r.xml", "<?xml version=\"1.0\"?><!-- c --><r><!-- c --><p>text<f><!-- c -->" + item +
                     "more text<?pi x?>" + item + "</f><!-- c --></p></r><!-- c -->");
    const auto read = NewResults();
    ASSERT_TRUE(read->InitByXml(path));
    EXPECT_EQ(CountAll(*read), 2u);
}

TEST(ResultXml, AbsentTextsAreEmptyAndUnknownAttributesIgnored) {
    const ReadItem item("later=\"x\" " + Numbers("1", "1", "0", "0"));
    ASSERT_FALSE(item.Failed());
    EXPECT_EQ(item->GetPosition(), L"");
    EXPECT_EQ(item->GetFloorA(), L"");
    EXPECT_EQ(item->GetRemark(), L"");
}

TEST(ResultXml, AttributesMayStandInAnyOrder) {
    const ReadItem item("axisPos=\"pos\" " + Numbers("1", "2", "3", "4") +
                        " remark=\"r\" resultId=\"id\" floorA=\"F\"");
    ASSERT_FALSE(item.Failed());
    EXPECT_EQ(item->GetAxisPos(), L"pos");
    EXPECT_EQ(item->GetProjectB(), 2);
    EXPECT_EQ(item->GetDisposeState(), 3);
    EXPECT_EQ(item->GetPicsize(), 4);
    EXPECT_EQ(item->GetRemark(), L"r");
    EXPECT_EQ(item->GetResultId(), L"id");
    EXPECT_EQ(item->GetFloorA(), L"F");
}

TEST(ResultXml, NumbersReachToTheLimitsOfTheirTypes) {
    const ReadItem lowest(Numbers("-2147483648", "-2147483648", "-1", "-9223372036854775808"));
    ASSERT_FALSE(lowest.Failed());
    EXPECT_EQ(lowest->GetProjectA(), std::numeric_limits<int>::min());
    EXPECT_EQ(lowest->GetDisposeState(), -1);
    EXPECT_EQ(lowest->GetPicsize(), std::numeric_limits<std::int64_t>::min());
    const ReadItem highest(Numbers("2147483647", "0", "007", "9223372036854775807"));
    ASSERT_FALSE(highest.Failed());
    EXPECT_EQ(highest->GetProjectA(), std::numeric_limits<int>::max());
    EXPECT_EQ(highest->GetDisposeState(), 7);
    EXPECT_EQ(highest->GetPicsize(), std::numeric_limits<std::int64_t>::max());
}

TEST(ResultXml, WhatIsNoWholeNumberOfItsTypeIsAConversionError) {
    for (const std::string bad :
         {"", " ", "x", "1.0", "1e3", "0x10", " 1", "1 ", "1,000", "--1", "-", "+", "2147483648",
          "-2147483649", "99999999999999999999", "１", "1\xC2\xA0"}) {
        EXPECT_TRUE(ReadItem(Numbers(bad, "1", "0", "0")).Failed()) << bad;
        EXPECT_TRUE(ReadItem(Numbers("1", bad, "0", "0")).Failed()) << bad;
        EXPECT_TRUE(ReadItem(Numbers("1", "1", bad, "0")).Failed()) << bad;
    }
    EXPECT_TRUE(ReadItem(Numbers("1", "1", "0", "9223372036854775808")).Failed());
    EXPECT_TRUE(ReadItem(Numbers("1", "1", "0", "1.5")).Failed());
    EXPECT_FALSE(ReadItem(Numbers("1", "1", "0", "2147483648")).Failed());
}

TEST(ResultXml, AnAbsentNumberIsAConversionError) {
    EXPECT_TRUE(ReadItem("projectB=\"1\" dispose=\"0\" picsize=\"0\"").Failed());
    EXPECT_TRUE(ReadItem("projectA=\"1\" dispose=\"0\" picsize=\"0\"").Failed());
    EXPECT_TRUE(ReadItem("projectA=\"1\" projectB=\"1\" picsize=\"0\"").Failed());
    EXPECT_TRUE(ReadItem("projectA=\"1\" projectB=\"1\" dispose=\"0\"").Failed());
}

TEST(ResultXml, AConversionErrorKeepsTheItemsBeforeItAndNamesThePlace) {
    const TempFolder folder;
    const std::string good = "<i " + Numbers("1", "1", "0", "0") + "/>";
    const std::string bad = "<i " + Numbers("1", "1", "many", "0") + "/>";
    const std::wstring path =
        folder.Write("r.xml", "<r><p><f>" + good + good + bad + good + "</f></p></r>");
    const auto read = NewResults();
    read->AppendResultItem(NewItem(1, L"", L"held").release());
    EXPECT_THROW(read->InitByXml(path), boost::bad_lexical_cast);
    EXPECT_EQ(CountAll(*read), 3u);
    EXPECT_EQ(read->GetErrorText(),
              path + L": item 3: not a whole number of its type: dispose=\"many\"");
}

TEST(ResultXml, NumbersMeanTheSameInALocaleThatGroupsDigits) {
    const kycbtest::LocaleScope locale("de_DE");
    if (!locale.IsActive()) GTEST_SKIP() << locale.WhyInactive();
    const TempFolder folder;
    const auto results = NewResults();
    results->AppendResultItem(FullItem(L"t").release());
    ASSERT_TRUE(results->SerializeToXml(folder.File("r.xml")));
    EXPECT_THAT(folder.Read("r.xml"), HasSubstr("picsize=\"5000000000\""));
    const auto read = NewResults();
    ASSERT_TRUE(read->InitByXml(folder.File("r.xml")));
    EXPECT_EQ(Items(*read, {1, L"F1"}).at(0)->GetPicsize(), 5'000'000'000);
    EXPECT_TRUE(ReadItem(Numbers("1", "1", "0", "1.000")).Failed());
}

TEST(ResultXml, ReadingAddsToWhatIsHeld) {
    const TempFolder folder;
    const auto results = NewResults();
    results->AppendResultItem(NewItem(1, L"F1", L"a").release());
    results->AppendResultItem(NewItem(2, L"F2", L"b").release());
    ASSERT_TRUE(results->SerializeToXml(folder.File("r.xml")));
    ASSERT_TRUE(results->InitByXml(folder.File("r.xml")));
    ASSERT_TRUE(results->InitByXml(folder.File("r.xml")));
    EXPECT_EQ(GuidsA(Items(*results, {1, L"F1"})), (Guids{L"a", L"a", L"a"}));
    EXPECT_EQ(GuidsA(Items(*results, {2, L"F2"})), (Guids{L"b", L"b", L"b"}));
}

TEST(ResultXml, AMissingFileIsFalseAndNamesTheFile) {
    const TempFolder folder;
    const auto results = NewResults();
    EXPECT_FALSE(results->InitByXml(folder.File("absent.xml")));
    EXPECT_EQ(results->GetErrorText(), folder.File("absent.xml") + L": no such file");
    EXPECT_FALSE(results->InitByXml(L""));
}

TEST(ResultXml, WhetherTheFileExistsIsAskedOfTheHostService) {
    const TempFolder folder;
    const std::wstring path = folder.Write("r.xml", "<r/>");
    BASETOOLS::SetCheckFileExist([](const std::wstring&) { return false; });
    EXPECT_FALSE(NewResults()->InitByXml(path));
    BASETOOLS::SetCheckFileExist({});
    EXPECT_TRUE(NewResults()->InitByXml(path));
}

TEST(ResultXml, HostileFilesAreRefusedAndChangeNothing) {
    for (const kycbtest::HostileXml& hostile : kycbtest::HostileXmlCorpus()) {
        const TempFolder folder;
        const std::wstring path = folder.Write("r.xml", hostile.bytes);
        const auto results = NewResults();
        results->AppendResultItem(NewItem(1, L"F1", L"held").release());
        EXPECT_FALSE(results->InitByXml(path)) << hostile.name;
        EXPECT_THAT(kycb::text::ToUtf8(results->GetErrorText()),
                    StartsWith(kycb::text::ToUtf8(path) + ":"))
            << hostile.name;
        EXPECT_EQ(CountAll(*results), 1u) << hostile.name;
    }
}

TEST(ResultXml, AFileCutAnywhereIsNeverReadAsAnotherOne) {
    const TempFolder folder;
    const auto results = NewResults();
    results->AppendResultItem(FullItem(L"<\u4e2d>").release());
    results->AppendResultItem(FullItem(L"t").release());
    ASSERT_TRUE(results->SerializeToXml(folder.File("r.xml")));
    const std::string whole = folder.Read("r.xml");
    for (std::size_t size = 0; size + 1 < whole.size(); ++size) {
        const auto read = NewResults();
        ASSERT_FALSE(read->InitByXml(folder.Write("cut.xml", whole.substr(0, size)))) << size;
        ASSERT_EQ(CountAll(*read), 0u) << size;
    }
}

TEST(ResultXml, ChangedBytesGiveAnErrorOrAWellFormedReading) {
    // Whatever a damaged file holds, the reader ends with one of its stated outcomes.
    const TempFolder folder;
    const auto results = NewResults();
    results->AppendResultItem(FullItem(L"t").release());
    results->AppendResultItem(FullItem(L"\u4e2d").release());
    ASSERT_TRUE(results->SerializeToXml(folder.File("r.xml")));
    const std::string whole = folder.Read("r.xml");
    std::mt19937 random(5);
    int outcomes[3] = {0, 0, 0};
    for (int round = 0; round < 500; ++round) {
        std::string bytes = whole;
        // Mostly printable characters, which leave more of the file well-formed.
        const auto byte = random() % 4 == 0 ? random() % 256 : 0x20 + random() % 0x5F;
        bytes[random() % bytes.size()] = static_cast<char>(byte);
        const auto read = NewResults();
        try {
            const bool isRead = read->InitByXml(folder.Write("r.xml", bytes));
            EXPECT_EQ(isRead, read->GetErrorText().empty());
            ++outcomes[isRead ? 0 : 1];
        } catch (const boost::bad_lexical_cast&) {
            EXPECT_FALSE(read->GetErrorText().empty());
            ++outcomes[2];
        }
        EXPECT_LE(CountAll(*read), 2u);
    }
    for (const int count : outcomes)
        EXPECT_GT(count, 5);
}

TEST(ResultXml, DeepNestingIsReadWithoutRecursion) {
    const TempFolder folder;
    const std::wstring path = folder.Write("r.xml", kycbtest::NestedXml(200000));
    const auto results = NewResults();
    // The element at the depth of an item has no numbers.
    EXPECT_THROW(results->InitByXml(path), boost::bad_lexical_cast);
    EXPECT_EQ(CountAll(*results), 0u);
}

TEST(ResultXml, AHugeAttributeIsReadAsItIs) {
    const ReadItem item("remark=\"" + std::string(20'000'000, 'x') + "\" " +
                        Numbers("1", "1", "0", "0"));
    ASSERT_FALSE(item.Failed());
    EXPECT_EQ(item->GetRemark().size(), 20'000'000u);
}

TEST(ResultXml, OtherEncodingsAreReadByTheirMarkOrDeclaration) {
    const TempFolder folder;
    const std::u16string text =
        u"<r><p><f><i projectA=\"1\" projectB=\"1\" dispose=\"0\" "
        u"picsize=\"0\" remark=\"ok\"/></f></p></r>";
    for (const auto order : {kycbtest::ByteOrder::kLittle, kycbtest::ByteOrder::kBig}) {
        const auto read = NewResults();
        ASSERT_TRUE(read->InitByXml(folder.Write("r.xml", kycbtest::Utf16WithMark(text, order))));
        EXPECT_EQ(Items(*read, {1, L""}).at(0)->GetRemark(), L"ok");
    }
    const auto read = NewResults();
    ASSERT_TRUE(read->InitByXml(folder.Write(
        "r.xml", "<?xml version=\"1.0\" encoding=\"GBK\"?><r><p><f><i remark=\"\xD6\xD0\" " +
                     Numbers("1", "1", "0", "0") + "/></f></p></r>")));
    EXPECT_EQ(Items(*read, {1, L""}).at(0)->GetRemark(), L"\u4e2d");
}

TEST(ResultXml, AFailedSaveIsFalseAndNamesTheFile) {
    const TempFolder folder;
    const auto results = NewResults();
    const std::wstring path = folder.File("missing folder/r.xml");
    EXPECT_FALSE(results->SerializeToXml(path));
    EXPECT_THAT(kycb::text::ToUtf8(results->GetErrorText()), StartsWith(kycb::text::ToUtf8(path)));
    ASSERT_TRUE(results->SerializeToXml(folder.File("r.xml")));
    EXPECT_EQ(results->GetErrorText(), L"");
}

TEST(ResultXml, SavingReplacesAnOlderFile) {
    const TempFolder folder;
    const std::wstring path = folder.Write("r.xml", std::string(5000, 'x'));
    ASSERT_TRUE(NewResults()->SerializeToXml(path));
    EXPECT_EQ(folder.Read("r.xml"), "<碰撞检查结果 />\n");
    EXPECT_EQ(folder.CountFiles(), 1u);
}

TEST(ResultXml, AFileIsWholeWheneverASavingProcessIsKilled) {
    using kycbtest::Saved;
    const TempFolder folder;
    const std::wstring path = folder.File("r.xml");
    const auto resultsOf = [](const std::wstring& remark, int count) {
        auto results = NewResults();
        for (int i = 0; i < count; ++i)
            results->AppendResultItem(FullItem(remark).release());
        return results;
    };
    const auto small = resultsOf(L"small", 40);
    const auto large = resultsOf(L"large", 400);
    ASSERT_TRUE(small->SerializeToXml(path));
    const std::string smallBytes = folder.Read("r.xml");
    ASSERT_TRUE(large->SerializeToXml(path));
    const std::string largeBytes = folder.Read("r.xml");
    const auto save = [&](Saved content) {
        return (content == Saved::kSmall ? small : large)->SerializeToXml(path);
    };
    const auto found = [&] {
        return kycbtest::WhichOf(folder.Read("r.xml"), smallBytes, largeBytes);
    };
    kycbtest::ExpectWholeWheneverKilled(save, found);
    EXPECT_EQ(folder.CountFiles(), 1u);
}
