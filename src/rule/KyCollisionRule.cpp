// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/rule/KyCollisionRule.h"

#include "KYCollisionBase/rule/KyCollisionRuleItem.h"

#include <algorithm>
#include <memory>
#include <set>

#include "rule/CategoryPath.h"

namespace KYCOLLISION::Rule {
namespace {

using kycb::rule::CategoryPath;

template <class Map>
const typename Map::mapped_type* Find(const Map& items, const std::wstring& spec) {
    const auto found = items.find(spec);
    return found == items.end() ? nullptr : &found->second;
}

bool Holds(const std::vector<std::wstring>& names, const std::wstring& name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

std::wstring FirstPart(const CategoryPath& path) {
    return std::wstring(path.parts[0]);
}

}  // namespace

KyCollisionRule::~KyCollisionRule() {
    InitResource();
}

void KyCollisionRule::InitResource() {
    ruleName_.clear();
    ruleType_ = eRuleTypeNone;
    specArray_.clear();
    // An item that was added again while it was already there stands in the arrays twice.
    std::set<KyCollisionRuleItem*> items;
    for (const ItemMap* map : {&validItems_, &invalidItems_}) {
        for (const auto& [spec, array] : *map)
            items.insert(array.begin(), array.end());
    }
    validItems_.clear();
    invalidItems_.clear();
    for (const KyCollisionRuleItem* item : items)
        delete item;
}

KyCollisionRule* KyCollisionRule::Clone(bool withGuid) const {
    auto copy = std::make_unique<KyCollisionRule>();
    copy->Copy(this, withGuid);
    return copy.release();
}

void KyCollisionRule::Copy(const KyCollisionRule* source, bool withGuid) {
    if (!source || source == this) return;
    InitResource();
    if (withGuid) guid_ = source->guid_;
    ruleName_ = source->ruleName_;
    ruleType_ = source->ruleType_;
    specArray_ = source->specArray_;
    CopyItems(source->validItems_, validItems_);
    CopyItems(source->invalidItems_, invalidItems_);
}

void KyCollisionRule::CopyItems(const ItemMap& source, ItemMap& target) {
    for (const auto& [spec, items] : source) {
        ItemArray& copies = target[spec];
        copies.reserve(items.size());
        for (const KyCollisionRuleItem* item : items) {
            if (!item) continue;
            copies.push_back(item->Clone());
            copies.back()->SetOwnerRule(this);
        }
    }
}

const KyCollisionRuleItem* KyCollisionRule::QueryRuleItem(const std::wstring& path) const {
    const CategoryPath parts(path);
    if (parts.count == 0) return nullptr;
    const ItemArray* items = Find(validItems_, FirstPart(parts));
    return items ? QueryRuleItem(path, *items) : nullptr;
}

const KyCollisionRuleItem* KyCollisionRule::QueryRuleItem(const std::wstring& spec,
                                                          int index) const {
    const ItemArray* items = Find(validItems_, spec);
    if (!items || index < 0 || static_cast<std::size_t>(index) >= items->size()) return nullptr;
    return (*items)[static_cast<std::size_t>(index)];
}

const KyCollisionRuleItem* KyCollisionRule::QueryRuleItem(const std::wstring& path,
                                                          const ItemArray& items) const {
    const auto found = std::find_if(
        items.begin(), items.end(),
        [&path](const KyCollisionRuleItem* item) { return item->GetAttName() == path; });
    return found == items.end() ? nullptr : *found;
}

bool KyCollisionRule::AddRuleItem(const std::wstring& path, bool valid) {
    const CategoryPath parts(path);
    if (!kycb::rule::IsRuleItemPath(parts)) return false;
    const ItemArray& opposite = (valid ? invalidItems_ : validItems_)[FirstPart(parts)];
    if (const KyCollisionRuleItem* switched = QueryRuleItem(path, opposite)) {
        return AddRuleItem(const_cast<KyCollisionRuleItem*>(switched), valid);
    }
    auto item = std::make_unique<KyCollisionRuleItem>();
    item->SetSpecName(FirstPart(parts));
    item->SetAttName(path);
    if (!AddRuleItem(item.get(), valid)) return false;
    item.release();
    return true;
}

bool KyCollisionRule::AddRuleItem(KyCollisionRuleItem* item, bool valid) {
    if (!item) return false;
    const CategoryPath parts(item->GetAttName());
    if (!kycb::rule::IsRuleItemPath(parts)) return false;
    const std::wstring spec = FirstPart(parts);
    AddSpecialty(spec);
    if (MoveItemByCache(item, valid)) return true;
    ItemArray& items = (valid ? validItems_ : invalidItems_)[spec];
    items.push_back(item);
    item->SetOwnerRule(this);
    return true;
}

void KyCollisionRule::AddSpecialty(const std::wstring& spec) {
    if (Holds(specArray_, spec)) return;
    specArray_.push_back(spec);
    validItems_.try_emplace(spec);
    invalidItems_.try_emplace(spec);
}

bool KyCollisionRule::DeleteRuleItem(const KyCollisionRuleItem* item) {
    return MoveItemByCache(item, false);
}

bool KyCollisionRule::MoveItemByCache(const KyCollisionRuleItem* item, bool toValid) {
    if (!item) return false;
    const auto valid = validItems_.find(item->GetSpecName());
    const auto invalid = invalidItems_.find(item->GetSpecName());
    if (valid == validItems_.end() || invalid == invalidItems_.end()) return false;
    ItemArray& source = toValid ? invalid->second : valid->second;
    ItemArray& target = toValid ? valid->second : invalid->second;
    const auto found = std::find(source.begin(), source.end(), item);
    if (found == source.end()) return false;
    target.push_back(*found);
    source.erase(found);
    return true;
}

const std::vector<KyCollisionRuleItem*>* KyCollisionRule::GetRuleItemArray(
    const std::wstring& spec) const {
    return Find(validItems_, spec);
}

const std::vector<KyCollisionRuleItem*>* KyCollisionRule::GetInValidRuleItemArray(
    const std::wstring& spec) const {
    return Find(invalidItems_, spec);
}

void KyCollisionRule::DeleteAllItems(const std::wstring& spec) {
    const ItemArray* items = Find(validItems_, spec);
    for (std::size_t i = items ? items->size() : 0; i-- > 0;)
        MoveItemByCache((*items)[i], false);
}

void KyCollisionRule::AddAllItems(const std::wstring& spec) {
    const ItemArray* items = Find(invalidItems_, spec);
    for (std::size_t i = items ? items->size() : 0; i-- > 0;)
        MoveItemByCache((*items)[i], true);
}

bool KyCollisionRule::Equal(const KyCollisionRule& other) const {
    if (ruleName_ != other.ruleName_ || ruleType_ != other.ruleType_) return false;
    if (specArray_.size() != other.specArray_.size()) return false;
    return std::all_of(other.specArray_.begin(), other.specArray_.end(),
                       [this](const std::wstring& spec) { return Holds(specArray_, spec); }) &&
           std::all_of(
               specArray_.begin(), specArray_.end(),
               [this, &other](const std::wstring& spec) { return HasEqualItems(spec, other); });
}

bool KyCollisionRule::HasEqualItems(const std::wstring& spec, const KyCollisionRule& other) const {
    const ItemArray* mine = Find(validItems_, spec);
    const ItemArray* others = Find(other.validItems_, spec);
    if (!mine || !others) return true;
    return mine->size() == others->size() &&
           std::all_of(mine->begin(), mine->end(), [&other](const KyCollisionRuleItem* item) {
               const KyCollisionRuleItem* found = other.QueryRuleItem(item->GetAttName());
               return found && item->Equal(*found);
           });
}

}  // namespace KYCOLLISION::Rule
