// SPDX-License-Identifier: Apache-2.0
// An office building of any size, the same on every machine, and a host around it.
#pragma once

#include "KYCollisionBase/logic/IModelDataSource.h"
#include "KYCollisionBase/logic/SCollisionFloor.h"
#include "KYCollisionBase/platform/BoundingBox3d.h"

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace kycb::bench {

/// Floors of 5000 components at 2.5 a square metre: slabs, columns, walls, ducts, pipes, trays and
/// fittings, placed at random, so that far more of them clash than in a designed building.
class SyntheticBuilding {
  public:
    using BoundingBox3d = KYTOOLS::GRAPH::BoundingBox3d;

    enum Kind : std::uint8_t { kSlab, kColumn, kWall, kDuct, kPipe, kTray, kFitting, kKinds };

    struct Component {
        BoundingBox3d box;  ///< world coordinates (mm)
        Kind kind;
        std::uint32_t floor;
    };

    static constexpr std::size_t kComponentsPerFloor = 5000;

    explicit SyntheticBuilding(std::size_t components);

    const std::vector<Component>& Components() const { return components_; }
    std::uint32_t FloorCount() const { return floors_; }
    static std::wstring FloorName(std::uint32_t floor);
    /// Every floor as a user picks it.
    std::vector<SCollisionFloor> Floors() const;

  private:
    using Length = double;

    BoundingBox3d NextBox(Kind kind, Length bottom);
    BoundingBox3d NextRun(Length bottom, Length width, Length depth);
    double Random(double low, double high);

    std::mt19937 random_{42};
    std::uint32_t floors_;
    Length width_;
    Length depth_;
    std::vector<Component> components_;
};

/// Serves the building from memory: box meshes for what is straight and square, prisms of 16 sides
/// for pipes, bent tubes of about 200 triangles for fittings; some ten attributes a component.
class BuildingSource : public KYCOLLISION::LOGIC::IModelDataSource {
  public:
    using ICollisionModel = KYCOLLISION::MODEL::ICollisionModel;
    using SQNGIAxisItem = KYCOLLISION::LOGIC::SQNGIAxisItem;

    /// Borrows the building.
    explicit BuildingSource(const SyntheticBuilding& building) : building_(building) {}

    /// The time spent in the two operations that a check calls (s).
    double SecondsInCheck() const { return seconds_; }

    ICollisionModel* CreateCollisionModel() override;
    Opcode::Model* CreateOpcodeModel(int projectId, const boost::any& objectId,
                                     int bodyOffset) override;
    bool GetObjAttributes(int projectId, const boost::any& objectId,
                          std::map<std::wstring, std::wstring>& attributes) const override;
    void GetFloorAxisInfo(int projectId, const std::wstring& floorName,
                          std::vector<SQNGIAxisItem*>& items,
                          KYTOOLS::GRAPH::QuadTree<SQNGIAxisItem*>& tree) const override;
    void ShowProgress(const std::wstring& text) override;
    std::wstring GetObjDisplayName(int projectId, const boost::any& objectId) const override;
    void HighlightObj(int projectId, const boost::any& objectId) override;
    std::wstring GetObjXiaoLeiName(int projectId, const std::wstring& floorName,
                                   const std::wstring& guid) const override;

    /// Rules for all kinds: bodies may overlap by 5 mm on each side.
    static std::wstring RuleText();

  private:
    std::wstring NextGuid();

    const SyntheticBuilding& building_;
    std::mt19937 random_{7};
    mutable double seconds_ = 0.0;
};

}  // namespace kycb::bench
