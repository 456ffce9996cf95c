// SPDX-License-Identifier: Apache-2.0
#include "ProductFates.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

#include "IfcClasses.h"

namespace ifchost {
namespace {

using KYCOLLISION::MODEL::AttCategory;

// Parts that hold less of an assembly's volume than this lie in its body; they are not its body.
constexpr double kDoubledShare = 0.5;

AttCategory WallOpening() {
    AttCategory category;
    category.specialty = L"土建";
    category.dalei = L"门.窗.洞";
    category.xiaolei = L"墙洞";
    return category;
}

AttCategory SlabOpening() {
    AttCategory category;
    category.specialty = L"土建";
    category.dalei = L"板.楼梯";
    category.xiaolei = L"板洞";
    return category;
}

double Extent(const SceneBox& box, std::size_t axis) {
    return box.max[axis] - box.min[axis];
}

// Classes that say how they lie; anything else is judged by its box.
bool LiesFlat(const SceneProduct& host) {
    for (const char* flat : {"IfcSlab", "IfcRoof", "IfcRamp", "IfcRampFlight", "IfcStairFlight"}) {
        if (IsKindOf(host.ifcClass, flat)) return true;
    }
    for (const char* upright : {"IfcWall", "IfcBeam", "IfcColumn", "IfcCurtainWall"}) {
        if (IsKindOf(host.ifcClass, upright)) return false;
    }
    return host.box && Extent(*host.box, 2) < std::min(Extent(*host.box, 0), Extent(*host.box, 1));
}

// Cut-outs of furniture and of equipment, as that for a sink, are in no wall or slab.
bool HasOpenings(const SceneProduct& host) {
    return !IsKindOf(host.ifcClass, "IfcFurnishingElement") &&
           !IsKindOf(host.ifcClass, "IfcDistributionElement");
}

class Decider {
  public:
    Decider(const ScenePackage& package, const Classification& classification,
            std::string_view file)
        : package_(package),
          decisions_(package.Products().size()),
          mapped_(package.Products().size()),
          parts_(package.Products().size()),
          volumeInParts_(package.Products().size()) {
        for (std::size_t i = 0; i < mapped_.size(); ++i) {
            if (!IsElement(i)) continue;
            mapped_[i] = classification.Classify(FactsOf(package, i, file));
            if (Product(i).parent != kNoIndex) parts_[Parent(i)].push_back(i);
        }
    }

    std::vector<ProductDecision> Decide() {
        for (std::size_t i = 0; i < decisions_.size(); ++i) {
            if (!IsElement(i)) decisions_[i].note = Product(i).meshNote;
        }
        DecideElements();
        DecideOpenings();
        return std::move(decisions_);
    }

  private:
    const SceneProduct& Product(std::size_t i) const { return package_.Products()[i]; }
    bool IsElement(std::size_t i) const { return Product(i).role == ProductRole::Element; }
    std::size_t Parent(std::size_t i) const { return static_cast<std::size_t>(Product(i).parent); }

    // The rules' answer, with "like its assembly" followed upward.
    MappingResult Resolve(std::size_t i) const {
        MappingResult result = mapped_[i];
        std::size_t at = i;
        // No chain of assemblies is longer than there are products, unless it goes in a circle.
        for (std::size_t steps = 0; result.outcome == MappingOutcome::LikeAssembly; ++steps) {
            const bool isPart = Product(at).parent != kNoIndex && steps < mapped_.size();
            if (!isPart || !IsElement(Parent(at))) return {};
            at = Parent(at);
            result = mapped_[at];
        }
        return result;
    }

    // Parts come first, because what becomes of an assembly depends on them.
    void DecideElements() {
        std::vector<std::size_t> open(decisions_.size());
        std::vector<std::size_t> ready;
        for (std::size_t i = 0; i < decisions_.size(); ++i) {
            open[i] = parts_[i].size();
            if (IsElement(i) && open[i] == 0) ready.push_back(i);
        }
        std::vector<bool> done(decisions_.size());
        while (!ready.empty()) {
            const std::size_t i = ready.back();
            ready.pop_back();
            DecideElement(i);
            done[i] = true;
            if (Product(i).parent == kNoIndex || !IsElement(Parent(i))) continue;
            if (--open[Parent(i)] == 0) ready.push_back(Parent(i));
        }
        // What is left goes round in a circle of parts; nothing can be said about their order.
        for (std::size_t i = 0; i < decisions_.size(); ++i) {
            if (IsElement(i) && !done[i]) DecideElement(i);
        }
    }

