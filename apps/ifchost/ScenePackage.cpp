// SPDX-License-Identifier: Apache-2.0
#include "ScenePackage.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <exception>
#include <system_error>
#include <utility>

#include <boost/interprocess/file_mapping.hpp>
#include <boost/interprocess/mapped_region.hpp>

#include "SceneFormat.h"
#include "SceneJson.h"
#include "Sha256.h"

namespace ifchost {
namespace {

namespace ipc = boost::interprocess;
using Bytes = std::span<const std::byte>;

std::string Utf8(const std::filesystem::path& path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

[[noreturn]] void Fail(std::string place, const std::string& message) {
    throw SceneFormatError(std::move(place), message);
}

std::string Item(const char* list, std::size_t index) {
    return std::string(list) + "[" + std::to_string(index) + "]";
}

template <class T>
T Copy(const std::byte* from) {
    T value;
    std::memcpy(&value, from, sizeof(T));
    return value;
}

/// The header, once the frame around the content is sound: both marks, version and sizes.
format::Header CheckFrame(Bytes bytes) {
    if (bytes.size() < sizeof(format::Header) + format::kTrailerSize) {
        Fail("header", "the file is shorter than a header and a trailer");
    }
    const auto header = Copy<format::Header>(bytes.data());
    if (header.magic != format::kMagic) Fail("header", "this is not a scene package");
    if (header.version != ScenePackage::kVersion) {
        Fail("header", "version " + std::to_string(header.version) + " instead of " +
                           std::to_string(ScenePackage::kVersion));
    }
    if (header.headerSize != sizeof(format::Header)) Fail("header", "wrong header size");
    if (header.fileSize != bytes.size()) {
        Fail("header", "the file has " + std::to_string(bytes.size()) + " bytes instead of " +
                           std::to_string(header.fileSize));
    }
    const std::byte* end = bytes.data() + bytes.size() - format::kEndMagic.size();
    if (Copy<std::array<char, 8>>(end) != format::kEndMagic) {
        Fail("trailer", "the end mark is missing: the package was not finished");
    }
    return header;
}

void CheckChecksum(Bytes bytes) {
    const std::size_t covered = bytes.size() - format::kTrailerSize;
    Sha256 hash;
    hash.Update(bytes.data(), covered);
    if (hash.Finish() != Copy<Sha256::Digest>(bytes.data() + covered)) {
        Fail("trailer", "the checksum does not match: the package was altered or damaged");
    }
}

/// The bytes [offset, offset + count * size), which have to lie between header and trailer.
Bytes Range(Bytes bytes, std::uint64_t offset, std::uint64_t count, std::size_t size,
            const std::string& place) {
    const std::uint64_t end = bytes.size() - format::kTrailerSize;
    if (offset < sizeof(format::Header) || offset > end) Fail(place, "starts outside of the file");
    if (count > (end - offset) / size) Fail(place, "ends outside of the file");
    return bytes.subspan(static_cast<std::size_t>(offset), static_cast<std::size_t>(count) * size);
}

template <class T>
std::span<const T> Typed(Bytes bytes) {
    return {reinterpret_cast<const T*>(bytes.data()), bytes.size() / sizeof(T)};
}

void RequireFinite(std::span<const double> numbers, const std::string& place) {
    if (!std::all_of(numbers.begin(), numbers.end(), [](double n) { return std::isfinite(n); })) {
        Fail(place, "a number is not finite");
    }
}

/// Whether [first, first + count) lies within a list of `size`.
bool Within(std::uint64_t first, std::uint64_t count, std::uint64_t size) {
    return first <= size && count <= size - first;
}

}  // namespace

std::string SceneError::Text() const {
    return file + ": " + (place.empty() ? "" : place + ": ") + message;
}

struct ScenePackage::Impl {
    ipc::mapped_region region;
    SceneDocument document;
    std::span<const double> positions;
    std::span<const std::uint32_t> indices;
    std::vector<format::GeometryRecord> geometries;
    std::span<const SceneInstance> instances;
    std::span<const format::PropertyRecord> properties;

