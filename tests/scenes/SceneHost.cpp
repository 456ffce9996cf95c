// SPDX-License-Identifier: Apache-2.0
#include "scenes/SceneHost.h"

#include "KYCollisionBase/logic/SQNGIAxisItem.h"
#include "KYCollisionBase/platform/CQNIMBoundArc.h"
#include "KYCollisionBase/platform/CQNIMLineSegment.h"
#include "KYCollisionBase/platform/QuadTree.h"
#include "KYCollisionBase/rule/KyAttrRangeFilter.h"
#include "KYCollisionBase/rule/KyCollisionRule.h"
#include "KYCollisionBase/rule/KyCollisionRuleItem.h"

namespace kycb::scenes {

using namespace KYCOLLISION::Rule;
using namespace QNIM::GeometryPrimitiveResource;
using KYTOOLS::GRAPH::BoundingBox2d;

namespace {

test::SceneBuilder BuildingOf(const Scene& scene) {
    test::SceneBuilder building;
    for (const SceneComponent& component : scene.components) {
        building.Add(component.guid, component.category, component.box) = component;
    }
    return building;
}

std::unique_ptr<CQNIMCurve> CurveOf(const SceneAxis& axis) {
    const CQNIMPosition first(axis.x0, axis.y0, 0.0);
    if (axis.radius) {
        return std::make_unique<CQNIMBoundArc>(first, *axis.radius, axis.startAngle,
                                               axis.sweepAngle);
    }
    return std::make_unique<CQNIMLineSegment>(first, CQNIMPosition(axis.x1, axis.y1, 0.0));
}

BoundingBox2d PlanOf(const CQNIMCurve& curve) {
    const CQNIMBoundingBox box = curve.GetBoundingBox();
    return {box.GetLowPt().GetX(), box.GetLowPt().GetY(), box.GetHighPt().GetX(),
            box.GetHighPt().GetY()};
}

std::wstring SpecialtyOf(const std::wstring& path) {
    return path.substr(0, path.find(L'/'));
}

std::unique_ptr<KyCollisionRuleItem> MakeItem(const SceneRule& rule) {
    auto item = std::make_unique<KyCollisionRuleItem>();
    item->SetSpecName(SpecialtyOf(rule.path));
    item->SetAttName(rule.path);
    KyCollisionMode mode;
    mode.SetModeType(static_cast<EnumModeType>(rule.modeType));
    mode.SetTolerance(rule.tolerance);
    item->SetMode(mode);
    if (rule.filter) item->SetFilter(new KyAttrRangeFilter(*rule.filter));
    for (const SceneExclude& exclude : rule.excludes) {
        item->AddExcludeItem(exclude.key, exclude.item);
    }
    return item;
}

std::wstring Escaped(const std::wstring& text) {
    std::wstring escaped;
    for (const wchar_t c : text) {
        if (c == L'<') {
            escaped += L"&lt;";
        } else if (c == L'>') {
            escaped += L"&gt;";
        } else if (c == L'&') {
            escaped += L"&amp;";
        } else {
            escaped += c;
        }
    }
    return escaped;
}

std::wstring ExcludeText(const KyExcludeItem& item) {
    std::wstring text = item.specialty;
    if (item.level >= 1) text += L"/" + item.dalei;
    if (item.level >= 2) text += L"/" + item.xiaolei;
    return text;
}

std::wstring RuleText(const SceneRule& rule) {
    std::wstring text = L"<RuleItem gjtype=\"" + rule.path + L"\" isvalid=\"";
    text += rule.valid ? L"true\">" : L"false\">";
    if (rule.filter) text += L"<Filter type=\"1\">" + Escaped(*rule.filter) + L"</Filter>";
    text += L"<Mode type=\"" + std::to_wstring(rule.modeType) + L"\">" +
            std::to_wstring(rule.tolerance) + L"</Mode><Excludes>";
    for (const SceneExclude& exclude : rule.excludes) {
        text += L"<ExcludeGJ>" + ExcludeText(exclude.item) + L"</ExcludeGJ>";
    }
    return text + L"</Excludes></RuleItem>";
}

std::wstring RuleFileText(const SceneRun& run) {
    std::wstring text = L"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<CollisionRule>";
    for (const SceneRule& rule : run.rules) {
        text += L"<Specialty name=\"" + SpecialtyOf(rule.path) + L"\">" + RuleText(rule) +
                L"</Specialty>";
    }
    return text + L"</CollisionRule>";
}

}  // namespace

SceneHost::SceneHost(const Scene& scene) : FakeDataSource(BuildingOf(scene)), scene_(scene) {}

void SceneHost::GetFloorAxisInfo(int projectId, const std::wstring& floorName,
                                 std::vector<SQNGIAxisItem*>& items,
                                 KYTOOLS::GRAPH::QuadTree<SQNGIAxisItem*>& tree) const {
    const auto found = scene_.axes.find({projectId, floorName});
    if (found == scene_.axes.end()) return;
    BoundingBox2d bounds;
    for (const SceneAxis& axis : found->second) {
        auto item = std::make_unique<SQNGIAxisItem>();
        item->axisName = axis.name;
        item->axisCurve = CurveOf(axis);
        bounds.Add(PlanOf(*item->axisCurve));
        items.push_back(item.release());
    }
    tree = KYTOOLS::GRAPH::QuadTree<SQNGIAxisItem*>(bounds);
    for (SQNGIAxisItem* item : items) {
        tree.Insert(item, PlanOf(*item->axisCurve));
    }
}

std::wstring SceneHost::GetObjXiaoLeiName(int projectId, const std::wstring& floorName,
                                          const std::wstring& guid) const {
    return HostMinorName(projectId, floorName, guid);
}

std::unique_ptr<KyCollisionRuleMgr> MakeRules(const SceneRun& run) {
    auto manager = std::make_unique<KyCollisionRuleMgr>();
    if (run.route == RuleRoute::kXmlText) {
        manager->InitByXmlString(RuleFileText(run));
        return manager;
    }
    auto set = std::make_unique<KyCollisionRule>();
    for (const SceneRule& rule : run.rules) {
        auto item = MakeItem(rule);
        if (set->AddRuleItem(item.get(), rule.valid)) item.release();
    }
    manager->SetRule(set.release(), true);
    return manager;
}

}  // namespace kycb::scenes
