// SPDX-License-Identifier: Apache-2.0
// Byte layout of a scene package, shared by its reader and by tests that make packages.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "ScenePackage.h"

namespace ifchost::format {

static_assert(std::endian::native == std::endian::little,
              "packages are little-endian and are used in place");

inline constexpr std::array<char, 8> kMagic{'K', 'Y', 'S', 'C', 'E', 'N', 'E', '\n'};
inline constexpr std::array<char, 8> kEndMagic{'K', 'Y', 'S', 'C', 'E', 'N', 'D', '\n'};
inline constexpr std::size_t kAlignment = 16;
inline constexpr std::size_t kChecksumSize = 32;
/// Checksum and end mark.
inline constexpr std::size_t kTrailerSize = kChecksumSize + kEndMagic.size();

enum Section : std::size_t {
    kPositions,
    kIndices,
    kGeometries,
    kInstances,
    kProperties,
    kSectionCount
};

struct SectionEntry {
    std::uint64_t offset = 0;  ///< from the beginning of the file, a multiple of kAlignment
    std::uint64_t count = 0;   ///< records, not bytes
};

struct Header {
    std::array<char, 8> magic = kMagic;
    std::uint32_t version = ScenePackage::kVersion;
    std::uint32_t headerSize = 128;
    std::uint64_t fileSize = 0;
    std::uint64_t jsonOffset = 128;
    std::uint64_t jsonSize = 0;
    std::array<SectionEntry, kSectionCount> sections{};
    std::uint64_t reserved = 0;
};
static_assert(sizeof(Header) == 128);

struct GeometryRecord {
    std::uint64_t firstVertex = 0;
    std::uint64_t vertexCount = 0;
    std::uint64_t firstIndex = 0;
    std::uint64_t indexCount = 0;
    std::array<double, 3> boxMin{};
    std::array<double, 3> boxMax{};
    double volume = 0.0;
    double reserved = 0.0;
};
static_assert(sizeof(GeometryRecord) == 96);

static_assert(sizeof(SceneInstance) == 136 && offsetof(SceneInstance, transform) == 8);

struct PropertyRecord {
    std::uint32_t set = 0;  ///< indices in the table of strings
    std::uint32_t name = 0;
    std::uint32_t value = 0;
    std::uint32_t kind = 0;  ///< PropertyKind
    double number = 0.0;
};
static_assert(sizeof(PropertyRecord) == 24);

/// Bytes of one record of each section; a position is three doubles.
inline constexpr std::array<std::size_t, kSectionCount> kRecordSize{
    3 * sizeof(double), sizeof(std::uint32_t), sizeof(GeometryRecord), sizeof(SceneInstance),
    sizeof(PropertyRecord)};

inline constexpr std::array<const char*, kSectionCount> kSectionName{
    "positions", "indices", "geometries", "instances", "properties"};

}  // namespace ifchost::format
