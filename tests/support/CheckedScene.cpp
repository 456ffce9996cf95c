// SPDX-License-Identifier: Apache-2.0
#include "support/CheckedScene.h"

#include <stdexcept>

namespace kycb::test {

using namespace KYCOLLISION::MODEL;

CheckedScene::CheckedScene(const SceneBuilder& scene, const RuleBuilder& ruleSpecs)
    : source(scene), rules(ruleSpecs.Build()) {
    Bind(scene);
}

CheckedScene::CheckedScene(const SceneBuilder& scene, const std::vector<AttCategory>& hardKinds)
    : source(scene), rules(HardRulesFor(hardKinds)) {
    Bind(scene);
}

void CheckedScene::Bind(const SceneBuilder& scene) {
    model = scene.BuildModel();
    model->AnalyseBoxRelated();
    model->ResetModelByCollisionRule(rules.get());
}

void CheckedScene::Check(const std::wstring& guid) {
    Object(guid).CollisionCheck(&source, checkedCount);
}

void CheckedScene::CheckFloor() {
    model->CollisionCheck(&source, {1, L"1F"}, checkedCount);
}

ObjectModelInfo& CheckedScene::Object(const std::wstring& guid) const {
    ObjectModelInfo* obj = ObjectOf(*model, guid);
    if (!obj) throw std::logic_error("the scene has no such component");
    return *obj;
}

std::vector<std::wstring> CheckedScene::ClashesOf(const std::wstring& guid) const {
    std::vector<std::wstring> others;
    for (const SCollisionWithObj& clash : Object(guid).GetCollisionObjs()) {
        others.push_back(clash.other->GetObjGuid());
    }
    return others;
}

}  // namespace kycb::test
