// SPDX-License-Identifier: Apache-2.0
// The smallest host: two boxes that overlap, one rule set, one run, one clash.
#include <algorithm>
#include <array>
#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <KYCollisionBase/KYCollisionBase.h>

namespace {

using namespace KYCOLLISION;
using KYTOOLS::GRAPH::BoundingBox3d;

// A wall along x and a duct that runs through it (mm).
const std::map<std::string, BoundingBox3d> kBoxes = {
    {"wall", {0, 0, 0, 4000, 200, 3000}},
    {"duct", {1000, -1000, 2000, 1400, 1000, 2300}},
};

class BoxSource : public LOGIC::IModelDataSource {
  public:
    MODEL::ICollisionModel* CreateCollisionModel() override {
        auto floor = std::make_unique<MODEL::FloorModelInfo>(L"1F");
        floor->setUnder(0);
        floor->setHeight(3000);
        Append(*floor, "wall", L"土建", L"墙", L"砼内墙");
        Append(*floor, "duct", L"暖通", L"风管", L"送风管");
        floor->BuildQuadTree();
        auto project = std::make_unique<MODEL::ProjectModelInfo>(1, L"tower");
        project->AppendFloor(L"1F", floor.release());
        auto workSet = std::make_unique<MODEL::WorkSetModelInfo>();
        workSet->AppendProject(1, project.release());
        return workSet.release();
    }

    Opcode::Model* CreateOpcodeModel(int, const boost::any& id, int offset) override {
        const BoundingBox3d& box = kBoxes.at(boost::any_cast<std::string>(id));
        auto* points = new IceMaths::Point[8];
        for (unsigned i = 0; i < 8; ++i) {
            points[i].x = float((i & 1) != 0 ? box.GetMaxX() + offset : box.GetMinX() - offset);
            points[i].y = float((i & 2) != 0 ? box.GetMaxY() + offset : box.GetMinY() - offset);
            points[i].z = float((i & 4) != 0 ? box.GetMaxZ() + offset : box.GetMinZ() - offset);
        }
        constexpr std::array<std::array<unsigned, 3>, 12> kFaces = {{{0, 2, 1},
                                                                     {1, 2, 3},
                                                                     {4, 5, 6},
                                                                     {5, 7, 6},
                                                                     {0, 1, 4},
                                                                     {1, 5, 4},
                                                                     {2, 6, 3},
                                                                     {3, 6, 7},
                                                                     {0, 4, 2},
                                                                     {2, 4, 6},
                                                                     {1, 3, 5},
                                                                     {3, 7, 5}}};
        auto* triangles = new IceMaths::IndexedTriangle[kFaces.size()];
        for (std::size_t i = 0; i < kFaces.size(); ++i) {
            std::copy(kFaces[i].begin(), kFaces[i].end(), triangles[i].mVRef);
        }
        auto* mesh = new Opcode::MeshInterface;
        mesh->SetNbTriangles(unsigned(kFaces.size()));
        mesh->SetNbVertices(8);
        mesh->SetPointers(triangles, points);
        Opcode::OPCODECREATE create;
        create.mIMesh = mesh;
        auto* model = new Opcode::Model;
        model->Build(create);
        return model;
    }

    bool GetObjAttributes(int, const boost::any&,
                          std::map<std::wstring, std::wstring>&) const override {
        return true;
    }
    void GetFloorAxisInfo(int, const std::wstring&, std::vector<LOGIC::SQNGIAxisItem*>&,
                          KYTOOLS::GRAPH::QuadTree<LOGIC::SQNGIAxisItem*>&) const override {}
    void ShowProgress(const std::wstring&) override {}
    std::wstring GetObjDisplayName(int, const boost::any&) const override { return {}; }
    void HighlightObj(int, const boost::any&) override {}
    std::wstring GetObjXiaoLeiName(int, const std::wstring&, const std::wstring&) const override {
        return {};
    }

  private:
    static void Append(MODEL::FloorModelInfo& floor, const std::string& id, const wchar_t* spec,
                       const wchar_t* dalei, const wchar_t* xiaolei) {
        auto* component = new MODEL::ObjectModelInfo(id);
        component->SetObjGuid(std::wstring(id.begin(), id.end()));
        component->SetBoundingBox(kBoxes.at(id));
        floor.AppendObject(spec, dalei, xiaolei, component);
    }
};

constexpr const wchar_t* kRules =
    LR"(<CollisionRule>
  <Specialty name="土建"><RuleItem gjtype="土建/墙/砼内墙" isvalid="true"/></Specialty>
  <Specialty name="暖通"><RuleItem gjtype="暖通/风管/送风管" isvalid="true"/></Specialty>
</CollisionRule>)";

}  // namespace

int main() {
    auto rules = std::make_unique<Rule::KyCollisionRuleMgr>();
    if (!rules->InitByXmlString(kRules)) return 1;

    LOGIC::CCollisionCheck check;  // owns what it is given
    check.SetDataSource(new BoxSource);
    check.SetCollisionRule(rules.release());
    if (!check.InitCollisionModel()) return 1;

    const std::vector<SCollisionFloor> floors = {{L"1F", {}, {{1, L"1F"}}}};
    if (check.CollisionCheck(floors) != LOGIC::CHECK_SUCCESS) return 1;

    auto* wall = check.GetCollisionModel()->GetObjectModelInfo({1, L"1F"}, L"wall");
    std::cout << "clashes: " << wall->GetCollisionObjs().size() << '\n';
    return 0;
}
