"""The places of a program that can be changed, as the clang plug-in beside this file
finds them in the syntax tree."""
import concurrent.futures
import hashlib
import json
import os
import re
import shlex
import subprocess
from collections import Counter, defaultdict
from dataclasses import dataclass
from pathlib import Path

HERE = Path(__file__).resolve().parent


@dataclass
class Place:
    file: str
    begin: int
    end: int
    inner: tuple
    line: int
    function: str
    kind: str
    change: str
    before: str  # with \1 where the number of the change belongs
    after: str
    room: str = ""
    ordinal: int = 0  # among its like in the function, from 1
    number: int = 0

    @property
    def address(self):
        return f"{self.file} | {self.function} | {self.kind} | {self.change} | {self.ordinal}"

    @property
    def described(self):
        return f"{self.address}  (line {self.line})"


# What the plug-in is made of.
SOURCES = [HERE / name for name in ("places.cpp", "processes.h", "sourcetext.h")]


def built_plugin():
    """The plug-in, compiled if it is older than its sources."""
    plugin = HERE.parents[1] / "build/mutation/places.so"
    if not plugin.exists() or plugin.stat().st_mtime < max(s.stat().st_mtime for s in SOURCES):
        plugin.parent.mkdir(parents=True, exist_ok=True)
        include = subprocess.run(
            ["llvm-config-14", "--includedir"], check=True, capture_output=True, text=True
        ).stdout.strip()
        # Another run may be at it.
        part = plugin.with_suffix(f".{os.getpid()}")
        subprocess.run(
            ["clang++-14", "-std=c++17", "-O1", "-fPIC", "-fno-rtti", "-shared", "-isystem", include,
             str(SOURCES[0]), "-o", str(part)],
            check=True,
        )
        part.rename(plugin)
    return plugin


def search(plugin, root, entry, output):
    """Has one source searched, as its entry of the compilation database says."""
    # Where the folder is built already, what GCC has made of a precompiled header is in
    # clang's way. The sources include all that they need.
    words = shlex.split(re.sub(r" -include \S+/cmake_pch\.hxx", "", entry["command"]))
    at = words.index("-o")
    flags = [w for w in words[1:at] + words[at + 2 :] if w not in ("-c", entry["file"])]
    argument = ["-Xclang", "-plugin-arg-mutation-places", "-Xclang"]
    return subprocess.run(
        ["clang++-14", *flags, "-w", "-fsyntax-only", "-Xclang", "-load", "-Xclang", str(plugin),
         "-Xclang", "-plugin", "-Xclang", "mutation-places", *argument, str(root), *argument, str(output),
         entry["file"]],
        cwd=entry["directory"], capture_output=True, text=True,
    )


def found_places(folder, root, database, rooms, jobs):
    """All places in the rooms' sources, numbered from 1, and how many are left out by
    room and reason. What was found in a source is kept in the folder until the source, a
    header of the project's or its command changes."""
    entries = {}
    for entry in database:
        if rooms.of_path(entry["file"]):
            entries.setdefault(entry["file"], entry)
    plugin = built_plugin()
    common = hashlib.sha256()
    for file in [*SOURCES, *sorted(rooms.headers())]:
        common.update(file.read_bytes())
    kept = folder / "places"
    kept.mkdir(exist_ok=True)
    outputs = {}
    for file, entry in entries.items():
        state = common.copy()
        state.update(entry["command"].encode())
        state.update(Path(file).read_bytes())
        outputs[file] = kept / state.hexdigest()[:24]

    def searched(file):
        part = outputs[file].with_suffix(".part")
        result = search(plugin, root, entries[file], part)
        if result.returncode:
            raise SystemExit(f"mutation: {file} cannot be read:\n{result.stderr}")
        part.rename(outputs[file])

    with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
        list(pool.map(searched, (file for file in entries if not outputs[file].exists())))
    for old in kept.iterdir():
        if old not in outputs.values():
            old.unlink()
    lines = (line for output in outputs.values() for line in output.read_text().splitlines())
    return ordered(map(json.loads, dict.fromkeys(lines)), rooms)


def ordered(objects, rooms):
    places, left = {}, defaultdict(set)
    for each in objects:
        room = rooms.of(each["file"])
        if not room:
            continue
        if "left" in each:
            left[room, each["left"]].add((each["file"], each["begin"]))
            continue
        place = Place(**{**each, "inner": tuple(each["inner"])}, room=room)
        places.setdefault((place.file, place.begin, place.end, place.kind, place.change), place)
    found = sorted(places.values(), key=lambda p: (p.file, p.begin, p.end, p.kind, p.change))
    alike = Counter()
    for number, place in enumerate(found, 1):
        place.number = number
        alike[place.file, place.function, place.kind, place.change] += 1
        place.ordinal = alike[place.file, place.function, place.kind, place.change]
    return found, {key: len(where) for key, where in left.items()}
