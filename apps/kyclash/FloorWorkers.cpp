// SPDX-License-Identifier: Apache-2.0
#include "kyclash/FloorWorkers.h"

#include "KYCollisionBase/KYCollisionBase.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <set>
#include <stdexcept>
#include <string>
#include <unordered_map>
#include <utility>

#include "ifchost/HostText.h"
#include "kyclash/Interrupt.h"
#include "platform/Workers.h"

namespace kyclash {
namespace {

using ifchost::BodyNote;
using KYCOLLISION::LOGIC::CCollisionCheck;
using KYCOLLISION::MODEL::ObjectModelInfo;
using KYCOLLISION::MODEL::SCollisionWithObj;
using KYCOLLISION::MODEL::WorkSetModelInfo;
using QNIM::GeometryPrimitiveResource::CQNIMPosition;

// A clash on its way between two processes; components by their place in the model's walk.
struct WireClash {
    std::uint32_t owner;
    std::uint32_t other;
    double point[3];
    std::int32_t ownOffset;
    std::int32_t otherOffset;
};

struct WireNote {
    std::uint32_t component;
    std::uint32_t defect;
    std::uint32_t textSize;
};

template <class Record>
void Put(const Record& record, std::FILE* out) {
    if (std::fwrite(&record, sizeof(record), 1, out) != 1) {
        throw std::runtime_error("a worker process cannot write its findings");
    }
}

template <class Record>
Record Get(std::FILE* in) {
    Record record{};
    if (std::fread(&record, sizeof(record), 1, in) != 1) {
        throw std::runtime_error("the findings of a worker process are cut short");
    }
    return record;
}

std::vector<ObjectModelInfo*> ObjectsOf(CCollisionCheck& check) {
    std::vector<ObjectModelInfo*> objects;
    const auto& root = dynamic_cast<const WorkSetModelInfo&>(*check.GetCollisionModel());
    for (const auto& [id, project] : root.GetProjects()) {
        for (const auto& [name, floor] : project->GetFloors()) {
            for (const auto& [path, category] : floor->GetCategories()) {
                for (const auto& [guid, object] : category->GetObjects())
                    objects.push_back(object);
            }
        }
    }
    return objects;
}

// What the check of one floor found.
struct Findings {
    std::vector<WireClash> clashes;
    std::vector<BodyNote> notes;
    bool isComplete = false;
};

void WriteFindings(const std::vector<ObjectModelInfo*>& objects, const std::vector<BodyNote>& notes,
                   std::FILE* out) {
    std::unordered_map<const ObjectModelInfo*, std::uint32_t> places;
    std::uint64_t count = 0;
    for (const ObjectModelInfo* object : objects) {
        places.emplace(object, static_cast<std::uint32_t>(places.size()));
        count += object->GetCollisionObjs().size();
    }
    Put(count, out);
    for (const ObjectModelInfo* object : objects) {
        for (const SCollisionWithObj& clash : object->GetCollisionObjs()) {
            const CQNIMPosition& p = clash.clashPoint;
            Put(WireClash{places.at(object),
                          places.at(clash.other),
                          {p.GetX(), p.GetY(), p.GetZ()},
                          clash.ownBodyOffset,
                          clash.otherBodyOffset},
                out);
        }
    }
    Put(std::uint64_t{notes.size()}, out);
    for (const BodyNote& note : notes) {
        Put(WireNote{note.component, static_cast<std::uint32_t>(note.defect),
                     static_cast<std::uint32_t>(note.text.size())},
            out);
        for (const char c : note.text)
            Put(c, out);
    }
}

Findings ReadFindings(std::FILE* in) {
    Findings findings;
    const auto clashes = Get<std::uint64_t>(in);
    for (std::uint64_t i = 0; i < clashes; ++i)
        findings.clashes.push_back(Get<WireClash>(in));
    const auto notes = Get<std::uint64_t>(in);
    for (std::uint64_t i = 0; i < notes; ++i) {
        const auto note = Get<WireNote>(in);
        std::string text;
        for (std::uint32_t k = 0; k < note.textSize; ++k)
            text += Get<char>(in);
        findings.notes.push_back(
            {note.component, static_cast<ifchost::BodyDefect>(note.defect), std::move(text)});
    }
    return findings;
}

// What a floor before has recorded already stays as it is, as it would in one process.
void Record(const std::vector<WireClash>& clashes, const std::vector<ObjectModelInfo*>& objects) {
    std::set<std::pair<std::uint32_t, std::uint32_t>> known;
    for (const WireClash& clash : clashes) {
        CQNIMPosition ignored;
        if (objects.at(clash.owner)->IsHadCollisionWith(objects.at(clash.other), ignored)) {
            known.emplace(clash.owner, clash.other);
        }
    }
    for (const WireClash& clash : clashes) {
        if (known.count({clash.owner, clash.other}) != 0) continue;
        const CQNIMPosition point(clash.point[0], clash.point[1], clash.point[2]);
        objects[clash.owner]->AppendCollisionObj(
            {objects[clash.other], point, clash.ownOffset, clash.otherOffset});
    }
}

// The largest floors first, so that no worker is left with one at the end.
std::vector<std::size_t> LargestFirst(CCollisionCheck& check,
                                      const std::vector<SCollisionFloor>& floors) {
    std::vector<std::pair<int, std::size_t>> sizes;
    for (std::size_t i = 0; i < floors.size(); ++i)
        sizes.emplace_back(-check.GetAllObjectNum(floors[i].floorKeys), i);
    std::sort(sizes.begin(), sizes.end());
    std::vector<std::size_t> order;
    for (const auto& [size, floor] : sizes)
        order.push_back(floor);
    return order;
}

}  // namespace

WorkersOutcome CheckInWorkers(CCollisionCheck& check, const ifchost::IfcDataSource& source,
                              const std::vector<SCollisionFloor>& floors, std::size_t jobs,
                              Progress& progress) {
    check.ResetCollisionTempData();
    const std::vector<ObjectModelInfo*> objects = ObjectsOf(check);
    std::vector<Findings> found(floors.size());
    std::size_t doneFloors = 0;
    const auto work = [&](std::size_t floor, std::FILE* out) {
        const auto end = check.CollisionCheck({floors[floor]});
        WriteFindings(objects, source.BodyNotes(), out);
        return end == KYCOLLISION::LOGIC::CHECK_SUCCESS;
    };
    const auto done = [&](std::size_t floor, bool isWhole, std::FILE* in) {
        if (!isWhole && !Interrupt::Requested()) {
            throw std::runtime_error("the check of floor " + ifchost::ToUtf8(floors[floor].name) +
                                     " failed in its worker process");
        }
        if (isWhole) found[floor] = ReadFindings(in);
        found[floor].isComplete = isWhole;
        progress.Show("check", "floors", ++doneFloors, floors.size());
    };
    RunInWorkers(LargestFirst(check, floors), jobs, work, done, Interrupt::Requested());
    progress.Clear();

    WorkersOutcome outcome;
    std::set<std::pair<std::uint32_t, ifchost::BodyDefect>> noted;
    for (const Findings& findings : found) {
        outcome.stopped = outcome.stopped || !findings.isComplete;
        Record(findings.clashes, objects);
        for (const BodyNote& note : findings.notes) {
            if (noted.emplace(note.component, note.defect).second) outcome.notes.push_back(note);
        }
    }
    return outcome;
}

}  // namespace kyclash
