// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/ui/GltfWriter.h"

#include "KYCollisionBase/ui/SceneRecorder.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <numbers>
#include <numeric>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Text.h"

namespace kycb {
namespace {

using QNIM::GeometryPrimitiveResource::CQNIMPosition;

constexpr double kMetresPerMillimetre = 0.001;

// Constants of the file format.
constexpr int kModeLines = 1;
constexpr int kComponentFloat = 5126;
constexpr int kTargetArrayBuffer = 34962;
constexpr std::size_t kBytesPerPoint = 12;

struct Bounds {
    std::array<double, 3> low;
    std::array<double, 3> high;

    Bounds() {
        low.fill(std::numeric_limits<double>::infinity());
        high.fill(-std::numeric_limits<double>::infinity());
    }

    void Add(const CQNIMPosition& point) {
        const std::array<double, 3> values{point.GetX(), point.GetY(), point.GetZ()};
        for (std::size_t i = 0; i < 3; ++i) {
            low[i] = std::min(low[i], values[i]);
            high[i] = std::max(high[i], values[i]);
        }
    }

    bool IsEmpty() const { return low[0] > high[0]; }

    CQNIMPosition Middle() const {
        if (IsEmpty()) return {};
        return {std::midpoint(low[0], high[0]), std::midpoint(low[1], high[1]),
                std::midpoint(low[2], high[2])};
    }
};

// The ends of all lines of a node: two points a line.
using LineEnds = std::vector<CQNIMPosition>;

// One node of the file, in the order of the file's node list.
struct FileNode {
    std::wstring name;
    SQNGIRGBClr color;
    LineEnds lines;
    std::vector<std::size_t> children;
};

std::size_t Collect(const RecordedNode& node, std::vector<FileNode>& nodes) {
    const std::size_t index = nodes.size();
    nodes.push_back({node.Name(), node.Color(), LinePoints(node), {}});
    for (const auto& child : node.Children()) {
        const std::size_t below = Collect(*child, nodes);
        nodes[index].children.push_back(below);
    }
    return index;
}

std::string Number(double value) {
    std::array<char, 32> digits;
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
    return {digits.data(), end};
}

std::string Number(std::size_t value) {
    return std::to_string(value);
}
std::string Number(int value) {
    return std::to_string(value);
}

std::string Quoted(const std::wstring& name) {
    constexpr std::string_view kHex = "0123456789abcdef";
    std::string quoted = "\"";
    for (const char byte : text::ToUtf8(name)) {
        const auto code = static_cast<unsigned char>(byte);
        if (byte == '"' || byte == '\\') {
            quoted += {'\\', byte};
        } else if (code < 0x20) {
            quoted += {'\\', 'u', '0', '0', kHex[code >> 4U], kHex[code & 15U]};
        } else {
            quoted += byte;
        }
    }
    return quoted + '"';
}

template <class Range, class Write>
std::string Array(const Range& range, Write write) {
    std::string text = "[";
    for (const auto& each : range) {
        if (text.size() > 1) text += ',';
        text += write(each);
    }
    return text + "]";
}

std::string Triple(double x, double y, double z) {
    return "[" + Number(x) + "," + Number(y) + "," + Number(z) + "]";
}

std::string Base64(const std::vector<std::uint8_t>& bytes) {
    constexpr std::string_view kDigits =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        const std::size_t count = std::min<std::size_t>(3, bytes.size() - i);
        std::uint32_t group = 0;
        for (std::size_t k = 0; k < 3; ++k)
            group = (group << 8U) | (k < count ? bytes[i + k] : 0U);
        for (std::size_t k = 0; k < 4; ++k)
            text += k <= count ? kDigits[(group >> (18U - 6U * k)) & 63U] : '=';
    }
    return text;
}

// Little-endian, whatever the machine.
void AppendFloat(double value, std::vector<std::uint8_t>& bytes) {
    const auto bits = std::bit_cast<std::uint32_t>(static_cast<float>(value));
    for (unsigned shift = 0; shift < 32; shift += 8)
        bytes.push_back(static_cast<std::uint8_t>(bits >> shift));
}

// The file's lists that belong to nodes with lines, one entry each.
class MeshLists {
  public:
    explicit MeshLists(const CQNIMPosition& origin) : origin_(origin) {}

