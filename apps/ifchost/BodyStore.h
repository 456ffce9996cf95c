// SPDX-License-Identifier: Apache-2.0
// The bodies of components, grown or shrunk, with a bounded memory of those made before.
#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <map>
#include <set>
#include <tuple>
#include <utility>
#include <vector>

#include "BodyMesh.h"
#include "BodyOffset.h"
#include "IfcDataSource.h"
#include "IfcWorkset.h"

namespace ifchost {

/// Makes bodies on request. Products that place one and the same shape without scaling it share
/// the work: the shape is offset once and moved to each of them. What was made is kept until the
/// limit is reached; then what was not asked for longest goes first.
class BodyStore {
  public:
    BodyStore(const IfcWorkset& workset, std::size_t cacheBytes)
        : workset_(workset), cacheBytes_(cacheBytes) {}
    BodyStore(const BodyStore&) = delete;
    BodyStore& operator=(const BodyStore&) = delete;

    /// The component's body moved outward by `offset` (mm), in world coordinates; without
    /// triangles when there is nothing. Precondition: the component exists.
    BodyMesh Body(ComponentId component, int offset);

    const std::vector<BodyNote>& Notes() const { return notes_; }
    std::size_t CachedBytes() const { return cachedBytes_; }
    /// How many bodies were made so far, those from the memory not counted.
    std::size_t MadeBodies() const { return madeBodies_; }

  private:
    // Project, geometry or product (see SharedKey and OwnKey), offset.
    using Key = std::tuple<int, std::uint64_t, int>;
    struct Entry {
        Key key;
        OffsetResult result;
        std::size_t bytes = 0;
    };

    static Key SharedKey(const WorksetComponent& component, std::uint32_t geometry, int offset);
    static Key OwnKey(const WorksetComponent& component, int offset);
    const OffsetResult* Find(const Key& key);
    const OffsetResult& Keep(const Key& key, OffsetResult result);
    BodyMesh ShapeOf(const ScenePackage& package, std::uint32_t geometry) const;
    void Note(ComponentId component, const OffsetResult& result, int offset);

    const IfcWorkset& workset_;
    std::size_t cacheBytes_;
    std::size_t cachedBytes_ = 0;
    std::size_t madeBodies_ = 0;
    std::list<Entry> entries_;  // latest first
    std::map<Key, std::list<Entry>::iterator> index_;
    std::vector<BodyNote> notes_;
    std::set<std::pair<ComponentId, BodyDefect>> noted_;
};

}  // namespace ifchost
