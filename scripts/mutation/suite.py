"""The project's tests, one by one as CTest knows them, and which changes each reaches."""
import concurrent.futures
import hashlib
import json
import subprocess
from dataclasses import dataclass
from pathlib import Path

import sandbox

# A test that takes this long, and ten times what it takes on the original, hangs.
LEAST_SECONDS = 20
FACTOR = 10


@dataclass
class Test:
    name: str
    command: list
    folder: str
    rooms: set
    limit: float
    seconds: float = 0
    reaches: frozenset = frozenset()

    @property
    def patience(self):
        return max(LEAST_SECONDS, FACTOR * self.seconds)


def known_tests(build, rooms, hosts):
    """Those that programs in the build's tests make; in real hosts only on demand."""
    answer = subprocess.run(
        ["ctest", "--test-dir", str(build), "--show-only=json-v1"], check=True, capture_output=True, text=True
    ).stdout
    for each in json.loads(answer)["tests"]:
        properties = {p["name"]: p["value"] for p in each.get("properties", [])}
        command = each.get("command")
        owners = rooms.of_test(command[0], build) if command else None
        if owners is None or ("hosts" in properties.get("LABELS", []) and not hosts):
            continue
        yield Test(each["name"], command, properties.get("WORKING_DIRECTORY", str(build)), owners,
                   properties.get("TIMEOUT", 120))


class Stamps:
    """Of a test program and of all that it may load or start: they change with these."""

    def __init__(self, build):
        self.loaded = hashlib.sha256()
        for pattern in ("*.so", "*.clap", "tools/mirelon-host"):
            for file in sorted(build.rglob(pattern)):
                self.loaded.update(file.read_bytes())
        self.known = {}

    def of(self, program):
        if program not in self.known:
            state = self.loaded.copy()
            state.update(Path(program).read_bytes())
            self.known[program] = state.hexdigest()[:16]
        return self.known[program]


def measured(tests, size, build, kept, jobs):
    """The tests that pass without a change, with what they reach and how long they take,
    and the names of the others. Kept in a file for as long as the programs are the same."""
    stamps = Stamps(build)
    known = json.loads(kept.read_text()) if kept.exists() else {}

    def tried(test):
        key = stamps.of(test.command[0])
        before = known.get(test.name)
        if before and before["program"] == key and before["size"] == size:
            return before
        # What fails once by the load of the machine passes the second time.
        for _ in range(2):
            outcome, reached = sandbox.run(test.command, test.folder, 2 * test.limit, reached=size)
            if outcome.good:
                break
        return {"program": key, "size": size, "good": outcome.good, "seconds": outcome.seconds,
                "reaches": sorted(reached)}

    with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
        results = list(pool.map(tried, tests))
    kept.write_text(json.dumps({t.name: r for t, r in zip(tests, results)}))
    good, failed = [], []
    for test, result in zip(tests, results):
        if not result["good"]:
            failed.append(test.name)
            continue
        test.seconds, test.reaches = result["seconds"], frozenset(result["reaches"])
        good.append(test)
    return good, failed


def in_turn(tests, place):
    """Those that reach the change, the quick ones of its own room first."""
    reaching = (t for t in tests if place.number in t.reaches)
    return sorted(reaching, key=lambda t: (place.room not in t.rooms, t.seconds))


def noticing(tests, place, until):
    """The first test that fails with the change, twice if not by time; None if none does;
    and whether there was time for all."""
    for test in in_turn(tests, place):
        if until():
            return None, False
        for _ in range(2):
            outcome, _ = sandbox.run(test.command, test.folder, test.patience, place.number)
            if outcome.good:
                break
            if outcome.code is None:
                return test, True
        if not outcome.good:
            return test, True
    return None, True
