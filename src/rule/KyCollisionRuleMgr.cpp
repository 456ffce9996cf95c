// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/rule/KyCollisionRuleMgr.h"

#include "KYCollisionBase/platform/CXMLTreeCreator.h"
#include "KYCollisionBase/rule/KyAttrRangeFilter.h"
#include "KYCollisionBase/rule/KyCollisionRule.h"
#include "KYCollisionBase/rule/KyCollisionRuleItem.h"

#include <vector>

#include "platform/Text.h"
#include "platform/XmlTree.h"

namespace KYCOLLISION::Rule {
namespace {

using kycb::text::FromInt;
using kycb::text::ToInt;
using kycb::xml::TreePtr;
using ItemArray = std::vector<KyCollisionRuleItem*>;

constexpr const wchar_t* kTemplate =
    L"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<CollisionRule/>";
constexpr const wchar_t* kRootTag = L"CollisionRule";
constexpr const wchar_t* kSpecialtyTag = L"Specialty";
constexpr const wchar_t* kTypeAttribute = L"type";

std::wstring AttributeOf(IXMLTree& tree, const wchar_t* name) {
    std::wstring value;
    tree.GetAttribute(name, value);
    return value;
}

/// The text form of an exclusion; false for one of a level that has none.
bool PathOf(const KyExcludeItem& item, std::wstring& path) {
    if (item.level < 0 || item.level > 2) return false;
    path = item.specialty;
    if (item.level >= 1) path += L"/" + item.dalei;
    if (item.level == 2) path += L"/" + item.xiaolei;
    return true;
}

void WriteTyped(IXMLTree& tree, const wchar_t* tag, int type, const std::wstring& text) {
    tree.AddChild(tag, text);
    tree.SetAttribute(kTypeAttribute, FromInt(type));
    tree.GotoParent();
}

void WriteExcludes(IXMLTree& tree, const KyCollisionRuleItem& item) {
    tree.AddChild(L"Excludes", L"");
    for (const std::wstring& spec : item.GetExcludeSpecArray()) {
        for (const KyExcludeItem& exclude : *item.GetExcludeItemArray(spec)) {
            std::wstring path;
            if (!PathOf(exclude, path)) continue;
            tree.AddChild(L"ExcludeGJ", path);
            tree.GotoParent();
        }
    }
    tree.GotoParent();
}

}  // namespace

KyCollisionRuleMgr::KyCollisionRuleMgr() = default;
KyCollisionRuleMgr::~KyCollisionRuleMgr() = default;
KyCollisionRuleMgr::KyCollisionRuleMgr(const KyCollisionRuleMgr&) = default;
KyCollisionRuleMgr& KyCollisionRuleMgr::operator=(const KyCollisionRuleMgr&) = default;

void KyCollisionRuleMgr::DestroyRule::operator()(KyCollisionRule* rule) const {
    if (owns) delete rule;
}

bool KyCollisionRuleMgr::InitByXmlPath(const std::wstring& path) {
    const TreePtr tree(CXMLTreeCreator::Allocate());
    return tree && tree->LoadFile(path) && AnalyzeRule(tree.get());
}

bool KyCollisionRuleMgr::InitByXmlString(const std::wstring& text) {
    const TreePtr tree(CXMLTreeCreator::Allocate());
    return tree && tree->LoadText(text) && AnalyzeRule(tree.get());
}

bool KyCollisionRuleMgr::SaveToXMLFile(const std::wstring& path) const {
    if (!rule_) return false;
    const TreePtr tree(CXMLTreeCreator::Allocate());
    if (!tree) return true;
    ReAnalyzeRule(tree.get(), rule_.get());
    return tree->SaveFile(path);
}

const KyCollisionRule* KyCollisionRuleMgr::GetRule() const {
    return rule_.get();
}

void KyCollisionRuleMgr::SetRule(KyCollisionRule* rule, bool destroyOld) {
    if (rule && rule == rule_.get()) return;
    if (!destroyOld && rule_) std::get_deleter<DestroyRule>(rule_)->owns = false;
    rule_ = rule ? std::shared_ptr<KyCollisionRule>(rule, DestroyRule()) : nullptr;
}

const KyCollisionRuleItem* KyCollisionRuleMgr::GetRuleItem(std::wstring path) {
    return rule_ ? rule_->QueryRuleItem(path) : nullptr;
}

bool KyCollisionRuleMgr::AnalyzeRule(IXMLTree* tree) {
    if (!tree || !tree->GotoRoot(kRootTag)) return false;
    auto rule = std::make_unique<KyCollisionRule>();
    const int specialties = tree->GetChildCountByTag(kSpecialtyTag);
    for (int i = 0; i < specialties; ++i) {
        tree->GotoChild(i);
        if (!AnalyzeSpecialty(tree, *rule)) return false;
        tree->GotoParent();
    }
    SetRule(rule.release(), true);
    return true;
}

bool KyCollisionRuleMgr::AnalyzeSpecialty(IXMLTree* tree, KyCollisionRule& rule) {
    const std::wstring name = AttributeOf(*tree, L"name");
    const int items = tree->GetChildCount();
    for (int i = 0; i < items; ++i) {
        tree->GotoChild(i);
        bool valid = true;
        std::unique_ptr<KyCollisionRuleItem> item(AnalyzeRuleItem(tree, valid));
        tree->GotoParent();
        if (!item) continue;
        item->SetOwnerRule(&rule);
        item->SetSpecName(name);
        if (!rule.AddRuleItem(item.get(), valid)) return false;
        item.release();
    }
    return true;
}

KyCollisionRuleItem* KyCollisionRuleMgr::AnalyzeRuleItem(IXMLTree* tree, bool& valid) {
    auto item = std::make_unique<KyCollisionRuleItem>();
    item->SetAttName(AttributeOf(*tree, L"gjtype"));
    valid = kycb::text::EqualIgnoringAsciiCase(AttributeOf(*tree, L"isvalid"), L"true");
    const int parts = tree->GetChildCount();
    for (int i = 0; i < parts; ++i)
        AnalyzeRuleItemPart(tree, i, *item);
    return item.release();
}

void KyCollisionRuleMgr::AnalyzeRuleItemPart(IXMLTree* tree, int index, KyCollisionRuleItem& item) {
    const std::wstring tag = tree->GetChildTag(index);
    const int type = ToInt(tree->GetChildAttribute(index, kTypeAttribute));
    if (tag == L"Filter") {
        item.SetFilter(AnalyzeFilter(static_cast<EnumFilterType>(type), tree->GetChildText(index)));
    } else if (tag == L"Mode") {
        KyCollisionMode mode;
        mode.SetModeType(static_cast<EnumModeType>(type));
        AnalyzeCollisionMode(tree->GetChildText(index), mode);
        item.SetMode(mode);
    } else if (tag == L"Excludes") {
        tree->GotoChild(index);
        AnalyzeExcludes(tree, item);
        tree->GotoParent();
    }
}

void KyCollisionRuleMgr::AnalyzeExcludes(IXMLTree* tree, KyCollisionRuleItem& item) {
    const int entries = tree->GetChildCount();
    for (int i = 0; i < entries; ++i) {
        KyExcludeItem exclude;
        if (AnalyzeRuleExcludeItem(tree->GetChildText(i), exclude)) {
            item.AddExcludeItem(exclude.specialty, exclude);
        }
    }
}

IKyCollisionFilter* KyCollisionRuleMgr::AnalyzeFilter(EnumFilterType type,
                                                      const std::wstring& text) {
    return type == eFilterAttrRange ? new KyAttrRangeFilter(text) : nullptr;
}

bool KyCollisionRuleMgr::AnalyzeCollisionMode(const std::wstring& text, KyCollisionMode& mode) {
    if (mode.GetModeType() == eModeTolerance) mode.SetTolerance(ToInt(text));
    return true;
}

bool KyCollisionRuleMgr::AnalyzeRuleExcludeItem(const std::wstring& text, KyExcludeItem& item) {
    const std::vector<std::wstring> parts = kycb::text::Split(text, L'/');
    if (parts.empty() || parts.size() > 3) return false;
    item.level = static_cast<int>(parts.size()) - 1;
    item.specialty = parts[0];
    if (parts.size() > 1) item.dalei = parts[1];
    if (parts.size() > 2) item.xiaolei = parts[2];
    return true;
}

void KyCollisionRuleMgr::ReAnalyzeRule(IXMLTree* tree, const KyCollisionRule* rule) const {
    if (!tree || !rule || !tree->LoadText(kTemplate)) return;
    tree->GotoRoot(kRootTag);
    const auto writeItems = [this, tree](const ItemArray* items, bool valid) {
        if (!items) return;
        for (const KyCollisionRuleItem* item : *items)
            ReAnalyzeRuleItem(tree, item, valid);
    };
    for (const std::wstring& spec : rule->GetSpecArray()) {
        tree->AddChild(kSpecialtyTag, L"");
        tree->SetAttribute(L"name", spec);
        writeItems(rule->GetRuleItemArray(spec), true);
        writeItems(rule->GetInValidRuleItemArray(spec), false);
        tree->GotoRoot(kRootTag);
    }
}

void KyCollisionRuleMgr::ReAnalyzeRuleItem(IXMLTree* tree, const KyCollisionRuleItem* item,
                                           bool valid) const {
    if (!tree || !item) return;
    tree->AddChild(L"RuleItem", L"");
    tree->SetAttribute(L"gjtype", item->GetAttName());
    tree->SetAttribute(L"isvalid", valid ? L"true" : L"false");
    const IKyCollisionFilter* filter = item->GetFilter();
    WriteTyped(*tree, L"Filter", filter ? filter->GetFilterType() : eFilterNone,
               filter ? filter->ToString() : std::wstring());
    const KyCollisionMode* mode = item->GetMode();
    WriteTyped(*tree, L"Mode", mode->GetModeType(), FromInt(mode->GetTolerance()));
    WriteExcludes(*tree, *item);
    tree->GotoParent();
}

}  // namespace KYCOLLISION::Rule
