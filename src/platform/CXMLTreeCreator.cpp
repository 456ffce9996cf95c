// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/platform/CXMLTreeCreator.h"

#include <utility>

#include "platform/XmlTree.h"

namespace {

std::function<IXMLTree*()>& Allocator() {
    static std::function<IXMLTree*()> allocate;
    return allocate;
}

}  // namespace

IXMLTree* CXMLTreeCreator::Allocate() {
    return Allocator() ? Allocator()() : new kycb::xml::XmlTree;
}

void CXMLTreeCreator::SetAllocator(std::function<IXMLTree*()> allocate) {
    Allocator() = std::move(allocate);
}
