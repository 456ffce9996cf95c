// SPDX-License-Identifier: Apache-2.0
// The library against the reference on thousands of small random scenes.
#include <cstdint>
#include <map>
#include <set>
#include <string>

#include <gmock/gmock.h>

#include "scenes/Comparison.h"
#include "scenes/SceneGenerator.h"
#include "scenes/reference/Reference.h"
#include "support/Random.h"

namespace kycb::scenes {
namespace {

using reference::Reference;

constexpr std::uint64_t kSeedsPerBlock = 250;
constexpr std::uint64_t kBlocks = 12;

class RandomScenes : public ::testing::TestWithParam<std::uint64_t> {};

TEST_P(RandomScenes, LibraryAnswersAsTheReference) {
    const std::uint64_t first = GetParam() * kSeedsPerBlock;
    for (std::uint64_t seed = first; seed < first + kSeedsPerBlock; ++seed) {
        const Scene scene = MakeScene(seed);
        if (!DifferenceIn(scene, Walk::kModel)) continue;
        FAIL() << Explain(scene, Walk::kModel);
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomScenes, ::testing::Range<std::uint64_t>(0, kBlocks));

// Fewer, because the driver rests after each floor.
TEST(RandomScenesByDriver, LibraryAnswersAsTheReference) {
    const std::uint64_t first = kBlocks * kSeedsPerBlock;
    for (std::uint64_t seed = first; seed < first + 60; ++seed) {
        const Scene scene = MakeScene(seed);
        if (!DifferenceIn(scene, Walk::kDriver)) continue;
        FAIL() << Explain(scene, Walk::kDriver);
    }
}

/// Whether nothing in a scene depends on which of two components came first.
bool IsFreeOfTwins(const Scene& scene) {
    std::set<std::wstring> guids;
    std::map<std::wstring, reference::AttCategory> kinds;
    for (const SceneComponent& component : scene.components) {
        if (!guids.insert(component.guid).second) return false;
        const std::wstring path = reference::CategoryPath(component.category);
        if (!(kinds.emplace(path, component.category).first->second == component.category)) {
            return false;
        }
    }
    return true;
}

/// What the library answers, without anything that numbers the components.
struct Answer {
    std::vector<MeshCall> meshCalls;
    ResultOutcome results;
    HoleOutcome holes;
};

Answer AnswerTo(const Scene& scene) {
    LibrarySession library(scene, Walk::kModel);
    const SceneRun& run = scene.runs.front();
    Answer answer;
    answer.meshCalls = library.Check(run).meshCalls;
    answer.results = library.GetResults(run);
    answer.results.remaining.clear();
    answer.holes = library.GetHoles(run);
    return answer;
}

TEST(ShuffledScenes, OrderOfAppendingPlaysNoPartWithoutTwins) {
    int compared = 0;
    for (std::uint64_t seed = 0; seed < 300; ++seed) {
        Scene scene = MakeScene(seed);
        if (!IsFreeOfTwins(scene)) continue;
        const Answer expected = AnswerTo(scene);
        test::Random random(seed);
        random.Shuffle(scene.components);
        const Answer found = AnswerTo(scene);
        EXPECT_TRUE(expected.meshCalls == found.meshCalls) << "seed " << seed;
        EXPECT_EQ(Difference(expected.results, found.results), std::nullopt) << "seed " << seed;
        EXPECT_EQ(Difference(expected.holes, found.holes), std::nullopt) << "seed " << seed;
        ++compared;
    }
    EXPECT_GT(compared, 100);
}

/// How often something happens in scenes.
class Tally {
  public:
    void Count(const Scene& scene) {
        Reference reference(scene);
        for (const SceneRun& run : scene.runs) {
            Count(reference.Check(run));
            Count(reference.GetResults(run));
            const HoleOutcome holes = reference.GetHoles(run);
            counts_["openings"] += static_cast<int>(holes.items.size());
            counts_["unreadable openings"] += holes.error.empty() ? 0 : 1;
        }
    }

    int Of(const std::string& what) { return counts_[what]; }

  private:
    void Count(const CheckOutcome& check) {
        counts_["stops"] += check.done ? 0 : 1;
        counts_["complete runs"] += check.done ? 1 : 0;
        int clashes = 0;
        for (const auto& records : check.records) {
            for (const Record& record : records) {
                ++clashes;
                counts_["grown bodies"] += record.ownOffset > 0 ? 1 : 0;
                counts_["shrunk bodies"] += record.ownOffset < 0 ? 1 : 0;
            }
        }
        counts_["clashes"] += clashes;
        counts_["runs without clash"] += clashes == 0 ? 1 : 0;
    }

    void Count(const ResultOutcome& results) {
        counts_["unreadable heights"] += results.error.empty() ? 0 : 1;
        int items = 0;
        for (const auto& [key, ofFloor] : results.items) {
            items += static_cast<int>(ofFloor.size());
            for (const ResultFields& item : ofFloor) {
                Count(item);
            }
        }
        counts_["results"] += items;
        counts_["fewer results than counted"] += items < results.countBefore ? 1 : 0;
    }

    void Count(const ResultFields& item) {
        const bool hasBothAxes = item.axisPos.find(L" / ") != std::wstring::npos;
        counts_["positions between two axes"] += hasBothAxes ? 1 : 0;
        counts_["positions elsewhere"] += item.axisPos == L"其他位置" ? 1 : 0;
        counts_["Tekla results"] += item.infoA.Specialty == L"Tekla" ? 1 : 0;
        counts_["Revit second components"] += item.infoB.Specialty == L"Revit" ? 1 : 0;
        counts_["results across floors"] += item.floorA != item.floorB ? 1 : 0;
    }

    std::map<std::string, int> counts_;
};

TEST(RandomScenesThemselves, EverythingHappensOften) {
    Tally tally;
    for (std::uint64_t seed = 0; seed < 400; ++seed) {
        tally.Count(MakeScene(seed));
    }
    for (const char* what : {"clashes", "results", "runs without clash", "complete runs",
                             "positions between two axes"}) {
        EXPECT_GE(tally.Of(what), 100) << what;
    }
    for (const char* what :
         {"stops", "grown bodies", "shrunk bodies", "openings", "positions elsewhere",
          "Tekla results", "Revit second components", "results across floors"}) {
        EXPECT_GE(tally.Of(what), 20) << what;
    }
    for (const char* what :
         {"unreadable openings", "unreadable heights", "fewer results than counted"}) {
        EXPECT_GE(tally.Of(what), 3) << what;
    }
}

}  // namespace
}  // namespace kycb::scenes
