// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/Export.h"
#include "KYCollisionBase/model/SCollisionWithObj.h"
#include "KYCollisionBase/platform/BoundingBox3d.h"
#include "KYCollisionBase/platform/CQNIMShell.h"

#include <cstddef>
#include <map>
#include <memory>
#include <set>
#include <span>
#include <string>
#include <vector>

#include <boost/any.hpp>

namespace Opcode {
class Model;
}
namespace KYCOLLISION::LOGIC {
class IModelDataSource;
}
namespace KYCOLLISION::RESULT {
struct CExistingHole;
}
namespace KYCOLLISION::Rule {
class KyAttrRangeFilter;
}

namespace kycb::model {
class FloorTree;
class NeighbourJoin;
}  // namespace kycb::model

namespace KYCOLLISION::MODEL {

class AttCategoryModelInfo;
class FloorModelInfo;
class WorkSetModelInfo;

/// One building component of the collision model: its identity, its box, the components whose boxes
/// overlap it, its meshes and the clashes found for it.
///
/// A component reaches its floor, project and work set through its category, so it is appended to a
/// floor before anything that needs them. Lengths are millimetres in world coordinates.
///
/// Attributes: each reader below asks the data source afresh, always with the object id; nothing is
/// cached. A null data source or a missing attribute gives false or the empty text, and outputs are
/// written on success only. The readers that are not said to throw read a number from the start of
/// a text, and 0 where there is none.
class KYCB_API ObjectModelInfo {
  public:
    using CQNIMPosition = QNIM::GeometryPrimitiveResource::CQNIMPosition;
    using CQNIMShell = QNIM::GeometryPrimitiveResource::CQNIMShell;
    using IModelDataSource = LOGIC::IModelDataSource;

    /// `objectId` is the host's own value; it is handed back to the data source as it is.
    explicit ObjectModelInfo(const boost::any& objectId);
    /// Frees the meshes.
    virtual ~ObjectModelInfo();
    ObjectModelInfo(const ObjectModelInfo&) = delete;
    ObjectModelInfo& operator=(const ObjectModelInfo&) = delete;

    const boost::any& GetObjectId() const { return objectId_; }

    /// The id under which a component of specialty "Tekla" asks for its meshes; empty at first, and
    /// then the object id serves.
    void SetPartId(const boost::any& partId);
    const boost::any& GetPartId() const { return partId_; }

    /// The component's GUID text: the order within its category, and what lookups and
    /// related-object lists name it by. To be set before the component is appended, in lower case
    /// (lookups by GUID find no other).
    void SetObjGuid(const std::wstring& guid);
    const std::wstring& GetObjGuid() const { return guid_; }
    void SetObjAttname(const std::wstring& name) { name_ = name; }
    const std::wstring& GetObjAttname() const { return name_; }
    void SetObjSyscode(const std::wstring& syscode) { syscode_ = syscode; }
    const std::wstring& GetObjSyscode() const { return syscode_; }

    void SetBelongCategory(AttCategoryModelInfo* category) { category_ = category; }
    /// The category that holds this component, or null; a plain back pointer.
    AttCategoryModelInfo* GetBelongCategoryModel() const { return category_; }

    /// The box decides alone who can be a neighbour: a host that wants clearances found makes it as
    /// large as the body grown by the largest offset that its kind can be given. To be set before
    /// the component is appended, because the floor's box grows then.
    void SetBoundingBox(const KYTOOLS::GRAPH::BoundingBox3d& box);
    KYTOOLS::GRAPH::BoundingBox3d GetBoundingBox() const { return box_; }
    KYTOOLS::GRAPH::BoundingBox2d GetBoundingBox2d() const { return box_.GetBoundingBox2d(); }

    /// The id of the project above, or -1 when any link is missing.
    int GetProjId() const;
    /// The name of the floor above, or the empty text.
    std::wstring GetFloorName() const;
    /// The work set above, or null.
    WorkSetModelInfo* GetBelongWorkset() const;

    /// Lists the neighbours anew: what the work set finds for the own box, in that order, without
    /// this component and without others of the same GUID, project id and floor name. Without a
    /// work set above, the list is left empty.
    void AnalyseBoxRelated();
    /// The neighbours listed last. The view holds until the neighbours of this component or of its
    /// floor are listed anew, and as long as both live.
    std::span<ObjectModelInfo* const> GetBoxRelatedObjs() const { return boxRelatedObjs_; }

    void AppendCollisionObj(const SCollisionWithObj& clash);
    const std::vector<SCollisionWithObj>& GetCollisionObjs() const { return collisionObjs_; }
    void ClearCollisionObjs();
    /// Whether a clash with `other` is recorded; `point` receives that of the first one.
    bool IsHadCollisionWith(ObjectModelInfo* other, CQNIMPosition& point) const;
    /// Takes the first recorded clash with `other` away, keeping the order of the rest.
    void RemoveCollisionObj(ObjectModelInfo* other);

    /// The mesh for a body offset (mm, positive grows), from the cache or from the data source;
    /// null without a source or when there is no such body, which is not remembered.
    /// Owned by this component.
    Opcode::Model* GetOpcodeModel(IModelDataSource* source, int bodyOffset);
    const std::map<int, Opcode::Model*>& GetOpcodeModels() const { return opcodeModels_; }
    /// Frees every mesh: triangle and vertex arrays, mesh interface and model.
    void ReleaseOpcodeModel();
    /// Copies the mesh for `bodyOffset` into `shell`, in double precision. False, with the
    /// shell left alone, without a mesh or an array of it. Of a mesh with exactly 10 triangles only
    /// the first 8 are copied.
    bool GetCollisionOffsetBody(IModelDataSource* source, int bodyOffset, CQNIMShell& shell);

