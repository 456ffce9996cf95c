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
namespace kycb {
struct ResultItemAccess;
}

namespace KYCOLLISION::RESULT {

/// One clash: the two components, where they meet, and how the user handles it. A plain value.
///
/// Component A is the main one of the pair. A check fills everything but the state, the remark, the
/// viewport and the picture, which belong to the user.
///
/// Errors: GetClashPoint and what uses it (GetClashQNIMPoint, IsSameResult_OtherInfo,
/// IsSameResult_AllInfo, ReCatulateAxisInfo) throw std::invalid_argument ("invalid stod argument")
/// or std::out_of_range ("stod argument out of range") for a malformed position.
///
/// Threads: an item is used by one thread at a time, different items by any number.
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

    /// The clash point as text: "x,y,z" in mm.
    std::wstring GetPosition() const;

    /// The two sides' body offsets (mm), for a Tekla component its major category, joined by ",".
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

    /// The position among the grid axes, for example "3(+1250mm) / B(-400mm)".
    std::wstring GetAxisPos() const;

    std::wstring GetSpecialtyA() const;
    std::wstring GetCategoryA() const;
    std::wstring GetSubcategoryA() const;
    std::wstring GetNameA() const;

    /// The system code; for components of a specialty without systems (civil works, reinforcement,
    /// Revit, Tekla) the specialty stands in for it, whatever the summary holds.
    std::wstring GetSysCodeA() const;

    std::wstring GetSpecialtyB() const;
    std::wstring GetCategoryB() const;
    std::wstring GetSubcategoryB() const;
    std::wstring GetNameB() const;

    /// The same as GetSysCodeA for component B.
    std::wstring GetSysCodeB() const;

    /// (x, y, z) of the position text: three parts are taken as they are, two mean z = 0, any other
    /// number of parts gives (0, 0, 0). Each "," parts, also one at the end of the text. A part may
    /// begin with blanks, and what follows its number is ignored.
    std::tuple<double, double, double> GetClashPoint() const;

    /// GetClashPoint as a point (mm).
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

    /// Gives the item a new unique id of 32 hex digits, the third group of four in lower case and
    /// the others in upper case. The argument is ignored.
    void InitResultId(std::wstring unused);

    /// Whether the two components are the same, A with A and B with B; false for null, as in the
    /// other comparisons.
    bool IsSameResult_MainInfo(const KyResultItem* other) const;

    /// Whether state, remark, viewport and picture id are the same.
    bool IsSameResult_CanBeEditInfo(const KyResultItem* other) const;

    /// Whether the clash model is the same and the clash points differ by less than 0.1 mm in each
    /// coordinate. Coordinates whose texts differ by 0.1 are apart, also when the difference of the
    /// doubles nearest to them rounds below it.
    bool IsSameResult_OtherInfo(const KyResultItem* other) const;

    /// All three, in this order, up to the first that fails.
    bool IsSameResult_AllInfo(const KyResultItem* other) const;

    /// Takes category, name, system code and height of both components afresh from the model. A
    /// side without a positive project id, a floor and a GUID, or whose component is not in the
    /// model, keeps its values; a null argument changes nothing. What a malformed height attribute
    /// throws passes through.
    void InitResultItemAttHeightInfo(const LOGIC::IModelDataSource* source,
                                     const MODEL::ICollisionModel* model);

    /// Places the clash point, seen from above, among the axes of its floor.
    void ReCatulateAxisInfo(const AxisTree& tree);

    /// Whether `a` sorts before `b`; false when either is null.
    ///
    /// Items are grouped by the kind and name of component A in priority order, within these by B,
    /// and ties fall back to the GUID of A. Kinds of equal priority and equal names compare as
    /// bytes of the code page (see CodePage). Texts that only characters outside the code page tell
    /// apart can make this no strict weak ordering, so it is not for std::sort.
    static bool PriorityCompareHigh(KyResultItem* a, KyResultItem* b);

    /// `text` with `offset` added to every whole number in it; a directly preceding minus is the
    /// number's sign, and only 0 to 9 are digits. A sum beyond 32 bits is written in full. Throws
    /// std::out_of_range ("stol argument out of range") for a number beyond 32 bits.
    static std::wstring HeightOffset(const std::wstring& text, int offset);

    /// What a host puts between texts of a result for display: " / ".
    static const std::wstring s_strSeparator;

  private:
    friend struct kycb::ResultItemAccess;

    std::wstring CaculateAxisPos(const CQNIMPosition& point, const AxisTree& tree);

    /// -1, 0 or 1 as `a` ranks before, with or after `b`.
    static int PriorityCompareHigh_Att(const SObjAttInfo& a, const SObjAttInfo& b);

    /// The text of a new GUID in a buffer that the next call of the same thread overwrites. When no
    /// GUID can be had, the buffer keeps the one before.
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
