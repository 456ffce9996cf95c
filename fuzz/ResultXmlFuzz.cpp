// SPDX-License-Identifier: Apache-2.0
// Result files.
#include "KYCollisionBase/result/KyWorksetResultData.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <random>
#include <string>
#include <vector>

#include <boost/lexical_cast.hpp>

#include "Require.h"
#include "platform/Text.h"

using kycbfuzz::Require;
using KYCOLLISION::RESULT::KyResultItem;
using KYCOLLISION::RESULT::KyWorksetResultData;

namespace {

/// A file of this process alone.
const std::filesystem::path& File() {
    static const std::filesystem::path path =
        std::filesystem::temp_directory_path() /
        ("kycbfuzz-results-" + std::to_string(std::random_device()()) + ".xml");
    return path;
}

std::wstring FilePath() {
    return kycb::text::FromUtf8(File().string());
}

std::string FileBytes() {
    std::ifstream file(File(), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

enum class Reading { kRead, kRefused, kBadNumber };

Reading Read(KyWorksetResultData& results) {
    try {
        return results.InitByXml(FilePath()) ? Reading::kRead : Reading::kRefused;
    } catch (const boost::bad_lexical_cast&) {
        return Reading::kBadNumber;
    }
}

std::size_t CountItems(KyWorksetResultData& results) {
    std::map<KyWorksetResultData::FloorKey, std::vector<KyResultItem*>> all;
    results.GetAllResultItems(all);
    std::size_t count = 0;
    for (const auto& [floor, items] : all)
        count += items.size();
    return count;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::ofstream(File(), std::ios::binary)
        .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    const auto first = KyWorksetResultData::Create(KyModelTypeDefault, 1);
    const Reading reading = Read(*first);
    Require(first->GetErrorText().empty() == (reading == Reading::kRead),
            "a failure, and nothing else, has a reason");
    if (reading == Reading::kRefused) {
        Require(CountItems(*first) == 0, "a refused file adds nothing");
        std::filesystem::remove(File());
        return 0;
    }

    Require(first->SerializeToXml(FilePath()), "what was read can be saved");
    const std::string saved = FileBytes();
    const auto second = KyWorksetResultData::Create(KyModelTypeDefault, 1);
    Require(Read(*second) == Reading::kRead, "what was saved can be read");
    Require(CountItems(*second) == CountItems(*first), "and is as much");
    Require(second->SerializeToXml(FilePath()), "and can be saved again");
    Require(FileBytes() == saved, "and is the same");
    std::filesystem::remove(File());
    return 0;
}
