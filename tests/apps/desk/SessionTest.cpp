// SPDX-License-Identifier: Apache-2.0
// What the window works on, without a window: the sample building is read, checked and kept.
#include "KYCollisionBase/result/KyResultItem.h"

#include <algorithm>
#include <map>
#include <set>
#include <stdexcept>

#include <gmock/gmock.h>

#include "SampleSession.h"

using desk::Activity;
using desk::ActivityOutcome;
using desk::CheckRequest;
using desk::Session;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

// What the sample's plan says for the two rule sets.
constexpr std::size_t kClashesByDefaultRules = 13;
constexpr std::size_t kClashesByBuiltinRules = 11;

using SessionTest = SampleSession;

std::multiset<std::wstring> Ids(const Session& session) {
    std::multiset<std::wstring> ids;
    for (const Session::Item* item : session.Results())
        ids.insert(item->GetObjGuidA() + item->GetObjGuidB());
    return ids;
}

}  // namespace

TEST_F(SessionTest, IsIdleAndEmptyAtFirst) {
    EXPECT_EQ(session_->CurrentActivity(), Activity::kIdle);
    EXPECT_FALSE(session_->Poll());
    EXPECT_EQ(session_->Workset(), nullptr);
    EXPECT_THAT(session_->Floors(), IsEmpty());
    EXPECT_THAT(session_->Kinds(), IsEmpty());
    EXPECT_THAT(session_->Results(), IsEmpty());
    EXPECT_FALSE(session_->ComponentIndex(1, L"0"));
    EXPECT_FALSE(session_->IsModified());
    EXPECT_THROW(session_->StartCheck({}), std::logic_error);
}

TEST_F(SessionTest, OpensModelsInTheBackground) {
    session_->StartOpen({DESK_SAMPLE_IFC});
    EXPECT_EQ(session_->CurrentActivity(), Activity::kOpening);
    const ActivityOutcome outcome = Wait();
    EXPECT_EQ(outcome.activity, Activity::kOpening);
    EXPECT_TRUE(outcome.succeeded);
    EXPECT_THAT(outcome.errors, IsEmpty());
    EXPECT_EQ(session_->CurrentActivity(), Activity::kIdle);
    EXPECT_FALSE(session_->Poll()) << "an outcome comes once";
    ASSERT_THAT(session_->Floors(), SizeIs(3));
    EXPECT_EQ(session_->Floors()[0].name, L"F1");
    EXPECT_EQ(session_->Floors()[2].name, L"Roof");
    EXPECT_EQ(session_->Meshes()->ofComponent.size(), session_->Workset()->Components().size());
    EXPECT_THAT(session_->Openings(), testing::Not(IsEmpty()));
}

TEST_F(SessionTest, SaysWhatOfTheModelsTakesNoPart) {
    std::map<ifchost::ProductFate, std::size_t> unchecked;
    for (const desk::ModelNote& note : Open().modelNotes) {
        EXPECT_EQ(note.file, "building.ifc");
        if (const auto* products = std::get_if<desk::UncheckedProducts>(&note.what))
            unchecked[products->fate] = products->count;
    }
    EXPECT_EQ(unchecked[ifchost::ProductFate::NoGeometry], 1U) << "an insulation";
    EXPECT_EQ(unchecked[ifchost::ProductFate::ThroughParts], 2U) << "the stairs";
    EXPECT_EQ(unchecked.count(ifchost::ProductFate::Checked), 0U);
}

TEST_F(SessionTest, CountsTheComponentsOfEachKind) {
    Open();
    std::size_t columns = 0;
    for (desk::KindCount kind : session_->Kinds()) {
        if (kind.kind.categoryIndex() == L"土建/柱/砼柱") columns = kind.count;
    }
    const auto& components = session_->Workset()->Components();
    EXPECT_GT(columns, 0U);
    EXPECT_EQ(static_cast<std::ptrdiff_t>(columns),
              std::count_if(components.begin(), components.end(), [](const auto& component) {
                  return component.category.xiaolei == L"砼柱";
              }));
}

TEST_F(SessionTest, KeepsWhatIsOpenWhenOtherModelsCannotBeRead) {
    Open();
    const auto workset = session_->Workset();
    const ActivityOutcome outcome = Open(scratch_.Write("broken.ifc", "no IFC"));
    EXPECT_FALSE(outcome.succeeded);
    EXPECT_THAT(outcome.errors, ElementsAre(HasSubstr("broken.ifc")));
    EXPECT_EQ(session_->Workset(), workset);
    EXPECT_THAT(session_->Models(), ElementsAre(std::filesystem::path(DESK_SAMPLE_IFC)));
}

