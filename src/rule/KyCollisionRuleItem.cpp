// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/rule/KyCollisionRuleItem.h"

#include "KYCollisionBase/model/KyEntityCategoryMgr.h"

#include <algorithm>

#include "rule/CategoryPath.h"

namespace KYCOLLISION::Rule {
namespace {

using ExcludeArray = std::vector<KyExcludeItem>;

bool Holds(const ExcludeArray& items, const KyExcludeItem& item) {
    return std::find(items.begin(), items.end(), item) != items.end();
}

/// The specialty was matched by the key that the entry stands under.
bool Excludes(const KyExcludeItem& item, const kycb::rule::CategoryPath& path) {
    if (item.level == 0) return true;
    if (item.level == 1) return item.dalei == path.parts[1];
    return item.level == 2 && path.count > 2 && item.dalei == path.parts[1] &&
           item.xiaolei == path.parts[2];
}

bool EqualFilters(const IKyCollisionFilter* a, const IKyCollisionFilter* b) {
    if (a) return a->Equal(b);
    return !b || b->Equal(nullptr);
}

bool EqualModes(const KyCollisionMode& a, const KyCollisionMode& b) {
    return a.GetModeType() == b.GetModeType() && a.GetTolerance() == b.GetTolerance();
}

bool EqualExcludes(const ExcludeArray* a, const ExcludeArray* b) {
    return a && b && a->size() == b->size() &&
           std::all_of(a->begin(), a->end(),
                       [b](const KyExcludeItem& item) { return Holds(*b, item); });
}

}  // namespace

void KyCollisionRuleItem::SetFilter(IKyCollisionFilter* filter) {
    if (filter != filter_.get()) filter_.reset(filter);
}

bool KyCollisionRuleItem::AddExcludeItem(const std::wstring& spec, const KyExcludeItem& item) {
    ExcludeArray& items = excludes_[spec];
    if (!Holds(items, item)) items.push_back(item);
    return true;
}

void KyCollisionRuleItem::RemoveExcludeItem(const std::wstring& spec) {
    if (const auto found = excludes_.find(spec); found != excludes_.end()) found->second.clear();
}

std::vector<std::wstring> KyCollisionRuleItem::GetExcludeSpecArray() const {
    const MODEL::KyEntityCategoryMgr& categories = *MODEL::KyEntityCategoryMgr::GetInstance();
    std::vector<std::wstring> specs;
    for (int i = 0; i < categories.GetSpecNodeCount(); ++i) {
        const MODEL::KyCategoryNode* node = categories.GetSpecNode(i);
        if (node && excludes_.contains(node->name)) specs.push_back(node->name);
    }
    return specs;
}

const std::vector<KyExcludeItem>* KyCollisionRuleItem::GetExcludeItemArray(
    const std::wstring& spec) const {
    const auto found = excludes_.find(spec);
    return found == excludes_.end() ? nullptr : &found->second;
}

bool KyCollisionRuleItem::IsCollisionWith(const std::wstring& otherPath) const {
    const kycb::rule::CategoryPath path(otherPath);
    if (path.count < 2) return false;
    const auto found = excludes_.find(path.parts[0]);
    if (found == excludes_.end()) return true;
    return std::none_of(found->second.begin(), found->second.end(),
                        [&path](const KyExcludeItem& item) { return Excludes(item, path); });
}

bool KyCollisionRuleItem::Equal(const KyCollisionRuleItem& other) const {
    if (specName_ != other.specName_ || attName_ != other.attName_) return false;
    if (!EqualFilters(filter_.get(), other.filter_.get())) return false;
    if (!EqualModes(mode_, other.mode_)) return false;
    const std::vector<std::wstring> specs = GetExcludeSpecArray();
    return specs == other.GetExcludeSpecArray() &&
           std::all_of(specs.begin(), specs.end(), [this, &other](const std::wstring& spec) {
               return EqualExcludes(GetExcludeItemArray(spec), other.GetExcludeItemArray(spec));
           });
}

KyCollisionRuleItem* KyCollisionRuleItem::Clone() const {
    auto copy = std::make_unique<KyCollisionRuleItem>();
    copy->ownerRule_ = ownerRule_;
    copy->specName_ = specName_;
    copy->attName_ = attName_;
    if (filter_) copy->filter_.reset(filter_->Clone());
    copy->mode_ = mode_;
    copy->excludes_ = excludes_;
    return copy.release();
}

}  // namespace KYCOLLISION::Rule
