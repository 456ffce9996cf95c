// SPDX-License-Identifier: Apache-2.0
#include "kyclash/RuleFile.h"

#include "KYCollisionBase/platform/CXMLTreeCreator.h"

#include <algorithm>
#include <set>

#include "ifchost/HostText.h"
#include "ifchost/PackageCache.h"
#include "kyclash/CategoryCheck.h"

namespace kyclash {
namespace {

using ifchost::ToUtf8;

constexpr const wchar_t* kRootTag = L"CollisionRule";
// Hard, clearance and tolerance mode.
constexpr int kModeTypes = 3;

struct DestroyTree {
    void operator()(IXMLTree* tree) const { tree->Destroy(); }
};
using TreePtr = std::unique_ptr<IXMLTree, DestroyTree>;

// Longer texts are cut in messages: a file may hold any.
constexpr std::size_t kLongestQuote = 100;

std::string Quoted(const std::wstring& text) {
    if (text.size() <= kLongestQuote) return "\"" + ToUtf8(text) + "\"";
    return "\"" + ToUtf8(text.substr(0, kLongestQuote)) + "...\"";
}

bool IsWholeNumber(const std::wstring& text) {
    const std::size_t start = text.find_first_not_of(L' ');
    if (start == std::wstring::npos) return false;
    const std::wstring number = text.substr(start, text.find_last_not_of(L' ') - start + 1);
    const std::size_t digits = number[0] == L'-' ? 1 : 0;
    return digits < number.size() &&
           number.find_first_not_of(L"0123456789", digits) == std::wstring::npos;
}

bool EqualsIgnoringCase(const std::wstring& text, const wchar_t* lower) {
    const std::wstring other = lower;
    return text.size() == other.size() &&
           std::equal(text.begin(), text.end(), other.begin(), [](wchar_t a, wchar_t b) {
               return (a >= L'A' && a <= L'Z' ? a - L'A' + L'a' : a) == b;
           });
}

// Walks a rule file in the order in which the library reads it.
class RuleFileReview {
  public:
    explicit RuleFileReview(IXMLTree& tree) : tree_(tree) {}

    void Run() {
        const int children = tree_.GetChildCount();
        const int read = tree_.GetChildCountByTag(L"Specialty");
        for (int i = 0; i < children; ++i) {
            place_ = "/CollisionRule/" + Child(i);
            if (i >= read) {
                Remark(
                    "is not read: the root's children are read by position, as many as there "
                    "are \"Specialty\" elements");
                continue;
            }
            if (tree_.GetChildTag(i) != L"Specialty") Remark("is read as a \"Specialty\"");
            tree_.GotoChild(i);
            ReviewSpecialty();
            tree_.GotoParent();
        }
    }

    std::vector<RuleRemark> remarks;
    /// The first item whose path makes the whole file unusable, with the reason; or empty.
    std::string fatal;

  private:
    std::string Child(int index) {
        return ToUtf8(tree_.GetChildTag(index)) + "[" + std::to_string(index + 1) + "]";
    }
    void Remark(const std::string& text) { remarks.push_back({place_, text}); }

    void ReviewSpecialty() {
        const std::string outer = place_;
        std::wstring name;
        if (!tree_.GetAttribute(L"name", name)) Remark("has no attribute \"name\"");
        for (int i = 0; i < tree_.GetChildCount(); ++i) {
            place_ = outer + "/" + Child(i);
            if (tree_.GetChildTag(i) != L"RuleItem") Remark("is read as a \"RuleItem\"");
            tree_.GotoChild(i);
            ReviewItem(name);
            tree_.GotoParent();
        }
    }

    void ReviewItem(const std::wstring& specialty) {
        std::wstring path;
        const bool hasPath = tree_.GetAttribute(L"gjtype", path);
        const auto parts = PathParts(path);
        const bool isShort = parts.size() == 2 && (EqualsIgnoringCase(parts[0], L"revit") ||
                                                   EqualsIgnoringCase(parts[0], L"tekla"));
        if (parts.size() != 3 && !isShort) {
            if (!fatal.empty()) return;
            fatal = place_ + ": " +
                    (hasPath ? "gjtype=" + Quoted(path) +
                                   " is no category path (three parts, or "
                                   "two below Revit and Tekla)"
                             : "has no attribute \"gjtype\"");
            return;
        }
        ReviewPath(path, parts, specialty);
        ReviewValidity();
        const std::string outer = place_;
        for (int i = 0; i < tree_.GetChildCount(); ++i) {
            place_ = outer + "/" + ToUtf8(tree_.GetChildTag(i));
            ReviewPart(i);
        }
    }

