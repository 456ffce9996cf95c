// SPDX-License-Identifier: Apache-2.0
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "PackageBuilder.h"
#include "ifchost/ConverterProcess.h"
#include "ifchost/SceneConverter.h"
#include "ifchost/ScenePackage.h"

namespace ifchost {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using testing::PackageBuilder;
using testing::ReadAll;
using ::testing::SizeIs;
using testing::TemporaryFolder;
namespace fs = std::filesystem;

/// Runs shell scripts in the place of Node and the converter, so that every way in which a child
/// can end is at hand.
class ConvertingByScript : public ::testing::Test {
  protected:
    void SetUp() override {
        options_.node = FindOnPath("sh");
        if (options_.node.empty()) GTEST_SKIP() << "needs a shell on PATH";
        options_.converterDir = folder_.Path() / "converter";
        options_.cacheDir = folder_.Path() / "cache";
        folder_.Write("converter/package.json", "{}");
        folder_.Write("converter/package-lock.json", "{}");
        folder_.Write("good.kyscene", PackageBuilder().Build());
        UseScript(kGood);
    }

    /// `$in` and `$out` are the arguments, `$here` is the test's folder.
    void UseScript(const std::string& body) {
        folder_.Write("converter/convert.mjs",
                      "here='" + folder_.Path().string() + "'\n" +
                          "for a in \"$@\"; do case \"$a\" in\n"
                          "--input=*) in=\"${a#--input=}\";;\n"
                          "--output=*) out=\"${a#--output=}\";;\nesac; done\n" +
                          "echo \"$in\" >> \"$here/runs\"\n" + body);
    }

    std::vector<ConvertResult> Convert(const std::vector<fs::path>& inputs,
                                       const std::atomic<bool>* cancel = nullptr,
                                       const SceneConverter::ProgressCallback& progress = {}) {
        return SceneConverter(options_).Convert(inputs, cancel, progress);
    }
    ConvertResult ConvertOne(const fs::path& input) { return Convert({input}).at(0); }

    std::vector<std::string> Runs() const {
        std::ifstream file(folder_.Path() / "runs");
        std::vector<std::string> names;
        for (std::string line; std::getline(file, line);) {
            names.push_back(fs::path(line).filename().string());
        }
        return names;
    }

    std::vector<fs::path> CacheFiles() const {
        std::vector<fs::path> files;
        for (const auto& entry : fs::directory_iterator(options_.cacheDir)) {
            files.push_back(entry.path());
        }
        return files;
    }

    static constexpr const char* kGood = "cp \"$here/good.kyscene\" \"$out\"\n";

