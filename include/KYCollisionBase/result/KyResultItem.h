// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/Export.h"
#include "KYCollisionBase/platform/CQNIMPosition.h"
#include "KYCollisionBase/result/SObjAttInfo.h"

#include <cstdint>
#include <string>
#include <tuple>

namespace KYTOOLS::GRAPH {
template <class T>
class QuadTree;
}
namespace KYCOLLISION::LOGIC {
class IModelDataSource;
struct SQNGIAxisItem;
}  // namespace KYCOLLISION::LOGIC
namespace KYCOLLISION::MODEL {
class ICollisionModel;
}

namespace KYCOLLISION::RESULT {

/// One clash: the two components, where they meet, and how the user handles it. A plain value.
class KYCB_API KyResultItem {
  public:
    using AxisTree = KYTOOLS::GRAPH::QuadTree<LOGIC::SQNGIAxisItem*>;
    using CQNIMPosition = QNIM::GeometryPrimitiveResource::CQNIMPosition;

    std::wstring GetResultId() const;
    int GetProjectA() const;
    std::wstring GetFloorA() const;
    std::wstring GetObjGuidA() const;
    int GetProjectB() const;
    std::wstring GetFloorB() const;
    std::wstring GetObjGuidB() const;
    std::wstring GetPosition() const;
    std::wstring GetClashModel() const;
    int GetDisposeState() const;
    std::wstring GetRemark() const;
    std::wstring GetViewport() const;
    std::wstring GetPicuuid() const;
    std::wstring GetPicmd5() const;
    std::int64_t GetPicsize() const;
    const SObjAttInfo& GetAttInfoA() const;
    std::wstring GetHeightA() const;
    const SObjAttInfo& GetAttInfoB() const;
    std::wstring GetHeightB() const;
    std::wstring GetAxisPos() const;
    std::wstring GetSpecialtyA() const;
    std::wstring GetCategoryA() const;
    std::wstring GetSubcategoryA() const;
    std::wstring GetNameA() const;
    std::wstring GetSysCodeA() const;
    std::wstring GetSpecialtyB() const;
    std::wstring GetCategoryB() const;
    std::wstring GetSubcategoryB() const;
    std::wstring GetNameB() const;
    std::wstring GetSysCodeB() const;
    std::tuple<double, double, double> GetClashPoint() const;
    CQNIMPosition GetClashQNIMPoint() const;

    void SetResultId(std::wstring id);
    void SetClashModel(std::wstring model);
    void SetDisposeState(int state);
    void SetRemark(std::wstring remark);
    void SetHeightA(std::wstring height);
    void SetHeightB(std::wstring height);
    void SetViewport(std::wstring viewport);
    void SetPicture(std::wstring uuid, std::wstring md5, std::int64_t size);
    void SetBaseInfo(int projectA, std::wstring floorA, std::wstring guidA, int projectB,
                     std::wstring floorB, std::wstring guidB, std::wstring position);
    void SetObjAttInfo_Main(const SObjAttInfo& info);
    void SetObjAttInfo_Second(const SObjAttInfo& info);
    void InitResultId(std::wstring unused);

    bool IsSameResult_MainInfo(const KyResultItem* other) const;
    bool IsSameResult_CanBeEditInfo(const KyResultItem* other) const;
    bool IsSameResult_OtherInfo(const KyResultItem* other) const;
    bool IsSameResult_AllInfo(const KyResultItem* other) const;

    void InitResultItemAttHeightInfo(const LOGIC::IModelDataSource* source,
                                     const MODEL::ICollisionModel* model);
    void ReCatulateAxisInfo(const AxisTree& tree);

    static bool PriorityCompareHigh(KyResultItem* a, KyResultItem* b);
    static std::wstring HeightOffset(const std::wstring& text, int offset);

    static const std::wstring s_strSeparator;

  private:
    std::wstring CaculateAxisPos(const CQNIMPosition& point, const AxisTree& tree);
    static int PriorityCompareHigh_Att(const SObjAttInfo& a, const SObjAttInfo& b);
    static const wchar_t* CreateGuid();

    std::wstring ResultId;
    int ProjectA = -1;
    std::wstring FloorA;
    std::wstring ObjGuidA;
    int ProjectB = -1;
    std::wstring FloorB;
    std::wstring ObjGuidB;
    std::wstring Position = L"-1.00,-1.00,-1.00";
    std::wstring ClashModel;
    int DisposeState = 0;
    std::wstring Remark;
    std::wstring Viewport;
    std::wstring Picuuid;
    std::wstring Picmd5;
    std::int64_t Picsize = 0;
    SObjAttInfo AttInfoA;
    std::wstring HeightA;
    SObjAttInfo AttInfoB;
    std::wstring HeightB;
    std::wstring AxisPos;
};

}  // namespace KYCOLLISION::RESULT
