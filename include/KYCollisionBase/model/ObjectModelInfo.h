// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/Export.h"
#include "KYCollisionBase/model/SCollisionWithObj.h"
#include "KYCollisionBase/platform/BoundingBox3d.h"
#include "KYCollisionBase/platform/CQNIMShell.h"

#include <map>
#include <memory>
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

namespace KYCOLLISION::MODEL {

class AttCategoryModelInfo;
class WorkSetModelInfo;

/// One building component of the collision model.
class KYCB_API ObjectModelInfo {
  public:
    using CQNIMPosition = QNIM::GeometryPrimitiveResource::CQNIMPosition;
    using CQNIMShell = QNIM::GeometryPrimitiveResource::CQNIMShell;
    using IModelDataSource = LOGIC::IModelDataSource;

    explicit ObjectModelInfo(const boost::any& objectId);
    virtual ~ObjectModelInfo();
    ObjectModelInfo(const ObjectModelInfo&) = delete;
    ObjectModelInfo& operator=(const ObjectModelInfo&) = delete;

    const boost::any& GetObjectId() const;
    void SetPartId(const boost::any& partId);
    const boost::any& GetPartId() const;
    void SetObjGuid(const std::wstring& guid);
    std::wstring GetObjGuid() const;
    void SetObjAttname(const std::wstring& name);
    std::wstring GetObjAttname() const;
    void SetObjSyscode(const std::wstring& syscode);
    std::wstring GetObjSyscode() const;
    void SetBelongCategory(AttCategoryModelInfo* category);
    AttCategoryModelInfo* GetBelongCategoryModel() const;
    void SetBoundingBox(const KYTOOLS::GRAPH::BoundingBox3d& box);
    KYTOOLS::GRAPH::BoundingBox3d GetBoundingBox() const;
    KYTOOLS::GRAPH::BoundingBox2d GetBoundingBox2d() const;

    int GetProjId() const;
    std::wstring GetFloorName() const;
    WorkSetModelInfo* GetBelongWorkset() const;

    void AnalyseBoxRelated();
    const std::vector<ObjectModelInfo*>& GetBoxRelatedObjs() const;

    void AppendCollisionObj(const SCollisionWithObj& clash);
    const std::vector<SCollisionWithObj>& GetCollisionObjs() const;
    void ClearCollisionObjs();
    bool IsHadCollisionWith(ObjectModelInfo* other, CQNIMPosition& point) const;
    void RemoveCollisionObj(ObjectModelInfo* other);

    Opcode::Model* GetOpcodeModel(IModelDataSource* source, int bodyOffset);
    const std::map<int, Opcode::Model*>& GetOpcodeModels() const;
    void ReleaseOpcodeModel();
    bool GetCollisionOffsetBody(IModelDataSource* source, int bodyOffset, CQNIMShell& shell);

    void CollisionCheck(IModelDataSource* source, int& checkedCount);
    bool IsPriorityHigher(IModelDataSource* source, const ObjectModelInfo* other) const;

    std::wstring GetObjAttHeight(const IModelDataSource* source) const;
    bool GetPipeGCZJ(IModelDataSource* source, double& value) const;
    bool GetPipeDuctSupportSEPt(IModelDataSource* source, CQNIMPosition& start,
                                CQNIMPosition& end) const;
    bool GetPipeDuctSupportSect(IModelDataSource* source, double& width, double& height,
                                double& radius) const;
    void GetRelatedObjs(const IModelDataSource* source, std::vector<std::wstring>& relatedObjs,
                        std::vector<std::wstring>& relatedFits) const;
    bool GetAttValue(const IModelDataSource* source, const std::wstring& name,
                     std::wstring& value) const;

    std::shared_ptr<RESULT::CExistingHole> GetExistingHole(const IModelDataSource* source) const;
    bool GetExistingHoleShape(const IModelDataSource* source, int& shape) const;
    bool GetExistingHoleCenter(const IModelDataSource* source, std::wstring& center) const;
    bool GetExistingHoleElevation(const IModelDataSource* source, std::wstring& elevation) const;
    bool GetExistingHoleParentId(const IModelDataSource* source, std::wstring& parentId) const;

  private:
    boost::any objectId_;
    boost::any partId_;
    std::wstring guid_;
    std::wstring name_;
    std::wstring syscode_;
    AttCategoryModelInfo* category_ = nullptr;
    KYTOOLS::GRAPH::BoundingBox3d box_;
    std::vector<ObjectModelInfo*> boxRelatedObjs_;
    std::vector<SCollisionWithObj> collisionObjs_;
    std::map<int, Opcode::Model*> opcodeModels_;
};

}  // namespace KYCOLLISION::MODEL
