// SPDX-License-Identifier: Apache-2.0
#include "scenes/Comparison.h"

#include <iterator>
#include <ostream>
#include <sstream>

#include "platform/Text.h"
#include "scenes/reference/Reference.h"

namespace kycb::scenes {

using reference::Reference;

namespace {

std::string Utf8(const std::wstring& text) {
    return text::ToUtf8(text);
}

/// The scene without the components, rules and axes that its difference does not need.
Scene Reduced(Scene scene, Walk walk) {
    const auto dropFrom = [&](auto& items) {
        for (auto i = std::ssize(items); i-- > 0;) {
            const auto before = items;
            items.erase(items.begin() + i);
            if (!DifferenceIn(scene, walk)) items = before;
        }
    };
    dropFrom(scene.components);
    dropFrom(scene.runs);
    for (SceneRun& run : scene.runs) {
        dropFrom(run.rules);
    }
    for (auto& [key, axes] : scene.axes) {
        dropFrom(axes);
    }
    return scene;
}

void Describe(std::ostream& out, const SceneComponent& c) {
    out << "'" << Utf8(c.guid) << "' (" << Utf8(c.objectId) << ") on " << c.projectId << ":"
        << Utf8(c.floorName) << ", " << Utf8(c.category.specialty) << "/" << Utf8(c.category.dalei)
        << "/" << Utf8(c.category.xiaolei) << ", named '" << Utf8(c.name) << "', box "
        << c.box.GetMinX() << "," << c.box.GetMinY() << "," << c.box.GetMinZ() << " to "
        << c.box.GetMaxX() << "," << c.box.GetMaxY() << "," << c.box.GetMaxZ();
    for (const auto& [name, value] : c.attributes) {
        out << ", " << Utf8(name) << " '" << Utf8(value) << "'";
    }
    out << "\n";
}

void Describe(std::ostream& out, const SceneRule& rule) {
    out << "  rule " << Utf8(rule.path) << (rule.valid ? "" : " (off)") << " mode " << rule.modeType
        << " tolerance " << rule.tolerance;
    if (rule.filter) out << " filter '" << Utf8(*rule.filter) << "'";
    for (const SceneExclude& exclude : rule.excludes) {
        out << " excludes " << Utf8(exclude.key) << ":" << exclude.item.level << " "
            << Utf8(exclude.item.dalei) << "/" << Utf8(exclude.item.xiaolei);
    }
    out << "\n";
}

void Describe(std::ostream& out, const SceneRun& run) {
    for (const SCollisionFloor& floor : run.floors) {
        out << "  checks";
        for (const FloorKey& key : floor.floorKeys) {
            out << " " << key.first << ":" << Utf8(key.second);
        }
        out << "\n";
    }
    if (run.stopAtMeshCall) out << "  stops at mesh " << *run.stopAtMeshCall << "\n";
    for (const SceneRule& rule : run.rules) {
        Describe(out, rule);
    }
}

void Describe(std::ostream& out, const SceneAxis& axis) {
    out << "  axis " << Utf8(axis.name) << " " << axis.x0 << "," << axis.y0;
    if (axis.radius) {
        out << " radius " << *axis.radius << " from " << axis.startAngle << " over "
            << axis.sweepAngle << "\n";
    } else {
        out << " to " << axis.x1 << "," << axis.y1 << "\n";
    }
}

void Describe(std::ostream& out, const Scene& scene) {
    for (std::size_t i = 0; i < scene.components.size(); ++i) {
        out << "  " << i << ": ";
        Describe(out, scene.components[i]);
    }
    for (const SceneRun& run : scene.runs) {
        Describe(out, run);
    }
    for (const auto& [key, axes] : scene.axes) {
        for (const SceneAxis& axis : axes) {
            Describe(out, axis);
        }
    }
}

}  // namespace

std::optional<std::string> DifferenceIn(const Scene& scene, Walk walk) {
    LibrarySession library(scene, walk);
    Reference reference(scene);
    if (auto d = Difference(reference.GetNeighbours(), library.GetNeighbours())) return d;
    for (const SceneRun& run : scene.runs) {
        if (auto d = Difference(reference.Check(run), library.Check(run))) return d;
        const ResultOutcome expected = reference.GetResults(run);
        if (auto d = Difference(expected, library.GetResults(run))) return d;
        for (const auto& [key, items] : expected.items) {
            for (const ResultFields& item : items) {
                if (auto d = Difference(reference.Refresh(item), library.Refresh(item))) return d;
            }
        }
        if (auto d = Difference(reference.GetHoles(run), library.GetHoles(run))) return d;
    }
    return std::nullopt;
}

std::string Explain(const Scene& scene, Walk walk) {
    const Scene reduced = Reduced(scene, walk);
    std::ostringstream out;
    out << "seed " << scene.seed << ": " << DifferenceIn(reduced, walk).value_or("none") << "\n";
    Describe(out, reduced);
    return out.str();
}

}  // namespace kycb::scenes
