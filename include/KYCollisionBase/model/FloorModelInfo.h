// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/Export.h"
#include "KYCollisionBase/platform/BoundingBox3d.h"

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace KYTOOLS::GRAPH {
template <class T>
class QuadTree;
}
namespace KYCOLLISION::LOGIC {
class IModelDataSource;
struct SQNGIAxisItem;
}  // namespace KYCOLLISION::LOGIC
namespace KYCOLLISION::Rule {
class KyCollisionRuleMgr;
}
namespace KYCOLLISION::RESULT {
class KyResultItem;
struct CExistingHole;
}  // namespace KYCOLLISION::RESULT
struct SObjAttInfo;
namespace kycb::model {
class FloorTree;
}  // namespace kycb::model

namespace KYCOLLISION::MODEL {

class AttCategory;
class AttCategoryModelInfo;
class ObjectModelInfo;
class ProjectModelInfo;

/// One floor of a project: its components by category, with a quad tree for neighbour search.
///
/// Every walk goes through the categories in ascending path order and through the components of a
/// category in ascending GUID order (equal GUIDs in the order in which they were appended).
class KYCB_API FloorModelInfo {
  public:
    explicit FloorModelInfo(std::wstring name);
    virtual ~FloorModelInfo();
    FloorModelInfo(const FloorModelInfo&) = delete;
    FloorModelInfo& operator=(const FloorModelInfo&) = delete;

    std::wstring GetFloorName() const { return name_; }

    /// The project that holds this floor, or null; a plain back pointer.
    ProjectModelInfo* GetBelongProject() const { return project_; }
    void SetBelongProject(ProjectModelInfo* project) { project_ = project; }

    /// The project's id, or -1 without a project.
    int GetProjId() const;

    /// The floor's bottom elevation (mm); 0 until set.
    void setUnder(double under) { under_ = under; }
    double getUnder() const { return under_; }

    /// Stores the floor's top elevation (mm), not its height: getTop returns the value unchanged
    /// and never adds the bottom. 0 until set.
    void setHeight(double top) { top_ = top; }
    double getTop() const { return top_; }

    /// Files a component under its category path, opening the category when it is the first, and
    /// takes it over; a component is appended once only. All components under a path are of the
    /// category that opened it, also where their own minor category differs.
    ///
    /// Null does nothing. A component without a path (no specialty or no major category) is not
    /// appended: it stays the caller's, and its GetBelongCategoryModel stays null.
    void AppendObject(std::wstring spec, std::wstring dalei, std::wstring xiaolei,
                      ObjectModelInfo* obj);

    /// Indexes the components that the floor holds now, replacing an earlier index. Components
    /// that are appended later are not found as neighbours until this is called again.
    void BuildQuadTree();

    /// All categories by path.
    const std::map<std::wstring, AttCategoryModelInfo*>& GetCategories() const {
        return categories_;
    }

    /// The smallest box around every component that was ever appended; null at first.
    const KYTOOLS::GRAPH::BoundingBox3d& GetFloorBox() const { return box_; }

    /// Deletes all components and the index; components of other floors forget those of this one.
    void ReleaseModel();

    /// Appends the components whose box meets `box` in plan (touching counts) and whose vertical
    /// range overlaps that of `box` narrowed by 1 mm at each end. A range narrowed past nothing is
    /// compared as it stands. Nothing is found when `box` misses the floor box or without an index.
    /// The order depends only on the boxes and the walk order of the floor.
    void QueryEntity(const KYTOOLS::GRAPH::BoundingBox3d& box,
                     std::vector<ObjectModelInfo*>& found);

    /// The first component whose GUID is `guid` in lower case (ASCII letters only), or null. A
    /// component stored under a GUID with upper-case letters is therefore never found.
    ObjectModelInfo* GetObjectModelInfo(std::wstring guid) const;

    void AnalyseBoxRelated();

    /// Checks the components of every category that has a rule item. Reads the stop request after
    /// each component and returns at once when it is set.
    void CollisionCheck(LOGIC::IModelDataSource* source, int& checkedCount);

    int GetAllObjectNum();
    void ClearCollisionResultData();
    void ResetModelByCollisionRule(Rule::KyCollisionRuleMgr* rules);

