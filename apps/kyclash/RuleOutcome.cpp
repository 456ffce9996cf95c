// SPDX-License-Identifier: Apache-2.0
#include "kyclash/RuleOutcome.h"

#include "KYCollisionBase/logic/IModelDataSource.h"
#include "KYCollisionBase/model/AttCategoryModelInfo.h"
#include "KYCollisionBase/model/CollisionAlgorithm.h"
#include "KYCollisionBase/model/ObjectModelInfo.h"

#include <set>

#include "kyclash/CategoryCheck.h"

namespace kyclash {

using KYCOLLISION::MODEL::AttCategory;
using KYCOLLISION::MODEL::AttCategoryModelInfo;
using KYCOLLISION::MODEL::CollisionAlgorithm;
using KYCOLLISION::MODEL::ObjectModelInfo;
using KYCOLLISION::Rule::KyCollisionMode;
using KYCOLLISION::Rule::KyCollisionRule;
using KYCOLLISION::Rule::KyCollisionRuleItem;

namespace {

AttCategory KindOf(const std::wstring& path) {
    const auto parts = PathParts(path);
    return {parts[0], parts.size() > 1 ? parts[1] : L"", parts.size() > 2 ? parts[2] : L""};
}

}  // namespace

std::vector<RuledKind> KindsOf(const KyCollisionRule& rule) {
    std::vector<RuledKind> kinds;
    std::set<std::wstring> switchedOn;
    const auto add = [&](const std::vector<KyCollisionRuleItem*>* items, bool isOn) {
        if (items == nullptr) return;
        for (const KyCollisionRuleItem* item : *items) {
            const std::wstring& path = item->GetAttName();
            if (isOn && !switchedOn.insert(path).second) continue;
            kinds.push_back({KindOf(path), path, item, isOn});
        }
    };
    for (const std::wstring& specialty : rule.GetSpecArray()) {
        add(rule.GetRuleItemArray(specialty), true);
        add(rule.GetInValidRuleItemArray(specialty), false);
    }
    return kinds;
}

// A building without bodies: pairs get their offsets and no clash comes of it.
class RuleOutcomes::NoBodies final : public KYCOLLISION::LOGIC::IModelDataSource {
  public:
    KYCOLLISION::MODEL::ICollisionModel* CreateCollisionModel() override { return nullptr; }
    Opcode::Model* CreateOpcodeModel(int, const boost::any&, int) override { return nullptr; }
    bool GetObjAttributes(int, const boost::any&,
                          std::map<std::wstring, std::wstring>&) const override {
        return false;
    }
    void GetFloorAxisInfo(
        int, const std::wstring&, std::vector<KYCOLLISION::LOGIC::SQNGIAxisItem*>&,
        KYTOOLS::GRAPH::QuadTree<KYCOLLISION::LOGIC::SQNGIAxisItem*>&) const override {}
    void ShowProgress(const std::wstring&) override {}
    std::wstring GetObjDisplayName(int, const boost::any&) const override { return {}; }
    void HighlightObj(int, const boost::any&) override {}
    std::wstring GetObjXiaoLeiName(int, const std::wstring&, const std::wstring&) const override {
        return {};
    }
};

// One component of a kind.
struct RuleOutcomes::Probe {
    explicit Probe(const RuledKind& ruled)
        : isOn(ruled.isOn),
          item(ruled.item),
          mode(*ruled.item->GetMode()),
          category(ruled.kind),
          component(new ObjectModelInfo(boost::any(0))) {
        category.AppendObject(component);
    }

    bool isOn;
    const KyCollisionRuleItem* item;
    KyCollisionMode mode;
    AttCategoryModelInfo category;
    ObjectModelInfo* component;  // the category's
};

RuleOutcomes::RuleOutcomes(const std::vector<RuledKind>& kinds)
    : source_(std::make_unique<NoBodies>()) {
    for (const RuledKind& kind : kinds)
        probes_.push_back(std::make_unique<Probe>(kind));
}

RuleOutcomes::~RuleOutcomes() = default;

PairOutcome RuleOutcomes::Of(std::size_t a, std::size_t b) const {
    Probe& first = *probes_[a];
    Probe& second = *probes_[b];
    PairOutcome outcome;
    outcome.isTested = first.isOn && second.isOn &&
                       first.item->IsCollisionWith(second.category.GetCategoryPath()) &&
                       second.item->IsCollisionWith(first.category.GetCategoryPath());
    if (!outcome.isTested) return outcome;
    CollisionAlgorithm algorithm(first.component, second.component);
    algorithm.SetDataSource(source_.get());
    algorithm.SetCollisionMode(&first.mode, &second.mode);
    KYCOLLISION::MODEL::CollisionAlgorithm::CQNIMPosition high;
    KYCOLLISION::MODEL::CollisionAlgorithm::CQNIMPosition low;
    algorithm.CollisionCheck(high, low);
    algorithm.GetBodyOffset(outcome.offsetA, outcome.offsetB);
    return outcome;
}

}  // namespace kyclash
