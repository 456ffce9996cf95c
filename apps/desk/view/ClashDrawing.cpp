// SPDX-License-Identifier: Apache-2.0
#include "desk/view/ClashDrawing.h"

#include "KYCollisionBase/ui/GltfWriter.h"
#include "KYCollisionBase/ui/KyCheckTestTool.h"

#include <fstream>

#include "desk/view/GlSceneContext.h"
#include "desk/view/SceneColors.h"

namespace desk {
namespace {

using QNIM::GeometryPrimitiveResource::CQNIMBoundingBox;
using QNIM::GeometryPrimitiveResource::CQNIMPosition;

SQNGIRGBClr ToColor(const QColor& color) {
    return {static_cast<std::uint8_t>(color.red()), static_cast<std::uint8_t>(color.green()),
            static_cast<std::uint8_t>(color.blue())};
}

template <class Coordinate>
CQNIMPosition ToPosition(const std::array<Coordinate, 3>& point) {
    return {static_cast<double>(point[0]), static_cast<double>(point[1]),
            static_cast<double>(point[2])};
}

void DrawBox(std::optional<std::size_t> component, const SceneMeshes& meshes, const QColor& color) {
    if (!component) return;
    const SceneBounds& bounds = meshes.boundsOfComponent[*component];
    if (bounds.IsEmpty()) return;
    KyCheckTestTool::Instance()->DrawBoundingBox(
        CQNIMBoundingBox(ToPosition(bounds.min), ToPosition(bounds.max)), ToColor(color));
}

}  // namespace

ClashDrawing::ClashDrawing(GlSceneContext& context) : context_(context) {
    KyCheckTestTool::Instance()->InitQGNIContext(&context);
}

ClashDrawing::~ClashDrawing() {
    KyCheckTestTool::Instance()->Reset();
}

void ClashDrawing::Clear() {
    KyCheckTestTool::Instance()->ClearAll();
    context_.MarkChanged();
}

void ClashDrawing::Draw(const ClashPlace& clash, const SceneMeshes& meshes) {
    Clear();
    DrawBox(clash.main, meshes, MainColor());
    DrawBox(clash.second, meshes, SecondColor());
    KyCheckTestTool::Instance()->DrawCollisionPoint(ToPosition(clash.point),
                                                    ToColor(ClashPointColor()));
}

void ClashDrawing::Draw(const OpeningPlace& opening) {
    Clear();
    KyCheckTestTool::Instance()->DrawBoundingBox(
        CQNIMBoundingBox(ToPosition(opening.min), ToPosition(opening.max)), ToColor(MainColor()));
}

bool ClashDrawing::Write(const std::filesystem::path& file) const {
    std::ofstream out(file, std::ios::binary);
    kycb::WriteGltf(context_.Scene(), out);
    out.close();
    return static_cast<bool>(out);
}

}  // namespace desk