    /// Tests this component against its neighbours under the rules and records each clash on both.
    /// `checkedCount` grows by one before anything else. A clash that the other component's check
    /// recorded already is passed over, so that it is recorded once.
    void CollisionCheck(IModelDataSource* source, int& checkedCount);

    /// Whether this component ranks before `other`, a component of the same kind: by the length or
    /// the section of the support where both have one, otherwise by GUID (equal names) or by name,
    /// these compared as bytes of the code page (see CodePage). A component that is less than
    /// 0.1 mm smaller still ranks first. False for a null `other`.
    bool IsPriorityHigher(IModelDataSource* source, const ObjectModelInfo* other) const;

    /// The height text of a result, in rounded millimetres, by the attribute "heighttype":
    /// "1" is "oneheight"; "3" too, but for a tray, trunking or duct that also has "sectheight" and
    /// "bwthick" it is the underside, one height less half the section and the insulation; "2", "4"
    /// (sloped) and "5" (engineering) are "underheight~topheight" with their mark. Empty for any
    /// other or no type. A height that is absent is empty; one beyond 32 bits is written as the
    /// nearest that fits.
    /// @throws std::invalid_argument, std::out_of_range for a height that is not a number.
    std::wstring GetObjAttHeight(const IModelDataSource* source) const;

    /// The nominal diameter of a pipe (mm), from "pipegczj".
    bool GetPipeGCZJ(IModelDataSource* source, double& value) const;

    /// The end points of a pipe or duct support, from "drawstartendpt" ("x,y,z,x,y,z"); false
    /// unless there are exactly six numbers.
    bool GetPipeDuctSupportSEPt(IModelDataSource* source, CQNIMPosition& start,
                                CQNIMPosition& end) const;

    /// The section of a support: width and height from "sectwidthheight" ("w*h"), or, only where
    /// that is absent, the radius from "sectradius". What is not read keeps its value.
    bool GetPipeDuctSupportSect(IModelDataSource* source, double& width, double& height,
                                double& radius) const;

    /// The GUIDs of components and fittings that belong with this one, from "relatedobjs" and
    /// "relatedfits", separated by ",". A list whose attribute is absent is left as it was.
    void GetRelatedObjs(const IModelDataSource* source, std::vector<std::wstring>& relatedObjs,
                        std::vector<std::wstring>& relatedFits) const;

    /// The text of one attribute.
    bool GetAttValue(const IModelDataSource* source, const std::wstring& name,
                     std::wstring& value) const;

    /// The record of this component as an existing opening; empty when its category is none of an
    /// opening, or when one of the four attributes below is missing. "holesize" is optional: one
    /// number, or width and height separated by ",".
    /// @throws std::invalid_argument, std::out_of_range for a size that is not an integer.
    std::shared_ptr<RESULT::CExistingHole> GetExistingHole(const IModelDataSource* source) const;

    /// The host's shape number, "holeshape"; -1, and false, when it is missing or no integer.
    bool GetExistingHoleShape(const IModelDataSource* source, int& shape) const;
    /// The texts "holecenter", "holeelev" and "parentid" as they are.
    bool GetExistingHoleCenter(const IModelDataSource* source, std::wstring& center) const;
    bool GetExistingHoleElevation(const IModelDataSource* source, std::wstring& elevation) const;
    bool GetExistingHoleParentId(const IModelDataSource* source, std::wstring& parentId) const;

  private:
    friend class FloorModelInfo;
    friend class WorkSetModelInfo;
    friend class kycb::model::FloorTree;
    friend class kycb::model::NeighbourJoin;

    struct RelatedGuids;

    std::map<std::wstring, std::wstring> ReadAttributes(const IModelDataSource* source) const;
    bool IsSameComponent(const ObjectModelInfo& other) const;
    void NoteChange();
    void TakeNeighboursFrom(std::vector<ObjectModelInfo*>& candidates);
    // Borrows the list.
    void ShowNeighbours(std::span<ObjectModelInfo*> list) {
        boxRelatedObjs_ = list;
        ownRoom_.reset();
    }
    bool IsFilteredOut(IModelDataSource* source, const Rule::KyAttrRangeFilter* filter) const;
    bool IsToBeTestedWith(IModelDataSource* source, const RelatedGuids& related,
                          ObjectModelInfo* other, const Rule::KyAttrRangeFilter* filter) const;
    void TestWith(IModelDataSource* source, ObjectModelInfo* other);
    void ForgetComponentsOf(const std::set<const AttCategoryModelInfo*>& leaving);

    boost::any objectId_;
    boost::any partId_;
    std::wstring guid_;
    std::wstring name_;
    std::wstring syscode_;
    AttCategoryModelInfo* category_ = nullptr;
    KYTOOLS::GRAPH::BoundingBox3d box_;
    std::size_t guidHash_;  // tells most components apart without reading their GUIDs
    std::span<ObjectModelInfo*> boxRelatedObjs_;   // in the floor's room for lists, or in:
    std::unique_ptr<ObjectModelInfo*[]> ownRoom_;  // for a list that was made alone
    std::vector<SCollisionWithObj> collisionObjs_;
    std::map<int, Opcode::Model*> opcodeModels_;
};

}  // namespace KYCOLLISION::MODEL