    void ReviewPath(const std::wstring& path, const std::vector<std::wstring>& parts,
                    const std::wstring& specialty) {
        const std::string why = WhyNoCategory(parts);
        if (!why.empty()) Remark("gjtype=" + Quoted(path) + " matches no kind: " + why);
        if (parts[0] != specialty) {
            Remark("gjtype=" + Quoted(path) + " stands under the specialty " + Quoted(specialty));
        }
        if (!paths_.insert(path).second) {
            Remark("gjtype=" + Quoted(path) + " has an item already; this one does not count");
        }
    }

    void ReviewValidity() {
        std::wstring valid;
        if (!tree_.GetAttribute(L"isvalid", valid)) {
            Remark("has no attribute \"isvalid\" and is switched off for that");
        } else if (!EqualsIgnoringCase(valid, L"true") && !EqualsIgnoringCase(valid, L"false")) {
            Remark("isvalid=" + Quoted(valid) + " switches it off");
        }
    }

    void ReviewPart(int index) {
        const std::wstring tag = tree_.GetChildTag(index);
        if (tag == L"Filter") {
            ReviewFilter(tree_.GetChildAttribute(index, L"type"), tree_.GetChildText(index));
        } else if (tag == L"Mode") {
            ReviewMode(tree_.GetChildAttribute(index, L"type"), tree_.GetChildText(index));
        } else if (tag == L"Excludes") {
            tree_.GotoChild(index);
            ReviewExcludes();
            tree_.GotoParent();
        } else {
            Remark("is unknown and passed over");
        }
    }

    void ReviewFilter(const std::wstring& type, const std::wstring& text) {
        if (type != L"0" && type != L"1") {
            Remark("type=" + Quoted(type) + " is no filter type (0 none, 1 range)");
        }
        if (type != L"1") return;
        const std::size_t last = text.find_last_of(L"<=>");
        if (last == std::wstring::npos) {
            Remark(Quoted(text) + " has no operator; it is met by pipes of diameter 0 only");
        } else if (!IsWholeNumber(text.substr(last + 1))) {
            Remark(Quoted(text) + " does not end with a whole number");
        }
    }

    void ReviewMode(const std::wstring& type, const std::wstring& text) {
        const bool isKnown = type.size() == 1 && type[0] >= L'0' && type[0] < L'0' + kModeTypes;
        if (!isKnown) {
            Remark("type=" + Quoted(type) + " is no mode (0 hard, 1 clearance, 2 tolerance)");
        }
        if (type == L"2" && !IsWholeNumber(text)) {
            Remark("the tolerance " + Quoted(text) + " is no whole number");
        }
    }

    void ReviewExcludes() {
        const std::string outer = place_;
        for (int i = 0; i < tree_.GetChildCount(); ++i) {
            place_ = outer + "/" + Child(i);
            const std::wstring path = tree_.GetChildText(i);
            const auto parts = PathParts(path);
            if (parts.empty() || parts.size() > 3) {
                Remark(Quoted(path) + " is no category path and passed over");
                continue;
            }
            const std::string why = WhyNoCategory(parts);
            if (!why.empty()) Remark(Quoted(path) + " excludes nothing: " + why);
        }
    }

    IXMLTree& tree_;
    std::string place_;
    std::set<std::wstring> paths_;
};

}  // namespace

RuleFile ReadRuleFile(const std::filesystem::path& file) {
    RuleFile result;
    const std::string name = ifchost::PathText(file);
    const std::wstring path = ifchost::FromUtf8(name);
    const TreePtr tree(CXMLTreeCreator::Allocate());
    if (!tree->LoadFile(path)) {
        result.error = ToUtf8(tree->GetErrorText());
        return result;
    }
    if (!tree->GotoRoot(kRootTag)) {
        result.error = name + ": is no rule file: its root element is not \"CollisionRule\"";
        return result;
    }
    RuleFileReview review(*tree);
    review.Run();
    result.remarks = std::move(review.remarks);
    auto rules = std::make_unique<KYCOLLISION::Rule::KyCollisionRuleMgr>();
    if (!review.fatal.empty()) {
        result.error = name + ": " + review.fatal;
    } else if (!rules->InitByXmlPath(path)) {
        result.error = name + ": could not be read as a rule file";
    } else {
        result.rules = std::move(rules);
    }
    return result;
}

}  // namespace kyclash
