// SPDX-License-Identifier: Apache-2.0
#include "kyclash/ResultOutput.h"

#include "KYCollisionBase/result/KyWorksetResultData.h"

#include <algorithm>
#include <ostream>
#include <system_error>

#include "ifchost/HostText.h"
#include "ifchost/PackageCache.h"
#include "kyclash/OutputFile.h"

namespace kyclash {
namespace {

namespace fs = std::filesystem;
using ifchost::PathText;
using KYCOLLISION::RESULT::KyResultItem;
using KYCOLLISION::RESULT::KyWorksetResultData;

constexpr const char* kResultFile = "results.xml";

// The reason when the file cannot be written.
std::optional<std::string> WriteXml(const fs::path& file, const std::vector<TrackedClash>& clashes,
                                    ClashSelection selection) {
    const auto container = KyWorksetResultData::Create(KyModelTypeDefault, 0);
    for (const TrackedClash& clash : clashes) {
        const bool isGone = clash.status == ClashStatus::Gone;
        if (isGone != (selection == ClashSelection::Gone)) continue;
        auto item = std::make_unique<KyResultItem>(*clash.item);
        if (container->AppendResultItem(item.get())) item.release();
    }
    if (container->SerializeToXml(ifchost::FromUtf8(PathText(file)))) return std::nullopt;
    return ifchost::ToUtf8(container->GetErrorText());
}

bool Exists(const fs::path& file) {
    std::error_code error;
    return fs::exists(file, error);
}

// The reason when a file of this name holds what must not be lost.
std::optional<std::string> WhyKeep(const fs::path& file) {
    if (!Exists(file)) return std::nullopt;
    std::string error;
    const auto items = ReadResultFile(file, error);
    if (!items) return "would replace what is no result file: " + error;
    const bool isHandled = std::any_of(items->begin(), items->end(),
                                       [](const auto& item) { return IsHandled(*item); });
    if (!isHandled) return std::nullopt;
    return PathText(file) + ": holds states, remarks or pictures of clashes; keep them with " +
           "--previous, or remove the file";
}

// Writes one file after the other and stops at the first failure.
class FileList {
  public:
    FileList(const fs::path& folder, std::ostream& errors) : folder_(folder), errors_(errors) {}

    template <class Write>
    void Add(const char* name, const Write& write) {
        if (failed_) return;
        const fs::path file = folder_ / name;
        if (const auto reason = write(file)) {
            Fail(*reason);
        } else {
            written_.push_back(PathText(file));
        }
    }
    void AddText(const char* name, const std::string& text) {
        Add(name, [&](const fs::path& file) { return ReplaceFile(file, text); });
    }
    void Remove(const char* name) {
        std::error_code error;
        fs::remove(folder_ / name, error);
        if (error) Fail(PathText(folder_ / name) + ": could not be removed: " + error.message());
    }
    void Fail(const std::string& reason) {
        if (!failed_) errors_ << "kyclash: " << reason << '\n';
        failed_ = true;
    }
    std::optional<std::vector<std::string>> Take() {
        if (failed_) return std::nullopt;
        return std::move(written_);
    }

  private:
    fs::path folder_;
    std::ostream& errors_;
    std::vector<std::string> written_;
    bool failed_ = false;
};

}  // namespace

std::optional<std::string> WhyNotReplace(const fs::path& folder,
                                         const std::optional<fs::path>& previous) {
    const fs::path target = folder / kResultFile;
    std::error_code error;
    if (previous && fs::equivalent(*previous, target, error)) return std::nullopt;
    if (auto reason = WhyKeep(target)) return reason;
    return WhyKeep(GoneFileOf(target));
}

std::optional<std::vector<std::string>> WriteResults(const fs::path& folder,
                                                     const RunResults& results,
                                                     std::ostream& errors) {
    FileList files(folder, errors);
    if (const auto reason = MakeFolder(folder)) files.Fail(*reason);
    const auto xml = [&](ClashSelection selection) {
        return [&, selection](const fs::path& file) {
            return WriteXml(file, results.clashes, selection);
        };
    };
    // The gone ones first: a clash must not be lost from both files when the second write fails.
    if (results.hasHistory) {
        files.Add("results-gone.xml", xml(ClashSelection::Gone));
        files.AddText("results-gone.csv",
                      ClashTable(results.clashes, ClashSelection::Gone, results.workset));
    }
    files.Add(kResultFile, xml(ClashSelection::Listed));
    files.AddText("results.csv",
                  ClashTable(results.clashes, ClashSelection::Listed, results.workset));
    files.AddText("openings.csv", OpeningTable(results.openings, results.workset));
    if (!results.hasHistory) {
        files.Remove("results-gone.xml");
        files.Remove("results-gone.csv");
    }
    return files.Take();
}

}  // namespace kyclash
