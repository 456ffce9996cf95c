// SPDX-License-Identifier: Apache-2.0
// The file that keeps clash results: projects, floors and items as elements, values as attributes.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/SafeFile.h"
#include "platform/Status.h"

namespace KYCOLLISION::RESULT {
class KyResultItem;
}

namespace kycb {

/// Writes a result file in one pass, so that its size is bounded by the disk and not by memory.
///
/// The file takes its name as a whole when Commit succeeds; before that, and when anything fails,
/// an earlier file of the name stays as it was. Projects hold floors and floors hold items; a Begin
/// ends what was open at its level.
class ResultXmlWriter {
  public:
    explicit ResultXmlWriter(const std::wstring& path);

    void BeginProject(int projectId);
    void BeginFloor(const std::wstring& floorName);
    void WriteItem(const KYCOLLISION::RESULT::KyResultItem& item);

    /// Closes what is open and puts the file in place. To be called once.
    Status Commit();

  private:
    enum Level : int { kRoot, kProject, kFloor };

    void Begin(Level level);
    void EndDownTo(int level);
    void Flush();

    platform::SafeFile file_;
    std::string text_;     // what has not been given to the file yet
    int openLevels_ = 0;   // elements that have begun and not ended
    bool isEmpty_ = true;  // whether the innermost of them has no child yet
};

/// Reads a result file item by item.
class ResultXmlReader {
  public:
    using Item = KYCOLLISION::RESULT::KyResultItem;

    /// Gives every item of the file to `take`, in document order. A failure means that the file
    /// could not be read; then there were none. Throws boost::bad_lexical_cast at the first number
    /// that is none of its type; GetErrorText then names the place.
    Status Read(const std::wstring& path, const std::function<void(std::unique_ptr<Item>)>& take);

    const std::wstring& GetErrorText() const { return errorText_; }

  private:
    std::wstring errorText_;
};

}  // namespace kycb
