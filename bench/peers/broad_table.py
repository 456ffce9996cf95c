# SPDX-License-Identifier: Apache-2.0
"""The neighbour search's part of bench/peers/compare."""
import os
import re
import statistics
import subprocess

OWN = "own"
# Boxes in all -> how many times faster than the best peer the lists of neighbours must be there.
TARGETS = {100_000: 5, 1_000_000: 5}
ROW = re.compile(r"^(\S+)\s+([\d.]+)\s+[\d.]+\s+(\d+) \|\s+([\d.]+)\s+[\d.]+\s+(\d+)\s")


def own_times(file):
    """Seconds of our search by number of boxes: all floors at once, and floor by floor.

    A line is one run: boxes, floors, seconds. A run over several floors begins a repetition, in
    which the runs over each floor alone follow.
    """
    at_once, by_floor = {}, {}
    for line in open(file):
        boxes, floors, seconds = line.split()
        if int(floors) > 1:
            size = int(boxes)
            at_once.setdefault(size, []).append(float(seconds))
            by_floor.setdefault(size, []).append(0.0)
        else:
            by_floor[size][-1] += float(seconds)
    return {size: (statistics.median(at_once[size]), statistics.median(by_floor[size]))
            for size in at_once}


def peer_times(output):
    """(seconds, pairs) of each peer by number of boxes, at once and floor by floor."""
    tables = {}
    for line in output.splitlines():
        if line.startswith("## "):
            table = tables.setdefault(int(line.split()[1]), {})
        elif row := ROW.match(line):
            name, at_once, pairs, floors, floor_pairs = row.groups()
            table[name] = ((float(at_once) / 1e3, int(pairs)), (float(floors) / 1e3,
                                                                int(floor_pairs)))
    return tables


def measure(program, reps, sizes, file):
    output = subprocess.run(
        [program, "--reps", str(reps), "--n", ",".join(map(str, sizes))], check=True,
        capture_output=True, text=True, env={**os.environ, "KYCB_BROAD_TIMES": str(file)}).stdout
    return peer_times(output), own_times(file)


def judge(size, which, peers, ours):
    name = "%d boxes, %s" % (size, ("all floors" if which == 0 else "floor by floor"))
    pairs = {row[which][1] for row in peers.values()}
    times = {peer: row[which][0] for peer, row in peers.items() if peer != OWN}
    best = min(times, key=times.get)
    ratio = times[best] / ours
    notes = []
    if len(pairs) > 1:
        notes.append("WRONG PAIRS")
    target = TARGETS.get(size)
    if target and ratio < target:
        notes.append("below the target")
    print("%-28s %-20s %11.2f %10.2f %8.2f %8s  %s" % (
        name, best, times[best] * 1e3, ours * 1e3, ratio, "%gx" % target if target else "-",
        ", ".join(notes) or "met"))
    return not notes


def compare(program, reps, sizes, file):
    """Prints the table and says whether every target is met.

    Ours is what the library does between components with boxes and their lists of neighbours,
    both ways and in order; the others' is the whole of finding every pair once.
    """
    peers, own = measure(program, reps, sizes, file)
    print("\n%-28s %-20s %11s %10s %8s %8s" % ("boxes", "best peer", "ms", "ours", "ratio",
                                               "target"))
    return all([judge(size, which, peers[size], own[size][which])
                for size in sizes for which in (0, 1)])