TEST_F(SessionTest, SaysWhichMappingCannotBeRead) {
    desk::SessionOptions options;
    options.loading.cacheDir = DESK_CACHE_DIR;
    options.loading.mapping = scratch_.Write("mapping.json", "{");
    session_ = std::make_unique<Session>(options);
    EXPECT_THAT(Open().errors, ElementsAre(HasSubstr("mapping.json")));
}

TEST_F(SessionTest, ChecksByTheDefaultRules) {
    Open();
    const ActivityOutcome outcome = Check(WholeRequest());
    EXPECT_EQ(outcome.activity, Activity::kChecking);
    EXPECT_TRUE(outcome.succeeded);
    EXPECT_EQ(outcome.clashes, kClashesByDefaultRules);
    EXPECT_THAT(session_->Results(), SizeIs(kClashesByDefaultRules));
    ASSERT_TRUE(outcome.rules);
    EXPECT_THAT(outcome.rules->file, HasSubstr("default.xml"));
    EXPECT_TRUE(session_->IsModified());
}

TEST_F(SessionTest, ChecksByTheRulesWithoutAFile) {
    session_->SetRuleFile("built-in");
    Open();
    EXPECT_EQ(Check(WholeRequest()).clashes, kClashesByBuiltinRules);
}

TEST_F(SessionTest, ReadsTheRuleFileAnewForEachRun) {
    const std::string columns = R"(<CollisionRule>
        <Specialty name="土建"><RuleItem gjtype="土建/柱/砼柱" isvalid="true"/></Specialty>
        <Specialty name="消防"><RuleItem gjtype="消防/管网/喷淋管" isvalid="ON"/></Specialty>
        </CollisionRule>)";
    const auto with = [&](const std::string& valid) {
        std::string text = columns;
        return scratch_.Write("rules.xml", text.replace(text.find("ON"), 2, valid));
    };
    session_->SetRuleFile(with("true"));
    Open();
    EXPECT_EQ(Check(WholeRequest()).clashes, 1U) << "the pipe through the column";
    with("false");
    EXPECT_EQ(Check(WholeRequest()).clashes, 0U);
}

TEST_F(SessionTest, KeepsItsResultsWhenTheRuleFileCannotBeUsed) {
    Open();
    Check(WholeRequest());
    session_->SetRuleFile(scratch_.Path() / "missing.xml");
    const ActivityOutcome outcome = Check(WholeRequest());
    EXPECT_FALSE(outcome.succeeded);
    EXPECT_FALSE(outcome.stopped);
    EXPECT_THAT(outcome.errors, ElementsAre(HasSubstr("missing.xml")));
    EXPECT_THAT(session_->Results(), SizeIs(kClashesByDefaultRules));
}

TEST_F(SessionTest, ChecksOnlyTheKindsThatAreAskedFor) {
    Open();
    CheckRequest request = WholeRequest();
    std::erase_if(request.kinds,
                  [](const std::wstring& kind) { return kind.rfind(L"土建/", 0) != 0; });
    EXPECT_EQ(Check(request).clashes, 1U) << "the stair flight in the roof slab";
}

TEST_F(SessionTest, ChecksOnlyTheFloorsThatAreAskedFor) {
    Open();
    CheckRequest request = WholeRequest();
    request.floors = {L"Roof"};
    Check(request);
    const auto onRoof = Ids(*session_);
    request.floors = {L"F1", L"F2"};
    Check(request);
    EXPECT_THAT(session_->Results(), SizeIs(kClashesByDefaultRules));
    EXPECT_LT(onRoof.size(), kClashesByDefaultRules);
}

TEST_F(SessionTest, StopsARunAndKeepsTheResultsBefore) {
    Open();
    Check(WholeRequest());
    // A run may end before it sees the request, so there are several to stop.
    ActivityOutcome outcome;
    for (int run = 0; run < 20 && !outcome.stopped; ++run) {
        session_->StartCheck(WholeRequest());
        session_->RequestStop();
        outcome = Wait();
    }
    EXPECT_TRUE(outcome.stopped);
    EXPECT_FALSE(outcome.succeeded);
    EXPECT_EQ(outcome.clashes, kClashesByDefaultRules);
    EXPECT_TRUE(Check(WholeRequest()).succeeded) << "the stop flag is down again";
}