    /// Turns the recorded clashes into result items, appended in ascending order of
    /// "GUID of A & GUID of B"; the caller owns them. Each pair is taken out of its second
    /// component's records, so the operation is called once per check.
    ///
    /// Component A is the one from a Tekla model, of two such the one of the lesser name, then
    /// GUID; without Tekla that of the smaller priority number, then of the lesser category path,
    /// then the one that ObjectModelInfo::IsPriorityHigher names. Texts compare as the code page
    /// shows them (see CodePage). Of several clashes between the same two GUIDs one becomes a
    /// result: where Tekla is involved that of the smaller priority sum, then that nearer the
    /// origin, then the first; else the last.
    ///
    /// Without a data source the results have no heights, no axis positions and no host's names.
    ///
    /// When the data source throws, or a height text is not a number (std::invalid_argument,
    /// std::out_of_range), nothing is appended and nothing leaks; pairs that were already taken out
    /// stay so.
    void GetFloorCollisionResult(LOGIC::IModelDataSource* source,
                                 std::vector<RESULT::KyResultItem*>& results);

    /// How many recorded clashes have their owner as the main component. Changes nothing. The later
    /// number of results can be lower, because several of one pair collapse, and it can differ
    /// where this floor knows the GUID of a component B under another minor category, which only
    /// the results go by.
    int GetFloorResultTempNum(LOGIC::IModelDataSource* source);

    /// Appends the opening records of all components that are openings.
    void GetFloorExistingHoles(LOGIC::IModelDataSource* source,
                               std::vector<std::shared_ptr<RESULT::CExistingHole>>& holes) const;

  private:
    friend class AttCategoryModelInfo;
    friend class ObjectModelInfo;
    friend class ProjectModelInfo;

    class ResultBuilder;
    using AxisTree = KYTOOLS::GRAPH::QuadTree<LOGIC::SQNGIAxisItem*>;

    void DropQuadTree();
    void DeleteCategories();
    std::vector<ObjectModelInfo*> GetObjects() const;
    std::vector<ObjectModelInfo*> GetCheckedObjects() const;
    KYTOOLS::GRAPH::BoundingBox3d GetReach() const;
    std::vector<FloorModelInfo*> FloorsNearby() const;
    bool ListNeighboursAtOnce(const std::vector<FloorModelInfo*>& floors);
    void ListNeighboursOneByOne(const std::vector<FloorModelInfo*>& floors);
    bool IsTreeUpToDate() const { return quadTree_ && !objectsChanged_; }
    void NoteChangedObject() { objectsChanged_ = true; }
    void NoteAddedObject() { objectsAdded_ = true; }
    std::set<const AttCategoryModelInfo*> CategorySet() const;
    bool GetIsMainObj(LOGIC::IModelDataSource* source, ObjectModelInfo* a,
                      const AttCategory& categoryA, ObjectModelInfo* b,
                      const AttCategory& categoryB);
    RESULT::KyResultItem* CreateNewResultItem(int projIdA, std::wstring floorNameA,
                                              std::wstring guidA, int projIdB,
                                              std::wstring floorNameB, std::wstring guidB,
                                              std::wstring clashPoint, std::wstring clashModel,
                                              const SObjAttInfo& infoA, const SObjAttInfo& infoB,
                                              ObjectModelInfo* a, ObjectModelInfo* b,
                                              std::wstring floorKey, std::wstring heightA,
                                              std::wstring heightB, const AxisTree& axisTree);
    std::wstring GetXiaoLeiInlineGuid(const std::wstring& guid);

    std::wstring name_;
    ProjectModelInfo* project_ = nullptr;
    double under_ = 0.0;
    double top_ = 0.0;
    KYTOOLS::GRAPH::BoundingBox3d box_;
    std::map<std::wstring, AttCategoryModelInfo*> categories_;
    std::unique_ptr<kycb::model::FloorTree> quadTree_;
    std::unique_ptr<ObjectModelInfo*[]> neighbourLists_;  // of all components, when listed at once
    bool objectsChanged_ = false;  // a component's box or GUID was set after the tree was built
    bool objectsAdded_ = false;    // a component was appended after the tree was built
};

}  // namespace KYCOLLISION::MODEL
