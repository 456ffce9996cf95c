// SPDX-License-Identifier: Apache-2.0
#include "RelatedProducts.h"

#include <algorithm>
#include <cstddef>

namespace ifchost {
namespace {

// Deeper assemblies occur only where a file goes round in a circle.
constexpr std::size_t kMaxDepth = 100;

void SortUnique(std::vector<std::uint32_t>& list, std::uint32_t without) {
    std::sort(list.begin(), list.end());
    list.erase(std::unique(list.begin(), list.end()), list.end());
    list.erase(std::remove(list.begin(), list.end(), without), list.end());
}

}  // namespace

RelatedProducts::RelatedProducts(const ScenePackage& package)
    : package_(package),
      objects_(package.Products().size()),
      fittings_(package.Products().size()),
      parts_(package.Products().size()),
      coverings_(package.Products().size()),
      ports_(package.Products().size()),
      host_(package.Products().size(), kNoIndex),
      opening_(package.Products().size(), kNoIndex) {
    const SceneRelations& relations = package.Relations();
    for (const ScenePair& pair : relations.voids) {
        Link(objects_, pair.first, pair.second);
        host_[pair.first] = static_cast<std::int32_t>(pair.second);
    }
    for (const ScenePair& pair : relations.fills) {
        Link(objects_, pair.first, pair.second);
        opening_[pair.second] = static_cast<std::int32_t>(pair.first);
        host_[pair.second] = host_[pair.first];
        if (host_[pair.first] == kNoIndex) continue;
        Link(objects_, static_cast<std::uint32_t>(host_[pair.first]), pair.second);
    }
    for (const ScenePair& pair : relations.coverings) {
        Link(objects_, pair.first, pair.second);
        coverings_[pair.first].push_back(pair.second);
    }
    for (const SceneConnection& connection : relations.connections) {
        const bool isJoint = connection.kind == ConnectionKind::Path;
        Link(isJoint ? objects_ : fittings_, connection.first, connection.second);
    }
    for (const ScenePort& port : relations.ports)
        ports_[port.element].push_back(port.port);
    for (std::size_t i = 0; i < parts_.size(); ++i) {
        const std::int32_t parent = package.Products()[i].parent;
        if (parent == kNoIndex || package.Products()[i].role == ProductRole::Port) continue;
        parts_[static_cast<std::size_t>(parent)].push_back(static_cast<std::uint32_t>(i));
    }
}

void RelatedProducts::Link(Links& links, std::uint32_t a, std::uint32_t b) {
    if (a == b) return;
    links[a].push_back(b);
    links[b].push_back(a);
}

std::vector<std::uint32_t> RelatedProducts::Ancestors(std::uint32_t product) const {
    std::vector<std::uint32_t> chain;
    std::int32_t at = package_.Products()[product].parent;
    while (at != kNoIndex && chain.size() < kMaxDepth) {
        chain.push_back(static_cast<std::uint32_t>(at));
        at = package_.Products()[static_cast<std::size_t>(at)].parent;
    }
    return chain;
}

void RelatedProducts::AddWithParts(std::uint32_t product, std::vector<std::uint32_t>& found) const {
    std::vector<std::uint32_t> layer{product};
    for (std::size_t depth = 0; !layer.empty() && depth < kMaxDepth; ++depth) {
        std::vector<std::uint32_t> next;
        for (const std::uint32_t at : layer) {
            found.push_back(at);
            next.insert(next.end(), parts_[at].begin(), parts_[at].end());
        }
        layer = std::move(next);
    }
}

std::vector<std::uint32_t> RelatedProducts::Collect(std::uint32_t product,
                                                    const Links& links) const {
    std::vector<std::uint32_t> found;
    for (const std::uint32_t other : links[product])
        AddWithParts(other, found);
    for (const std::uint32_t whole : Ancestors(product)) {
        for (const std::uint32_t other : links[whole])
            AddWithParts(other, found);
    }
    return found;
}

std::vector<std::uint32_t> RelatedProducts::Objects(std::uint32_t product) const {
    std::vector<std::uint32_t> found = Collect(product, objects_);
    for (const std::uint32_t whole : Ancestors(product))
        found.push_back(whole);
    const std::int32_t parent = package_.Products()[product].parent;
    if (parent != kNoIndex) {
        const auto& siblings = parts_[static_cast<std::size_t>(parent)];
        found.insert(found.end(), siblings.begin(), siblings.end());
    }
    SortUnique(found, product);
    return found;
}

std::vector<std::uint32_t> RelatedProducts::Fittings(std::uint32_t product) const {
    std::vector<std::uint32_t> found = Collect(product, fittings_);
    SortUnique(found, product);
    return found;
}

std::int32_t RelatedProducts::HostOf(std::uint32_t product) const {
    return host_[product];
}

std::int32_t RelatedProducts::OpeningOf(std::uint32_t product) const {
    return opening_[product];
}

const std::vector<std::uint32_t>& RelatedProducts::CoveringsOf(std::uint32_t product) const {
    return coverings_[product];
}

const std::vector<std::uint32_t>& RelatedProducts::PortsOf(std::uint32_t product) const {
    return ports_[product];
}

}  // namespace ifchost
