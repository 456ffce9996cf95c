// SPDX-License-Identifier: Apache-2.0
// A scene, its rules and a recording host, brought together without the driver.
#pragma once

#include "KYCollisionBase/model/ObjectModelInfo.h"
#include "KYCollisionBase/model/WorkSetModelInfo.h"
#include "KYCollisionBase/rule/KyCollisionRuleMgr.h"

#include <memory>
#include <string>
#include <vector>

#include "support/FakeDataSource.h"
#include "support/RuleBuilder.h"
#include "support/SceneBuilder.h"

namespace kycb::test {

/// The model of a scene with neighbour lists made and rules bound, ready for a check.
struct CheckedScene {
    FakeDataSource source;
    std::unique_ptr<KYCOLLISION::Rule::KyCollisionRuleMgr> rules;
    std::unique_ptr<KYCOLLISION::MODEL::WorkSetModelInfo> model;
    int checkedCount = 0;

    CheckedScene(const SceneBuilder& scene, const RuleBuilder& ruleSpecs);
    CheckedScene(const SceneBuilder& scene, const std::vector<AttCategory>& hardKinds);

    /// Checks one component against its neighbours.
    void Check(const std::wstring& guid);
    /// Checks floor 1F of project 1.
    void CheckFloor();

    KYCOLLISION::MODEL::ObjectModelInfo& Object(const std::wstring& guid) const;
    /// The GUIDs of the components that a component clashes with, in the order of recording.
    std::vector<std::wstring> ClashesOf(const std::wstring& guid) const;

  private:
    void Bind(const SceneBuilder& scene);
};

}  // namespace kycb::test