    // Returns the number of the mesh.
    std::size_t Add(const FileNode& node) {
        const std::string index = Number(meshes_.size());
        const std::size_t offset = bytes_.size();
        Bounds bounds;
        for (const CQNIMPosition& point : node.lines) {
            const CQNIMPosition local = Rounded(point);
            bounds.Add(local);
            AppendFloat(local.GetX(), bytes_);
            AppendFloat(local.GetY(), bytes_);
            AppendFloat(local.GetZ(), bytes_);
        }
        meshes_.push_back(R"({"primitives":[{"mode":)" + Number(kModeLines) + R"(,"material":)" +
                          index + R"(,"attributes":{"POSITION":)" + index + "}}]}");
        materials_.push_back(R"({"pbrMetallicRoughness":{"baseColorFactor":[)" +
                             Linear(node.color.red) + "," + Linear(node.color.green) + "," +
                             Linear(node.color.blue) +
                             R"(,1]},"extensions":{"KHR_materials_unlit":{}}})");
        accessors_.push_back(R"({"bufferView":)" + index + R"(,"componentType":)" +
                             Number(kComponentFloat) + R"(,"type":"VEC3","count":)" +
                             Number(node.lines.size()) + R"(,"min":)" +
                             Triple(bounds.low[0], bounds.low[1], bounds.low[2]) + R"(,"max":)" +
                             Triple(bounds.high[0], bounds.high[1], bounds.high[2]) + "}");
        views_.push_back(R"({"buffer":0,"byteOffset":)" + Number(offset) + R"(,"byteLength":)" +
                         Number(node.lines.size() * kBytesPerPoint) + R"(,"target":)" +
                         Number(kTargetArrayBuffer) + "}");
        return meshes_.size() - 1;
    }

    // Lists that would be empty are left out, as the format demands.
    void Write(std::ostream& out) const {
        if (meshes_.empty()) return;
        const auto asIs = [](const std::string& text) { return text; };
        out << R"(,"extensionsUsed":["KHR_materials_unlit"])";
        out << R"(,"meshes":)" << Array(meshes_, asIs);
        out << R"(,"materials":)" << Array(materials_, asIs);
        out << R"(,"accessors":)" << Array(accessors_, asIs);
        out << R"(,"bufferViews":)" << Array(views_, asIs);
        out << R"(,"buffers":[{"byteLength":)" << Number(bytes_.size())
            << R"(,"uri":"data:application/octet-stream;base64,)" << Base64(bytes_) << R"("}])";
    }

  private:
    // Bounds must equal the stored numbers, so both come from the rounded ones.
    CQNIMPosition Rounded(const CQNIMPosition& point) const {
        const auto round = [](double value) {
            return static_cast<double>(static_cast<float>(value));
        };
        return {round(point.GetX() - origin_.GetX()), round(point.GetY() - origin_.GetY()),
                round(point.GetZ() - origin_.GetZ())};
    }

    // The format wants linear light; colours on screens are sRGB (IEC 61966-2-1).
    static std::string Linear(std::uint8_t component) {
        const double value = component / 255.0;
        return Number(value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4));
    }

    CQNIMPosition origin_;
    std::vector<std::string> meshes_;
    std::vector<std::string> materials_;
    std::vector<std::string> accessors_;
    std::vector<std::string> views_;
    std::vector<std::uint8_t> bytes_;
};

// Millimetres and z up become metres and y up: a turn by -90 degrees about x, and a scale.
std::string SceneTransform(const CQNIMPosition& origin) {
    const std::string half = Number(std::numbers::sqrt2 / 2.0);
    return R"("rotation":[-)" + half + ",0,0," + half + R"(],"scale":)" +
           Triple(kMetresPerMillimetre, kMetresPerMillimetre, kMetresPerMillimetre) +
           R"(,"translation":)" +
           Triple(origin.GetX() * kMetresPerMillimetre, origin.GetZ() * kMetresPerMillimetre,
                  -origin.GetY() * kMetresPerMillimetre);
}

CQNIMPosition MiddleOf(const std::vector<FileNode>& nodes) {
    Bounds bounds;
    for (const FileNode& node : nodes) {
        for (const CQNIMPosition& point : node.lines)
            bounds.Add(point);
    }
    return bounds.Middle();
}

}  // namespace

void WriteGltf(const SceneRecorder& scene, std::ostream& out) {
    std::vector<FileNode> nodes;
    Collect(scene.Root(), nodes);
    const CQNIMPosition origin = MiddleOf(nodes);
    MeshLists meshes(origin);
    bool isRoot = true;
    const auto writeNode = [&](const FileNode& node) {
        std::string text = R"({"name":)" + Quoted(isRoot ? L"scene" : node.name);
        if (isRoot) text += "," + SceneTransform(origin);
        isRoot = false;
        if (!node.lines.empty()) text += R"(,"mesh":)" + Number(meshes.Add(node));
        if (!node.children.empty()) {
            text += R"(,"children":)" +
                    Array(node.children, [](std::size_t child) { return Number(child); });
        }
        return text + "}";
    };
    out << R"({"asset":{"version":"2.0","generator":"KYCollisionBase"},"scene":0)"
        << R"(,"scenes":[{"nodes":[0]}],"nodes":)" << Array(nodes, writeNode);
    meshes.Write(out);
    out << "}\n";
}

}  // namespace kycb