TEST_F(SessionTest, KeepsHowAClashWasHandledOverANewRun) {
    Open();
    Check(WholeRequest());
    session_->SetDisposeState(Clash(L"Column F2 3/C", L"SP test line F2"), 2);
    session_->SetRemark(Clash(L"Column F2 3/C", L"SP test line F2"), L"moved");
    Check(WholeRequest());
    EXPECT_EQ(Clash(L"Column F2 3/C", L"SP test line F2").GetDisposeState(), 2);
    EXPECT_EQ(Clash(L"Column F2 3/C", L"SP test line F2").GetRemark(), L"moved");
    EXPECT_EQ(Clash(L"Column F2 3/D", L"WW stack F2").GetDisposeState(), 0);
}

TEST_F(SessionTest, IsModifiedByWhatChangesSomething) {
    Open();
    Check(WholeRequest());
    std::string error;
    ASSERT_TRUE(session_->SaveResults(scratch_.Path() / "r.xml", error)) << error;
    EXPECT_FALSE(session_->IsModified());
    Session::Item& clash = *session_->Results().front();
    session_->SetDisposeState(clash, clash.GetDisposeState());
    session_->SetRemark(clash, clash.GetRemark());
    session_->SetViewport(clash, clash.GetViewport());
    EXPECT_FALSE(session_->IsModified());
    session_->SetViewport(clash, L"camera");
    EXPECT_TRUE(session_->IsModified());
}

TEST_F(SessionTest, OpensWhatItSaved) {
    Open();
    Check(WholeRequest());
    session_->SetRemark(Clash(L"Column F2 3/C", L"SP test line F2"), L"kept");
    const auto before = Ids(*session_);
    const auto file = scratch_.Path() / "r.xml";
    std::string error;
    ASSERT_TRUE(session_->SaveResults(file, error)) << error;
    EXPECT_EQ(session_->ResultFile(), file);

    session_ = NewSession();
    const ActivityOutcome outcome = OpenResults(file);
    EXPECT_EQ(outcome.activity, Activity::kReadingResults);
    ASSERT_TRUE(outcome.succeeded);
    EXPECT_EQ(outcome.clashes, before.size());
    EXPECT_EQ(Ids(*session_), before);
    EXPECT_EQ(Clash(L"Column F2 3/C", L"SP test line F2").GetRemark(), L"kept");
    EXPECT_FALSE(session_->IsModified());
    session_->CloseResults();
    EXPECT_THAT(session_->Results(), IsEmpty());
    EXPECT_FALSE(session_->ResultFile());
}

TEST_F(SessionTest, KeepsItsResultsWhenAFileHoldsNone) {
    Open();
    Check(WholeRequest());
    const auto before = Ids(*session_);
    const ActivityOutcome outcome = OpenResults(scratch_.Write("broken.xml", "<a>"));
    EXPECT_FALSE(outcome.succeeded);
    EXPECT_THAT(outcome.errors, ElementsAre(HasSubstr("broken.xml")));
    EXPECT_EQ(Ids(*session_), before);
    EXPECT_FALSE(session_->ResultFile());
}

TEST_F(SessionTest, KeepsItsResultsWhenTheReadingOfOthersIsStopped) {
    Open();
    Check(WholeRequest());
    const auto file = scratch_.Path() / "r.xml";
    std::string error;
    ASSERT_TRUE(session_->SaveResults(file, error)) << error;
    session_->CloseResults();
    session_->StartOpenResults(file);
    session_->RequestStop();
    const ActivityOutcome outcome = Wait();
    // A file as short as this may have been read by then.
    EXPECT_NE(outcome.succeeded, outcome.stopped);
    EXPECT_EQ(session_->Results().size(), outcome.succeeded ? kClashesByDefaultRules : 0U);
}

TEST_F(SessionTest, SaysWhereResultsCannotBeSaved) {
    Open();
    Check(WholeRequest());
    std::string error;
    EXPECT_FALSE(session_->SaveResults(scratch_.Path() / "no folder" / "r.xml", error));
    EXPECT_THAT(error, HasSubstr("r.xml"));
    EXPECT_TRUE(session_->IsModified());
}

TEST_F(SessionTest, FindsTheComponentsOfAClash) {
    Open();
    Check(WholeRequest());
    const Session::Item& clash = Clash(L"Column F2 3/C", L"SP test line F2");
    const auto index = session_->ComponentIndex(clash.GetProjectA(), clash.GetObjGuidA());
    ASSERT_TRUE(index);
    EXPECT_EQ(session_->Workset()->Components()[*index].name, L"Column F2 3/C");
    EXPECT_FALSE(session_->ComponentIndex(clash.GetProjectA() + 1, clash.GetObjGuidA()));
}
