// SPDX-License-Identifier: Apache-2.0
// Which products of a file belong together, so that they are not tested against one another.
#pragma once

#include <cstdint>
#include <vector>

#include "ScenePackage.h"

namespace ifchost {

/// Looks up related products by their indices. What holds for an assembly holds for its parts.
class RelatedProducts {
  public:
    explicit RelatedProducts(const ScenePackage& package);

    /// Fillings, their openings and the hosts of these; coverings and what they cover; walls that
    /// are joined; the parts of one assembly among themselves, and each with what it is a part of.
    /// Ascending, without duplicates and without `product` itself.
    std::vector<std::uint32_t> Objects(std::uint32_t product) const;

    /// What is connected through ports, by elements, or realizes such a connection.
    std::vector<std::uint32_t> Fittings(std::uint32_t product) const;

    /// The element that an opening, or the opening of a filling, is cut from; kNoIndex without one.
    std::int32_t HostOf(std::uint32_t product) const;
    /// The opening that a filling fills; kNoIndex without one.
    std::int32_t OpeningOf(std::uint32_t product) const;
    /// Coverings of a product, as its insulation.
    const std::vector<std::uint32_t>& CoveringsOf(std::uint32_t product) const;
    /// The ports that sit on a product.
    const std::vector<std::uint32_t>& PortsOf(std::uint32_t product) const;

  private:
    using Links = std::vector<std::vector<std::uint32_t>>;

    void Link(Links& links, std::uint32_t a, std::uint32_t b);
    std::vector<std::uint32_t> Ancestors(std::uint32_t product) const;
    void AddWithParts(std::uint32_t product, std::vector<std::uint32_t>& found) const;
    std::vector<std::uint32_t> Collect(std::uint32_t product, const Links& links) const;

    const ScenePackage& package_;
    Links objects_;
    Links fittings_;
    Links parts_;
    Links coverings_;
    Links ports_;
    std::vector<std::int32_t> host_;
    std::vector<std::int32_t> opening_;
};

}  // namespace ifchost
