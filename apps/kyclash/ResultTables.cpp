// SPDX-License-Identifier: Apache-2.0
#include "kyclash/ResultTables.h"

#include "ifchost/ComponentAttributes.h"
#include "ifchost/HostText.h"
#include "ifchost/PackageCache.h"
#include "kyclash/Csv.h"
#include "kyclash/GlobalIdOf.h"

namespace kyclash {
namespace {

using ifchost::IfcWorkset;
using ifchost::ToUtf8;
using KYCOLLISION::RESULT::CExistingHole;
using KYCOLLISION::RESULT::KyResultItem;
using Row = std::vector<std::string>;

const Row kClashHeader = {"status",       "floorA",    "floorB",    "axisPosition", "position (mm)",
                          "specialtyA",   "categoryA", "kindA",     "nameA",        "systemA",
                          "heightA (mm)", "globalIdA", "ifcClassA", "fileA",        "specialtyB",
                          "categoryB",    "kindB",     "nameB",     "systemB",      "heightB (mm)",
                          "globalIdB",    "ifcClassB", "fileB",     "offsets (mm)", "state",
                          "remark",       "viewport",  "pictureId", "pictureMd5",   "pictureSize",
                          "resultId",     "projectA",  "objectA",   "projectB",     "objectB"};

const Row kOpeningHeader = {
    "floor",        "type",         "typeCode",    "shape",          "shapeCode", "center (mm)",
    "size (mm)",    "width (mm)",   "height (mm)", "elevation (mm)", "specialty", "category",
    "kind",         "name",         "system",      "globalId",       "ifcClass",  "file",
    "hostGlobalId", "hostIfcClass", "hostName",    "project",        "object",    "host"};

const Row kProductHeader = {"file",           "floor", "ifcClass",  "typeClass",  "globalId",
                            "predefinedType", "name",  "typeName",  "objectType", "materials",
                            "systems",        "fate",  "specialty", "category",   "kind",
                            "mappingRule",    "note",  "project",   "object"};

// What the files say about a component; nothing but its GlobalId when they do not have it.
struct Origin {
    std::string globalId;
    std::string ifcClass;
    std::string name;
    std::string file;
};

Origin OriginOf(const IfcWorkset& workset, int project, const std::wstring& guid) {
    const auto* component = workset.FindComponent(project, guid);
    if (component == nullptr) return {GlobalIdOf(guid).value_or(""), "", "", ""};
    return {workset.GlobalId(*component), workset.Product(*component).ifcClass,
            ToUtf8(component->name), ifchost::PathText(workset.Project(project)->file.filename())};
}

void Append(Row& row, std::initializer_list<std::string> cells) {
    row.insert(row.end(), cells.begin(), cells.end());
}

void AppendSide(Row& row, const SObjAttInfo& info, const std::wstring& height,
                const Origin& origin) {
    Append(row, {ToUtf8(info.Specialty), ToUtf8(info.Category), ToUtf8(info.Subcategory),
                 ToUtf8(info.Name), ToUtf8(info.SysCode), ToUtf8(height), origin.globalId,
                 origin.ifcClass, origin.file});
}

Row ClashRow(const TrackedClash& clash, const IfcWorkset& workset) {
    const KyResultItem& item = *clash.item;
    Row row = {std::string(StatusText(clash.status)), ToUtf8(item.GetFloorA()),
               ToUtf8(item.GetFloorB()), ToUtf8(item.GetAxisPos()), ToUtf8(item.GetPosition())};
    AppendSide(row, item.GetAttInfoA(), item.GetHeightA(),
               OriginOf(workset, item.GetProjectA(), item.GetObjGuidA()));
    AppendSide(row, item.GetAttInfoB(), item.GetHeightB(),
               OriginOf(workset, item.GetProjectB(), item.GetObjGuidB()));
    Append(row,
           {ToUtf8(item.GetClashModel()), std::to_string(item.GetDisposeState()),
            ToUtf8(item.GetRemark()), ToUtf8(item.GetViewport()), ToUtf8(item.GetPicuuid()),
            ToUtf8(item.GetPicmd5()), std::to_string(item.GetPicsize()), ToUtf8(item.GetResultId()),
            std::to_string(item.GetProjectA()), ToUtf8(item.GetObjGuidA()),
            std::to_string(item.GetProjectB()), ToUtf8(item.GetObjGuidB())});
    return row;
}

std::string Joined(const std::vector<std::string>& texts) {
    std::string all;
    for (const std::string& text : texts)
        all += (all.empty() ? "" : "; ") + text;
    return all;
}

std::string SystemNames(const ifchost::ScenePackage& package,
                        const ifchost::SceneProduct& product) {
    std::vector<std::string> names;
    for (const std::uint32_t system : product.systems)
        names.push_back(package.Systems()[system].name);
    return Joined(names);
}

Row ProductRow(const IfcWorkset& workset, const ifchost::WorksetProject& project,
               std::size_t index) {
    const auto& product = project.package.Products()[index];
    const auto& account = project.accounts[index];
    const auto* component =
        account.component == ifchost::kNoIndex
            ? nullptr
            : &workset.Components()[static_cast<std::size_t>(account.component)];
    Row row = {ifchost::PathText(project.file.filename()),
               component == nullptr ? "" : ToUtf8(workset.Floor(*component).name),
               product.ifcClass,
               product.typeClass,
               product.guid,
               product.predefinedType,
               product.name,
               product.typeName,
               product.objectType,
               Joined(product.materials),
               SystemNames(project.package, product),
               std::string(ifchost::FateName(account.fate))};
    if (component == nullptr) {
        Append(row, {"", "", ""});
    } else {
        Append(row, {ToUtf8(component->category.specialty), ToUtf8(component->category.dalei),
                     ToUtf8(component->category.xiaolei)});
    }
    Append(row, {std::string(workset.RuleName(account)), account.note, std::to_string(project.id),
                 component == nullptr ? "" : ToUtf8(component->guid)});
    return row;
}

Row OpeningRow(const CExistingHole& opening, const IfcWorkset& workset) {
    const Origin origin = OriginOf(workset, opening.projId, opening.objGuid);
    const Origin host = OriginOf(workset, opening.projId, opening.parentId);
    const SObjAttInfo& info = opening.attInfo;
    Row row = {ToUtf8(opening.floorName),         OpeningTypeText(opening.holeType),
               std::to_string(opening.holeType),  OpeningShapeText(opening.holeShape),
               std::to_string(opening.holeShape), ToUtf8(opening.holeCenter)};
    Append(row, {std::to_string(opening.holeSize), std::to_string(opening.holeWidth),
                 std::to_string(opening.holeHeight), ToUtf8(opening.holeElev),
                 ToUtf8(info.Specialty), ToUtf8(info.Category), ToUtf8(info.Subcategory),
                 ToUtf8(info.Name), ToUtf8(info.SysCode)});
    Append(row,
           {origin.globalId, origin.ifcClass, origin.file, host.globalId, host.ifcClass, host.name,
            std::to_string(opening.projId), ToUtf8(opening.objGuid), ToUtf8(opening.parentId)});
    return row;
}

}  // namespace

std::string ClashTable(const std::vector<TrackedClash>& clashes, ClashSelection selection,
                       const IfcWorkset& workset) {
    CsvText table(kClashHeader);
    for (const TrackedClash& clash : clashes) {
        const bool isGone = clash.status == ClashStatus::Gone;
        if (isGone == (selection == ClashSelection::Gone)) table.AddRow(ClashRow(clash, workset));
    }
    return table.Text();
}

std::string OpeningTable(const std::vector<Opening>& openings, const IfcWorkset& workset) {
    CsvText table(kOpeningHeader);
    for (const Opening& opening : openings)
        table.AddRow(OpeningRow(*opening, workset));
    return table.Text();
}

std::string ProductTable(const IfcWorkset& workset) {
    CsvText table(kProductHeader);
    for (const auto& project : workset.Projects()) {
        for (std::size_t i = 0; i < project.accounts.size(); ++i)
            table.AddRow(ProductRow(workset, project, i));
    }
    return table.Text();
}

std::string OpeningTypeText(int type) {
    switch (type) {
        case 101:
            return "wall opening";
        case 103:
            return "slab opening";
        case 104:
            return "door";
        case 105:
            return "window";
        default:
            return std::to_string(type);
    }
}

std::string OpeningShapeText(int shape) {
    switch (static_cast<ifchost::HoleShape>(shape)) {
        case ifchost::HoleShape::Rectangle:
            return "rectangle";
        case ifchost::HoleShape::Circle:
            return "circle";
        case ifchost::HoleShape::Other:
            return "other";
        default:
            return {};
    }
}

}  // namespace kyclash
