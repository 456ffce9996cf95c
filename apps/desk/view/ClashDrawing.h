// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>

#include "desk/core/ScenePlace.h"

namespace desk {

class GlSceneContext;

/// What diagnostic drawing says about the clash or the opening on display: boxes and the clash
/// point, drawn by KyCheckTestTool into the context of the 3-D view.
///
/// The tool is one for the program; it draws here for as long as the object lives.
class ClashDrawing {
  public:
    /// The context is borrowed and must outlive the drawing.
    explicit ClashDrawing(GlSceneContext& context);
    ~ClashDrawing();
    ClashDrawing(const ClashDrawing&) = delete;
    ClashDrawing& operator=(const ClashDrawing&) = delete;

    void Clear();
    /// The boxes of the two components in their colours, and the point; in place of what was
    /// drawn.
    void Draw(const ClashPlace& clash, const SceneMeshes& meshes);
    /// The box of an opening, in place of what was drawn.
    void Draw(const OpeningPlace& opening);

    /// Writes what is drawn to a glTF file. False when the file cannot be written.
    bool Write(const std::filesystem::path& file) const;

  private:
    GlSceneContext& context_;
};

}  // namespace desk