    void DecideElement(std::size_t i) {
        decisions_[i] =
            Product(i).meshState == MeshState::Meshed ? DecideMeshed(i) : DecideWithoutMesh(i);
        if (Product(i).parent == kNoIndex) return;
        const ProductFate fate = decisions_[i].fate;
        if (fate == ProductFate::Checked) volumeInParts_[Parent(i)] += Volume(i);
        if (fate == ProductFate::ThroughParts) volumeInParts_[Parent(i)] += volumeInParts_[i];
    }

    ProductDecision DecideMeshed(std::size_t i) const {
        const MappingResult mapped = Resolve(i);
        ProductDecision decision;
        decision.rule = mapped.rule;
        if (mapped.outcome == MappingOutcome::LeftOut) {
            decision.fate = ProductFate::LeftOut;
            decision.note = mapped.reason;
        } else if (mapped.outcome == MappingOutcome::Unmapped) {
            decision.fate = ProductFate::Unmapped;
        } else if (IsDoubledByParts(i)) {
            decision.fate = ProductFate::ThroughParts;
            decision.note = "its own body repeats that of its parts";
        } else {
            decision.fate = ProductFate::Checked;
            decision.category = mapped.category;
        }
        return decision;
    }

    ProductDecision DecideWithoutMesh(std::size_t i) const {
        ProductDecision decision;
        decision.note = Product(i).meshNote;
        const bool hasParts =
            std::any_of(parts_[i].begin(), parts_[i].end(), [this](std::size_t part) {
                return decisions_[part].fate == ProductFate::Checked ||
                       decisions_[part].fate == ProductFate::ThroughParts;
            });
        if (hasParts) {
            decision.fate = ProductFate::ThroughParts;
        } else if (Product(i).meshState == MeshState::Failed) {
            decision.fate = ProductFate::FailedBody;
        } else if (Product(i).meshState == MeshState::Empty) {
            decision.fate = ProductFate::EmptyBody;
        } else {
            decision.fate = ProductFate::NoGeometry;
        }
        return decision;
    }

    double Volume(std::size_t i) const { return std::abs(Product(i).meshVolume.value_or(0.0)); }

    bool IsDoubledByParts(std::size_t i) const {
        return volumeInParts_[i] > 0.0 && volumeInParts_[i] >= kDoubledShare * Volume(i);
    }

    void DecideOpenings() {
        for (std::size_t i = 0; i < decisions_.size(); ++i) {
            if (Product(i).role != ProductRole::Opening) continue;
            decisions_[i].note = "an opening that no element has";
            if (!IsKindOf(Product(i).ifcClass, "IfcOpeningElement")) {
                decisions_[i].note = "a feature that is cut from its host";
            } else if (Product(i).predefinedType == "RECESS") {
                decisions_[i].note = "a recess is no opening";
            }
        }
        for (const ScenePair& pair : package_.Relations().voids)
            ListOpening(pair);
        for (const ScenePair& pair : package_.Relations().fills)
            LeaveToFilling(pair);
    }

    void ListOpening(const ScenePair& pair) {
        const SceneProduct& opening = Product(pair.first);
        if (opening.role != ProductRole::Opening || opening.predefinedType == "RECESS" ||
            !IsKindOf(opening.ifcClass, "IfcOpeningElement")) {
            return;
        }
        ProductDecision& decision = decisions_[pair.first];
        if (!HasOpenings(Product(pair.second))) {
            decision.note = "a cut-out of furniture or equipment is no opening";
            return;
        }
        decision.fate = ProductFate::ListedOpening;
        decision.role = ComponentRole::Opening;
        decision.category = LiesFlat(Product(pair.second)) ? SlabOpening() : WallOpening();
        decision.note.clear();
    }

    void LeaveToFilling(const ScenePair& pair) {
        ProductDecision& opening = decisions_[pair.first];
        if (Product(pair.first).role != ProductRole::Opening) return;
        if (decisions_[pair.second].fate != ProductFate::Checked) return;
        opening = {};
        opening.fate = ProductFate::FilledOpening;
    }

    const ScenePackage& package_;
    std::vector<ProductDecision> decisions_;
    std::vector<MappingResult> mapped_;
    std::vector<std::vector<std::size_t>> parts_;
    std::vector<double> volumeInParts_;  // of the bodies that stand for the parts
};

}  // namespace

std::vector<ProductDecision> DecideProducts(const ScenePackage& package,
                                            const Classification& classification,
                                            std::string_view file) {
    return Decider(package, classification, file).Decide();
}

}  // namespace ifchost
