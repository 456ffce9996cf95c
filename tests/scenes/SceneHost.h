// SPDX-License-Identifier: Apache-2.0
// A scene as a host shows it to the library.
#pragma once

#include "KYCollisionBase/rule/KyCollisionRuleMgr.h"

#include <memory>

#include "scenes/Scene.h"
#include "support/FakeDataSource.h"

namespace kycb::scenes {

/// Answers from a scene, with axes of every kind on each floor of its own, and names that tell what
/// was asked for.
class SceneHost : public test::FakeDataSource {
  public:
    /// The scene must outlive the host.
    explicit SceneHost(const Scene& scene);

    void GetFloorAxisInfo(int projectId, const std::wstring& floorName,
                          std::vector<SQNGIAxisItem*>& items,
                          KYTOOLS::GRAPH::QuadTree<SQNGIAxisItem*>& tree) const override;
    std::wstring GetObjXiaoLeiName(int projectId, const std::wstring& floorName,
                                   const std::wstring& guid) const override;

  private:
    const Scene& scene_;
};

/// The rule set of a run on the route that it takes.
std::unique_ptr<KYCOLLISION::Rule::KyCollisionRuleMgr> MakeRules(const SceneRun& run);

}  // namespace kycb::scenes
