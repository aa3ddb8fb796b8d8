"""Changes one thing at a time in the rooms of the project and shows that a test
notices: operators, constants and texts, branches, calls and assignments left out,
arguments swapped, results replaced, guards left out.

  scripts/mutate rooms [ROOM ...]     every change in these rooms (all but the core)

All changes are compiled into the program once, each behind a switch, and the tests say
first which of them they reach. Survivors that mean the same as the original are listed
in scripts/mutation/equivalents with the reason; any other, and a change that no test
reaches, fails the run (status 1).
"""
import argparse
import concurrent.futures
import os
import sys
import time
from collections import Counter
from pathlib import Path

sys.dont_write_bytecode = True
sys.path.insert(0, str(Path(__file__).resolve().parent))

import equivalents
import places
import sampling
import suite
from rooms import Rooms
from tree import Tree

# These have a way of their own, with sanitizers: scripts/mutate without "rooms".
CORES = {"processor/core"}
VERDICTS = ("noticed", "equivalent", "survived", "not reached")
# So many more than are asked for are compiled: some will not.
SPARE = 1.2


def arguments():
    parser = argparse.ArgumentParser(
        prog="scripts/mutate rooms", description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter
    )
    parser.add_argument("rooms", nargs="*", metavar="ROOM")
    parser.add_argument("--sample", type=int, metavar="N", help="so many changes, the rooms in turn")
    parser.add_argument("--seed", type=int, default=1, help="which ones, and in which order (1)")
    parser.add_argument("--minutes", type=float, metavar="M", help="begin no test after so long")
    parser.add_argument("--own", action="store_true",
                        help="build and run no other tests than those of these rooms")
    parser.add_argument("--hosts", action="store_true", help="tests in real hosts as well")
    parser.add_argument("--no-headers", action="store_true",
                        help="leave headers alone, for whose changes much is compiled anew")
    parser.add_argument("--preset", default="release", help="how it is built (release)")
    parser.add_argument("--list", action="store_true", help="list the places and change nothing")
    parser.add_argument("--jobs", type=int, default=os.cpu_count())
    parser.add_argument("--root", type=Path, default=Path(__file__).resolve().parents[2],
                        help="the project (this one)")
    parser.add_argument("--folder", type=Path, help="where to build (build/mutation of the project)")
    return parser.parse_args()


def table(counts, left, names):
    width = max(map(len, ["room", *names]))
    rows = [f"{'room':{width}}    tried " + " ".join(f"{v:>11}" for v in VERDICTS) + "    left out"]
    for room in names:
        tried = sum(counts[room, v] for v in VERDICTS)
        row = f"{room:{width}} {tried:8} " + " ".join(f"{counts[room, v]:11}" for v in VERDICTS)
        rows.append(row + f" {sum(n for (r, _), n in left.items() if r == room):11}")
    return "\n".join(rows)


def main():
    asked = arguments()
    root = asked.root.resolve()
    folder = asked.folder.resolve() if asked.folder else root / "build/mutation"
    if folder.is_relative_to("/tmp"):
        sys.exit("mutation: tests of changed programs do not see what lies in /tmp: build elsewhere (--folder)")
    folder.mkdir(parents=True, exist_ok=True)
    rooms = Rooms(root, asked.rooms)
    if not asked.rooms:
        rooms.wanted -= CORES
    began = time.monotonic()
    over = lambda: asked.minutes is not None and time.monotonic() - began > 60 * asked.minutes

    tree = Tree(root, folder, asked.preset)
    tree.copy()
    database = tree.configure()
    found, left = places.found_places(folder, root, database, rooms, asked.jobs)
    listed = equivalents.read(root / "scripts/mutation/equivalents")
    stale = equivalents.stale(listed, found, rooms)
    for address in stale:
        print(f"listed, but no longer there: {address}")
    if asked.list:
        for place in found:
            print(place.described)
        return 1 if stale else 0

    chosen = sampling.drawn(found, asked.seed)
    if asked.sample:
        chosen = chosen[: max(asked.sample + 1, int(asked.sample * SPARE))]
    for number, place in enumerate(sorted(chosen, key=lambda p: p.number), 1):
        place.number = number
    size = len(chosen) + 1
    if asked.no_headers:
        chosen = [p for p in chosen if not p.file.endswith(".h")]
    targets = rooms.test_targets(database) if asked.own else ()
    compiled = {p.number for p in tree.compile(chosen, asked.jobs, targets)}
    unbuilt = Counter(p.room for p in chosen if p.number not in compiled)
    chosen = [p for p in chosen if p.number in compiled][: asked.sample]

    known = list(suite.known_tests(tree.build, rooms, asked.hosts))
    if asked.own:
        # Others may be there from an earlier run, with other numbers in them.
        known = [test for test in known if test.rooms & rooms.wanted]
    tests, failed = suite.measured(known, size, tree.build, folder / "reached.json", asked.jobs)
    print(f"{len(tests)} tests")
    for name in failed:
        print(f"fails without a change, and does not count: {name}")
    if not tests:
        sys.exit("mutation: there is no test that passes")

    counts, needless = Counter(), []

    def tried(place):
        if not suite.in_turn(tests, place):
            return place, "not reached", None
        if over():
            return place, None, None
        test, complete = suite.noticing(tests, place, over)
        return place, "noticed" if test else "survived" if complete else None, test

    with concurrent.futures.ThreadPoolExecutor(asked.jobs) as pool:
        for place, verdict, test in pool.map(tried, chosen):
            if verdict is None:
                counts["not tried"] += 1
                continue
            if place.address in listed:
                if verdict == "noticed":
                    needless.append(place.address)
                else:
                    verdict = "equivalent"
            counts[place.room, verdict] += 1
            if verdict in ("survived", "not reached"):
                print(f"{verdict}: {place.described}", flush=True)
    for address in needless:
        print(f"listed, but noticed: {address}")

    print(table(counts, left, sorted(rooms.wanted)))
    for reason in sorted({why for _, why in left}):
        print(f"left out, {reason}: {sum(n for (_, why), n in left.items() if why == reason)}")
    print(f"of {len(found)} places {sum(unbuilt.values())} that were chosen do not compile; "
          f"no time for {counts['not tried']}")
    undone = sum(counts[room, verdict] for room in rooms.wanted for verdict in ("survived", "not reached"))
    return 1 if undone or needless or stale else 0


if __name__ == "__main__":
    sys.exit(main())