    void Map(const std::filesystem::path& path);
    void Load();
    void LocateSections(Bytes bytes, const format::Header& header);
    void CheckGeometry(std::size_t index) const;
    void CheckInstances() const;
    void CheckProductInstances(std::size_t index, std::uint64_t expectedFirst) const;
    void CheckProperties() const;
    SceneProperty Property(std::uint64_t index) const;
};

void ScenePackage::Impl::Map(const std::filesystem::path& path) {
    std::error_code code;
    const auto size = std::filesystem::file_size(path, code);
    if (code) Fail("", "cannot be opened: " + code.message());
    // An empty file cannot be mapped.
    if (size == 0) Fail("header", "the file is empty");
    try {
        const ipc::file_mapping mapping(path.string().c_str(), ipc::read_only);
        region = ipc::mapped_region(mapping, ipc::read_only);
    } catch (const ipc::interprocess_exception& error) {
        Fail("", std::string("cannot be mapped: ") + error.what());
    }
}

void ScenePackage::Impl::Load() {
    const Bytes bytes(static_cast<const std::byte*>(region.get_address()), region.get_size());
    const format::Header header = CheckFrame(bytes);
    CheckChecksum(bytes);
    const Bytes json = Range(bytes, header.jsonOffset, header.jsonSize, 1, "header: json");
    document = ParseSceneDocument({reinterpret_cast<const char*>(json.data()), json.size()});
    LocateSections(bytes, header);
    for (std::size_t i = 0; i < geometries.size(); ++i)
        CheckGeometry(i);
    CheckInstances();
    CheckProperties();
}

void ScenePackage::Impl::LocateSections(Bytes bytes, const format::Header& header) {
    std::array<Bytes, format::kSectionCount> found;
    for (std::size_t i = 0; i < format::kSectionCount; ++i) {
        const auto& entry = header.sections[i];
        const std::string place = std::string("header: ") + format::kSectionName[i];
        if (entry.offset % format::kAlignment != 0) Fail(place, "is not aligned");
        found[i] = Range(bytes, entry.offset, entry.count, format::kRecordSize[i], place);
    }
    positions = Typed<double>(found[format::kPositions]);
    indices = Typed<std::uint32_t>(found[format::kIndices]);
    instances = Typed<SceneInstance>(found[format::kInstances]);
    properties = Typed<format::PropertyRecord>(found[format::kProperties]);
    const auto records = Typed<format::GeometryRecord>(found[format::kGeometries]);
    geometries.assign(records.begin(), records.end());
}

void ScenePackage::Impl::CheckGeometry(std::size_t index) const {
    const auto& record = geometries[index];
    const std::string place = Item("geometries", index);
    if (!Within(record.firstVertex, record.vertexCount, positions.size() / 3)) {
        Fail(place, "its vertices are out of range");
    }
    if (!Within(record.firstIndex, record.indexCount, indices.size())) {
        Fail(place, "its indices are out of range");
    }
    if (record.indexCount == 0 || record.indexCount % 3 != 0) {
        Fail(place, "its indices are not whole triangles");
    }
    const auto corners = indices.subspan(record.firstIndex, record.indexCount);
    if (*std::max_element(corners.begin(), corners.end()) >= record.vertexCount) {
        Fail(place, "a triangle has a corner that does not exist");
    }
    RequireFinite(positions.subspan(record.firstVertex * 3, record.vertexCount * 3), place);
    RequireFinite(record.boxMin, place);
    RequireFinite(record.boxMax, place);
    RequireFinite({&record.volume, 1}, place);
}

void ScenePackage::Impl::CheckInstances() const {
    for (std::size_t i = 0; i < instances.size(); ++i) {
        const SceneInstance& instance = instances[i];
        const std::string place = Item("instances", i);
        if (instance.geometry >= geometries.size()) Fail(place, "its geometry does not exist");
        RequireFinite(instance.transform, place);
        const auto& t = instance.transform;
        if (t[12] != 0.0 || t[13] != 0.0 || t[14] != 0.0 || t[15] != 1.0) {
            Fail(place, "its transform is not affine");
        }
    }
    std::uint64_t expectedFirst = 0;
    for (std::size_t i = 0; i < document.products.size(); ++i) {
        CheckProductInstances(i, expectedFirst);
        expectedFirst += document.products[i].instanceCount;
    }
    if (expectedFirst != instances.size()) Fail("instances", "some belong to no product");
}

void ScenePackage::Impl::CheckProductInstances(std::size_t index,
                                               std::uint64_t expectedFirst) const {
    const SceneProduct& product = document.products[index];
    const std::string place = Item("products", index);
    if (product.firstInstance != expectedFirst ||
        !Within(product.firstInstance, product.instanceCount, instances.size())) {
        Fail(place, "its instances are out of range");
    }
    for (const SceneInstance& instance :
         instances.subspan(product.firstInstance, product.instanceCount)) {
        if (instance.product != index) Fail(place, "an instance belongs to another product");
    }
}

void ScenePackage::Impl::CheckProperties() const {
    const std::size_t stringCount = document.strings.size();
    for (std::size_t i = 0; i < properties.size(); ++i) {
        const auto& record = properties[i];
        const std::string place = Item("properties", i);
        if (std::max({record.set, record.name, record.value}) >= stringCount) {
            Fail(place, "its text does not exist");
        }
        if (record.kind > static_cast<std::uint32_t>(PropertyKind::Boolean)) {
            Fail(place, "its kind is unknown");
        }
        RequireFinite({&record.number, 1}, place);
    }
    for (std::size_t i = 0; i < document.products.size(); ++i) {
        const SceneProduct& product = document.products[i];
        if (!Within(product.firstProperty, product.propertyCount, properties.size())) {
            Fail(Item("products", i), "its properties are out of range");
        }
    }
}

SceneProperty ScenePackage::Impl::Property(std::uint64_t index) const {
    const auto& record = properties[index];
    const auto& strings = document.strings;
    return {strings[record.set], strings[record.name], strings[record.value],
            static_cast<PropertyKind>(record.kind), record.number};
}

std::optional<ScenePackage> ScenePackage::Open(const std::filesystem::path& path,
                                               SceneError& error) {
    auto impl = std::make_unique<Impl>();
    try {
        impl->Map(path);
        impl->Load();
    } catch (const SceneFormatError& failure) {
        error = {Utf8(path), failure.Place(), failure.what()};
        return std::nullopt;
    } catch (const std::exception& failure) {
        error = {Utf8(path), "", failure.what()};
        return std::nullopt;
    }
    return ScenePackage(std::move(impl));
}

ScenePackage::ScenePackage(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {}
ScenePackage::ScenePackage(ScenePackage&&) noexcept = default;
ScenePackage& ScenePackage::operator=(ScenePackage&&) noexcept = default;
ScenePackage::~ScenePackage() = default;

const SceneFileInfo& ScenePackage::File() const {
    return impl_->document.file;
}
const std::vector<SceneSpatial>& ScenePackage::Sites() const {
    return impl_->document.sites;
}
const std::vector<SceneSpatial>& ScenePackage::Buildings() const {
    return impl_->document.buildings;
}
const std::vector<SceneStorey>& ScenePackage::Storeys() const {
    return impl_->document.storeys;
}
const std::vector<SceneProduct>& ScenePackage::Products() const {
    return impl_->document.products;
}
const std::vector<SceneSystem>& ScenePackage::Systems() const {
    return impl_->document.systems;
}
const std::vector<SceneGrid>& ScenePackage::Grids() const {
    return impl_->document.grids;
}
const SceneRelations& ScenePackage::Relations() const {
    return impl_->document.relations;
}
const std::vector<SceneWarning>& ScenePackage::Warnings() const {
    return impl_->document.warnings;
}

std::size_t ScenePackage::GeometryCount() const {
    return impl_->geometries.size();
}

SceneGeometry ScenePackage::Geometry(std::size_t index) const {
    const auto& record = impl_->geometries[index];
    return {impl_->positions.subspan(record.firstVertex * 3, record.vertexCount * 3),
            impl_->indices.subspan(record.firstIndex, record.indexCount),
            {record.boxMin, record.boxMax},
            record.volume};
}

std::span<const SceneInstance> ScenePackage::Instances() const {
    return impl_->instances;
}

std::span<const SceneInstance> ScenePackage::Instances(const SceneProduct& product) const {
    return impl_->instances.subspan(product.firstInstance, product.instanceCount);
}

std::vector<SceneProperty> ScenePackage::Properties(const SceneProduct& product) const {
    std::vector<SceneProperty> list;
    list.reserve(product.propertyCount);
    for (std::uint64_t i = 0; i < product.propertyCount; ++i) {
        list.push_back(impl_->Property(product.firstProperty + i));
    }
    return list;
}

std::optional<SceneProperty> ScenePackage::FindProperty(const SceneProduct& product,
                                                        std::string_view set,
                                                        std::string_view name) const {
    for (std::uint64_t i = 0; i < product.propertyCount; ++i) {
        const SceneProperty property = impl_->Property(product.firstProperty + i);
        if (property.name == name && (set.empty() || property.set == set)) return property;
    }
    return std::nullopt;
}

}  // namespace ifchost
