// SPDX-License-Identifier: Apache-2.0
#include "HeapCount.h"

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> liveBytes = 0;

/// Stands before each block.
struct Header {
    void* start;
    std::size_t size;
};

void* Allocate(std::size_t size, std::size_t alignment) {
    // With room for the header before the first place that is aligned.
    const std::size_t before = sizeof(Header) + alignment;
    void* start = std::malloc(size + before);
    if (start == nullptr) throw std::bad_alloc();
    const auto first = reinterpret_cast<std::uintptr_t>(start) + before;
    auto* block = reinterpret_cast<void*>(first / alignment * alignment);
    static_cast<Header*>(block)[-1] = {start, size};
    liveBytes += size;
    return block;
}

void Release(void* block) {
    if (block == nullptr) return;
    const Header header = static_cast<Header*>(block)[-1];
    liveBytes -= header.size;
    std::free(header.start);
}

}  // namespace

namespace kycb::bench {

std::size_t LiveHeapBytes() {
    return liveBytes;
}

}  // namespace kycb::bench

void* operator new(std::size_t size) {
    return Allocate(size, alignof(std::max_align_t));
}
void* operator new[](std::size_t size) {
    return Allocate(size, alignof(std::max_align_t));
}
void* operator new(std::size_t size, std::align_val_t alignment) {
    return Allocate(size, static_cast<std::size_t>(alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
    return Allocate(size, static_cast<std::size_t>(alignment));
}
void operator delete(void* block) noexcept {
    Release(block);
}
void operator delete[](void* block) noexcept {
    Release(block);
}
void operator delete(void* block, std::size_t /*size*/) noexcept {
    Release(block);
}
void operator delete[](void* block, std::size_t /*size*/) noexcept {
    Release(block);
}
void operator delete(void* block, std::align_val_t /*alignment*/) noexcept {
    Release(block);
}
void operator delete[](void* block, std::align_val_t /*alignment*/) noexcept {
    Release(block);
}
void operator delete(void* block, std::size_t /*size*/, std::align_val_t /*alignment*/) noexcept {
    Release(block);
}
void operator delete[](void* block, std::size_t /*size*/, std::align_val_t /*alignment*/) noexcept {
    Release(block);
}
