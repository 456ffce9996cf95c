// SPDX-License-Identifier: Apache-2.0
// Feeds a work set of IFC files to the collision library.
#pragma once

#include "KYCollisionBase/logic/IModelDataSource.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "IfcWorkset.h"

namespace ifchost {

/// The id by which the library hands components back: their index in IfcWorkset::Components().
using ComponentId = std::uint32_t;

/// What is wrong with a component's body. Each is reported once per component.
enum class BodyDefect : std::uint8_t {
    Open,      ///< the surface has gaps; open parts are neither grown nor shrunk
    Vanished,  ///< shrunk by the tolerance, nothing is left of it
    NoVolume,  ///< not one triangle with an area; the component cannot clash
};

/// One remark about a component's body.
struct BodyNote {
    ComponentId component = 0;
    BodyDefect defect = BodyDefect::Open;
    std::string text;  ///< details in words
};

/// How the data source talks to its host and how much it may keep.
struct DataSourceOptions {
    /// Bytes of repaired bodies kept for the next request of the same component or shape.
    std::size_t bodyCacheBytes = std::size_t{256} << 20;
    std::function<void(const std::wstring& text)> showProgress;           ///< may be empty
    std::function<void(int projectId, ComponentId component)> highlight;  ///< may be empty
};

/// The data source of the collision library over IFC files.
///
/// Frame: everything geometric that the library gets (boxes, meshes, grid axes) is relative to
/// IfcWorkset::Origin(); the host adds the origin to clash points. Texts that the library only
/// passes on (heights, hole centres) are world coordinates and elevations.
///
/// Boxes: the neighbour search sees nothing but the boxes given here. The box of a component whose
/// kind has a clearance therefore holds the body grown by the largest offset that the kind can be
/// given, and every box is 0.6 mm higher at each end than its body, because the search takes 1.0
/// off each end of the box it asks with.
///
/// Openings in walls and slabs are components without a body: they are listed and never clash.
///
/// Threads: one at a time, as the library does it.
class IfcDataSource final : public KYCOLLISION::LOGIC::IModelDataSource {
  public:
    explicit IfcDataSource(std::shared_ptr<const IfcWorkset> workset,
                           DataSourceOptions options = {});
    ~IfcDataSource() override;
    IfcDataSource(const IfcDataSource&) = delete;
    IfcDataSource& operator=(const IfcDataSource&) = delete;

    /// A new tree of the whole work set; the caller owns it. Never null.
    KYCOLLISION::MODEL::ICollisionModel* CreateCollisionModel() override;

    /// The mesh of a component; null for unknown ids, openings, bodies without volume, and bodies
    /// that shrink to nothing.
    Opcode::Model* CreateOpcodeModel(int projectId, const boost::any& objectId,
                                     int bodyOffset) override;

    /// False, and nothing filled, for an unknown id. docs/ifc-host.md says where each comes from.
    bool GetObjAttributes(int projectId, const boost::any& objectId,
                          std::map<std::wstring, std::wstring>& attributes) const override;

    /// The grid axes that serve the floor, at height 0: those of its storey; else those of the
    /// file that belong to no storey; else those of the nearest storey that has any; and for files
    /// without a grid the same of the first file that has one.
    void GetFloorAxisInfo(
        int projectId, const std::wstring& floorName,
        std::vector<KYCOLLISION::LOGIC::SQNGIAxisItem*>& items,
        KYTOOLS::GRAPH::QuadTree<KYCOLLISION::LOGIC::SQNGIAxisItem*>& tree) const override;

    void ShowProgress(const std::wstring& text) override;
    /// "name (IfcClass, GlobalId)"; empty for an unknown id.
    std::wstring GetObjDisplayName(int projectId, const boost::any& objectId) const override;
    void HighlightObj(int projectId, const boost::any& objectId) override;
    /// The minor category of the component; empty when there is none with that GUID.
    std::wstring GetObjXiaoLeiName(int projectId, const std::wstring& floorName,
                                   const std::wstring& guid) const override;

    const IfcWorkset& Workset() const { return *workset_; }
    /// Remarks on the bodies asked for so far, in the order in which they were met.
    const std::vector<BodyNote>& BodyNotes() const;

  private:
    struct Impl;
    std::shared_ptr<const IfcWorkset> workset_;
    std::unique_ptr<Impl> impl_;
};

}  // namespace ifchost
