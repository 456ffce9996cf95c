// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/Export.h"

#include <iosfwd>

namespace kycb {

class SceneRecorder;

/// Writes a recorded scene as a self-contained glTF 2.0 file (JSON, with the numbers inside).
///
/// The nodes keep their names and their tree; each node with geometry becomes one mesh of lines in
/// its colour, unlit. Arcs become chords of at most 5 degrees. glTF wants metres and y up, so the
/// outermost node turns and scales the scene; it also takes up the middle of the scene, so that
/// single precision keeps far-away coordinates exact to a fraction of a millimetre. Geometry with
/// coordinates that are not finite is left out, as are curves of unknown kinds.
///
/// Errors: those of `out`, which the caller asks.
KYCB_API void WriteGltf(const SceneRecorder& scene, std::ostream& out);

}  // namespace kycb