    TemporaryFolder folder_;
    ConvertOptions options_;
};

TEST_F(ConvertingByScript, GivesAPackageThatOpens) {
    const auto result = ConvertOne(folder_.Write("a.ifc", "a"));
    ASSERT_TRUE(result.Ok()) << result.message;
    EXPECT_FALSE(result.fromCache);
    SceneError error;
    EXPECT_TRUE(ScenePackage::Open(result.package, error)) << error.Text();
    EXPECT_THAT(CacheFiles(), ElementsAre(result.package));
}

TEST_F(ConvertingByScript, TakesTheSecondTimeFromTheCache) {
    const auto input = folder_.Write("a.ifc", "a");
    const auto first = ConvertOne(input);
    const auto second = ConvertOne(input);
    ASSERT_TRUE(second.Ok()) << second.message;
    EXPECT_TRUE(second.fromCache);
    EXPECT_EQ(second.package, first.package);
    EXPECT_THAT(Runs(), SizeIs(1));
}

TEST_F(ConvertingByScript, KnowsARenamedFileByItsContent) {
    ConvertOne(folder_.Write("a.ifc", "same"));
    EXPECT_TRUE(ConvertOne(folder_.Write("b.ifc", "same")).fromCache);
    EXPECT_FALSE(ConvertOne(folder_.Write("a.ifc", "other")).fromCache);
}

TEST_F(ConvertingByScript, ConvertsEqualInputsOnce) {
    const auto results = Convert({folder_.Write("a.ifc", "same"), folder_.Write("b.ifc", "same")});
    ASSERT_TRUE(results[0].Ok() && results[1].Ok());
    EXPECT_EQ(results[0].package, results[1].package);
    EXPECT_THAT(Runs(), ElementsAre("a.ifc"));
}

TEST_F(ConvertingByScript, FailsEqualInputsTogether) {
    UseScript("echo 'error bad file' >&2; exit 3\n");
    const auto results = Convert({folder_.Write("a.ifc", "same"), folder_.Write("b.ifc", "same")});
    EXPECT_EQ(results[0].error, ConvertErrorKind::InputInvalid);
    EXPECT_EQ(results[1].error, ConvertErrorKind::InputInvalid);
    EXPECT_THAT(results[1].message, HasSubstr("b.ifc"));
}

TEST_F(ConvertingByScript, ConvertsAnewAfterTheConverterChanged) {
    const auto input = folder_.Write("a.ifc", "a");
    ConvertOne(input);
    UseScript(std::string("# newer\n") + kGood);
    EXPECT_FALSE(ConvertOne(input).fromCache);
    folder_.Write("converter/package-lock.json", "{\"newer\": true}");
    EXPECT_FALSE(ConvertOne(input).fromCache);
    folder_.Write("converter/lib/part.mjs", "");
    EXPECT_FALSE(ConvertOne(input).fromCache);
}

TEST_F(ConvertingByScript, ConvertsAnewForOtherCircleSegments) {
    const auto input = folder_.Write("a.ifc", "a");
    ConvertOne(input);
    options_.circleSegments = 48;
    EXPECT_FALSE(ConvertOne(input).fromCache);
}

TEST_F(ConvertingByScript, ReplacesADamagedPackageInTheCache) {
    const auto input = folder_.Write("a.ifc", "a");
    const auto package = ConvertOne(input).package;
    fs::resize_file(package, fs::file_size(package) - 1);
    const auto result = ConvertOne(input);
    ASSERT_TRUE(result.Ok()) << result.message;
    EXPECT_FALSE(result.fromCache);
    SceneError error;
    EXPECT_TRUE(ScenePackage::Open(package, error)) << error.Text();
}

TEST_F(ConvertingByScript, StartsWithTheBiggestFile) {
    options_.parallel = 1;
    Convert({folder_.Write("small.ifc", "1"), folder_.Write("big.ifc", std::string(300, '2')),
             folder_.Write("middle.ifc", std::string(20, '3'))});
    EXPECT_THAT(Runs(), ElementsAre("big.ifc", "middle.ifc", "small.ifc"));
}

TEST_F(ConvertingByScript, ConvertsManySideBySide) {
    options_.parallel = 4;
    std::vector<fs::path> inputs;
    for (int i = 0; i < 12; ++i) {
        const std::string name = "file" + std::to_string(i);
        inputs.push_back(folder_.Write(name, name));
    }
    const auto results = Convert(inputs);
    for (std::size_t i = 0; i < results.size(); ++i) {
        EXPECT_TRUE(results[i].Ok()) << results[i].message;
        EXPECT_EQ(results[i].input, inputs[i]);
    }
    EXPECT_THAT(Runs(), SizeIs(12));
    EXPECT_THAT(CacheFiles(), SizeIs(12));
}

TEST_F(ConvertingByScript, OneFailureLeavesTheOthersAlone) {
    UseScript(
        std::string("case \"$in\" in *bad*) echo 'error not an IFC file' >&2; exit 3;; esac\n") +
        kGood);
    const auto results = Convert({folder_.Write("a.ifc", "a"), folder_.Write("bad.ifc", "b"),
                                  folder_.Path() / "none.ifc", folder_.Write("c.ifc", "c")});
    EXPECT_TRUE(results[0].Ok());
    EXPECT_EQ(results[1].error, ConvertErrorKind::InputInvalid);
    EXPECT_EQ(results[2].error, ConvertErrorKind::InputMissing);
    EXPECT_TRUE(results[3].Ok());
}

TEST_F(ConvertingByScript, NamesAMissingInput) {
    const auto result = ConvertOne(folder_.Path() / "none.ifc");
    EXPECT_EQ(result.error, ConvertErrorKind::InputMissing);
    EXPECT_THAT(result.message, HasSubstr("none.ifc: there is no such file"));
    EXPECT_TRUE(result.package.empty());
}

TEST_F(ConvertingByScript, RefusesAFolderAsInput) {
    EXPECT_EQ(ConvertOne(folder_.Path()).error, ConvertErrorKind::InputMissing);
}

TEST_F(ConvertingByScript, PassesOnWhatTheChildSaysAboutTheInput) {
    UseScript("echo noise >&2; echo 'error the file is cut short' >&2; exit 3\n");
    const auto result = ConvertOne(folder_.Write("a.ifc", "a"));
    EXPECT_EQ(result.error, ConvertErrorKind::InputInvalid);
    EXPECT_THAT(result.message, HasSubstr("a.ifc: the file is cut short"));
    EXPECT_TRUE(CacheFiles().empty());
}

TEST_F(ConvertingByScript, TellsHowToInstallAMissingReader) {
    UseScript("echo 'error cannot load web-ifc' >&2; exit 4\n");
    const auto result = ConvertOne(folder_.Write("a.ifc", "a"));
    EXPECT_EQ(result.error, ConvertErrorKind::ConverterMissing);
    EXPECT_THAT(result.message, HasSubstr("npm ci --prefix"));
    EXPECT_THAT(result.message, HasSubstr("converter"));
}

TEST_F(ConvertingByScript, ReportsACrashWithTheLastWords) {
    UseScript("echo 'out of memory' >&2; exit 134\n");
    const auto result = ConvertOne(folder_.Write("a.ifc", "a"));
    EXPECT_EQ(result.error, ConvertErrorKind::Crash);
    EXPECT_THAT(result.message, HasSubstr("134: out of memory"));
}

TEST_F(ConvertingByScript, ReportsAChildThatKillsItself) {
    UseScript(std::string(kGood) + "kill -9 $$\n");
    EXPECT_EQ(ConvertOne(folder_.Write("a.ifc", "a")).error, ConvertErrorKind::Crash);
    EXPECT_TRUE(CacheFiles().empty());
}

TEST_F(ConvertingByScript, NeverTakesAnUnfinishedPackage) {
    UseScript("head -c 700 \"$here/good.kyscene\" > \"$out\"\n");
    const auto result = ConvertOne(folder_.Write("a.ifc", "a"));
    EXPECT_EQ(result.error, ConvertErrorKind::BadPackage);
    EXPECT_TRUE(CacheFiles().empty());
}

TEST_F(ConvertingByScript, RefusesAChildThatWritesNothing) {
    UseScript("exit 0\n");
    EXPECT_EQ(ConvertOne(folder_.Write("a.ifc", "a")).error, ConvertErrorKind::BadPackage);
}

TEST_F(ConvertingByScript, KillsAChildWhoseTimeIsUp) {
    options_.timeLimit = std::chrono::milliseconds(100);
    UseScript("echo x > \"$out.123.partial\"; exec sleep 600\n");
    const auto result = ConvertOne(folder_.Write("a.ifc", "a"));
    EXPECT_EQ(result.error, ConvertErrorKind::Timeout);
    EXPECT_THAT(result.message, HasSubstr("100 ms"));
    EXPECT_TRUE(CacheFiles().empty());
}

TEST_F(ConvertingByScript, KillsTheChildrenWhenCancelled) {
    UseScript("echo 'progress products 1 2' >&2; exec sleep 600\n");
    options_.parallel = 2;
    std::atomic<bool> cancel{false};
    const auto results = Convert(
        {folder_.Write("a.ifc", "a"), folder_.Write("b.ifc", "b"), folder_.Write("c.ifc", "c")},
        &cancel, [&](const ConvertProgress& step) {
            if (step.phase == ConvertPhase::Products) cancel = true;
        });
    for (const auto& result : results)
        EXPECT_EQ(result.error, ConvertErrorKind::Cancelled);
    EXPECT_TRUE(CacheFiles().empty());
}

TEST_F(ConvertingByScript, CallsAChildCancelledThatTheSameInterruptEnded) {
    UseScript("echo 'progress products 1 2' >&2; exit 15\n");
    std::atomic<bool> cancel{false};
    const auto results =
        Convert({folder_.Write("a.ifc", "a")}, &cancel, [&](const ConvertProgress& step) {
            if (step.phase == ConvertPhase::Products) cancel = true;
        });
    EXPECT_EQ(results.at(0).error, ConvertErrorKind::Cancelled);
}

TEST_F(ConvertingByScript, StartsNothingWhenCancelledBeforehand) {
    const std::atomic<bool> cancel{true};
    EXPECT_EQ(Convert({folder_.Write("a.ifc", "a")}, &cancel).at(0).error,
              ConvertErrorKind::Cancelled);
    EXPECT_TRUE(Runs().empty());
}

TEST_F(ConvertingByScript, IsNotHeldUpByAFloodOnStandardOutput) {
    UseScript(std::string("head -c 3000000 /dev/zero\n") + kGood);
    EXPECT_TRUE(ConvertOne(folder_.Write("a.ifc", "a")).Ok());
}

TEST_F(ConvertingByScript, ReportsThePhasesInTheirOrder) {
    UseScript(std::string("echo 'progress reading 0 1' >&2; echo 'progress relations 0 1' >&2\n"
                          "echo 'progress products 3 7' >&2; echo 'progress writing 0 1' >&2\n") +
              kGood);
    std::vector<ConvertPhase> phases;
    std::vector<std::size_t> counts;
    Convert({folder_.Write("a.ifc", "a")}, nullptr, [&](const ConvertProgress& step) {
        phases.push_back(step.phase);
        if (step.phase == ConvertPhase::Products) counts = {step.done, step.total};
    });
    EXPECT_THAT(phases,
                ElementsAre(ConvertPhase::Hashing, ConvertPhase::Waiting, ConvertPhase::Reading,
                            ConvertPhase::Relations, ConvertPhase::Products, ConvertPhase::Writing,
                            ConvertPhase::Checking, ConvertPhase::Done));
    EXPECT_THAT(counts, ElementsAre(3U, 7U));
}

TEST_F(ConvertingByScript, NamesAMissingNode) {
    options_.node = folder_.Path() / "no-node";
    const auto result = ConvertOne(folder_.Write("a.ifc", "a"));
    EXPECT_EQ(result.error, ConvertErrorKind::NodeMissing);
    EXPECT_THAT(result.message, HasSubstr("no-node"));
}

TEST_F(ConvertingByScript, NamesAMissingConverter) {
    options_.converterDir = folder_.Path() / "nowhere";
    const auto result = ConvertOne(folder_.Write("a.ifc", "a"));
    EXPECT_EQ(result.error, ConvertErrorKind::ConverterMissing);
    EXPECT_THAT(result.message, HasSubstr("nowhere"));
    EXPECT_THAT(result.message, HasSubstr("KYCLASH_CONVERTER_DIR"));
}

TEST_F(ConvertingByScript, NamesACacheFolderThatCannotBeMade) {
    options_.cacheDir = folder_.Write("file", "") / "cache";
    const auto result = ConvertOne(folder_.Write("a.ifc", "a"));
    EXPECT_EQ(result.error, ConvertErrorKind::CacheUnusable);
    EXPECT_THAT(result.message, HasSubstr("cache folder"));
}

TEST_F(ConvertingByScript, TakesInputNamesOfAnyForm) {
    for (const char* name : {"-dash.ifc", "with space.ifc", "墙.ifc", "quote'\"$x.ifc"}) {
        const auto result = ConvertOne(folder_.Write(name, name));
        EXPECT_TRUE(result.Ok()) << result.message;
    }
    EXPECT_THAT(Runs(), ElementsAre("-dash.ifc", "with space.ifc", "墙.ifc", "quote'\"$x.ifc"));
}

TEST_F(ConvertingByScript, SweepsUpOnlyOldTemporaryFiles) {
    const auto old = folder_.Write("cache/k.tmp-1", "");
    const auto recent = folder_.Write("cache/k.tmp-2", "");
    const auto kept = folder_.Write("cache/k.kyscene", "");
    for (const auto& path : {old, kept}) {
        fs::last_write_time(path, fs::file_time_type::clock::now() - std::chrono::hours(48));
    }
    ConvertOne(folder_.Write("a.ifc", "a"));
    EXPECT_FALSE(fs::exists(old));
    EXPECT_TRUE(fs::exists(recent));
    EXPECT_TRUE(fs::exists(kept));
}

TEST_F(ConvertingByScript, SharesItsCacheWithOthersAtTheSameTime) {
    UseScript(std::string("sleep 0.1\n") + kGood);
    const auto input = folder_.Write("a.ifc", "a");
    std::vector<ConvertResult> results(4);
    {
        std::vector<std::jthread> threads;
        for (auto& result : results) {
            threads.emplace_back([&] { result = ConvertOne(input); });
        }
    }
    for (const auto& result : results)
        EXPECT_TRUE(result.Ok()) << result.message;
    EXPECT_THAT(CacheFiles(), ElementsAre(results[0].package));
}

TEST_F(ConvertingByScript, GivesNothingForNothing) {
    EXPECT_TRUE(Convert({}).empty());
}

}  // namespace
}  // namespace ifchost
