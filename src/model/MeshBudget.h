// SPDX-License-Identifier: Apache-2.0
// Bounds the memory of the meshes that a run keeps.
#pragma once

#include <cstddef>
#include <deque>
#include <vector>

namespace Opcode {
class Model;
}
namespace KYCOLLISION::MODEL {
class ObjectModelInfo;
class WorkSetModelInfo;
}  // namespace KYCOLLISION::MODEL

namespace kycb::model {

/// How much memory a mesh takes (bytes): the host's arrays, and what a search tree over them may.
std::size_t MemoryOf(const Opcode::Model& model);

/// Releases meshes during a run when they take more than a limit, those first whose last pair was
/// longest ago. A mesh that a later pair of the floor needs stays, so no floor fetches a mesh
/// twice.
///
/// It is in force on the thread that made it as long as it lives; one at a time.
class MeshBudget {
  public:
    using ObjectModelInfo = KYCOLLISION::MODEL::ObjectModelInfo;

    /// `limit` in bytes. Meshes that the model holds already count, and may go.
    MeshBudget(const KYCOLLISION::MODEL::WorkSetModelInfo& model, std::size_t limit);
    ~MeshBudget();
    MeshBudget(const MeshBudget&) = delete;
    MeshBudget& operator=(const MeshBudget&) = delete;

    /// The one in force, or null.
    static MeshBudget* Current();

    /// A mesh came or went.
    void Take(const Opcode::Model& model) { used_ += MemoryOf(model); }
    void GiveBack(const Opcode::Model& model) { used_ -= MemoryOf(model); }

    /// The components that will be checked, in the order of their turns.
    void BeginFloor(const std::vector<ObjectModelInfo*>& turns);
    /// The next turn is over.
    void EndTurn();

  private:
    void ReleaseIdle();

    std::size_t limit_;
    std::size_t used_ = 0;
    std::size_t turn_ = 0;
    std::vector<std::vector<ObjectModelInfo*>> needless_;  // after each turn of the floor
    std::deque<ObjectModelInfo*> idle_;                    // needed no more by the floor
};

}  // namespace kycb::model
