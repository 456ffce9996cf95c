// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>

#include "desk/core/ModelList.h"
#include "support/TemporaryFolder.h"

namespace fs = std::filesystem;
using desk::ModelListPath;
using desk::ReadModelList;
using desk::WriteModelList;
using kycbtest::TemporaryFolder;
using testing::HasSubstr;

TEST(ModelList, StandsBesideTheResults) {
    EXPECT_EQ(ModelListPath("dir/results.xml"), fs::path("dir/results.models.json"));
}

TEST(ModelList, KeepsTheModelsInTheirOrder) {
    const TemporaryFolder scratch;
    const fs::path results = scratch.Path() / "results.xml";
    const std::vector<fs::path> models{scratch.Path() / "z.ifc",
                                       scratch.Path() / "sub/a \u7BA1.ifc",
                                       scratch.Path().parent_path() / "other.ifc"};
    std::string error;
    ASSERT_TRUE(WriteModelList(results, models, error)) << error;
    EXPECT_EQ(ReadModelList(results, error), models);
    EXPECT_EQ(error, "");
}

TEST(ModelList, MovesWithItsFolder) {
    const TemporaryFolder scratch;
    fs::create_directories(scratch.Path() / "old");
    std::string error;
    WriteModelList(scratch.Path() / "old/results.xml", {scratch.Path() / "old/a.ifc"}, error);
    fs::rename(scratch.Path() / "old", scratch.Path() / "new");
    const auto models = ReadModelList(scratch.Path() / "new/results.xml", error);
    EXPECT_THAT(models.value(), testing::ElementsAre(scratch.Path() / "new/a.ifc"));
}

TEST(ModelList, IsNoErrorWhenItIsMissing) {
    const TemporaryFolder scratch;
    std::string error;
    EXPECT_EQ(ReadModelList(scratch.Path() / "results.xml", error), std::nullopt);
    EXPECT_EQ(error, "");
}

TEST(ModelList, NamesTheFileThatIsBroken) {
    const TemporaryFolder scratch;
    for (const char* text : {"{", "[]", "{\"version\": 9, \"models\": []}",
                             "{\"version\": 1, \"models\": [3]}", "{\"version\": 1}"}) {
        scratch.Write("results.models.json", text);
        std::string error;
        EXPECT_EQ(ReadModelList(scratch.Path() / "results.xml", error), std::nullopt) << text;
        EXPECT_THAT(error, HasSubstr("results.models.json")) << text;
    }
}

TEST(ModelList, SaysWhenItCannotBeWritten) {
    const TemporaryFolder scratch;
    std::string error;
    EXPECT_FALSE(WriteModelList(scratch.Path() / "missing/results.xml", {"a.ifc"}, error));
    EXPECT_THAT(error, HasSubstr("results.models.json"));
}
