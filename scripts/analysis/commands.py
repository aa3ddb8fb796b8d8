"""Makes of a build folder's compile commands those that clang-tidy works with.

  python3 scripts/analysis/commands.py BUILD INTO <SOURCES >THOSE_KNOWN

What several targets compile is there once, and without what says how the machine's code
is to be made. Most of the time goes into reading libraries' headers. So sources that
include the same of the large ones get those that they have in common, large and small,
as clang keeps them when it has read them: nobody sees more of them than before, at most
earlier. Status 1, and the names, if the build does not know a source.
"""
import collections
import concurrent.futures
import functools
import json
import os
import re
import shlex
import subprocess
import sys
from pathlib import Path

# Who agrees in these has so much in common that it is worth to be kept.
LARGE_HEADERS = ("memory", "filesystem", "gtest/gtest.h", "gmock/gmock.h", "CLI/CLI.hpp",
                 "vstgui/lib/events.h")
# With fewer sources it takes longer to keep headers than to read them again.
SMALLEST_GROUP = 3
# What no build of this machine may know: the peers' benchmarks are compiled where the
# peers' interfaces are installed, and tools of the scripts' own by their scripts.
KNOWN_ELSEWHERE = re.compile("bench/[a-z0-9]+peers_bench.cpp|scripts/(analysis|mutation)/.*")
# Of a command: its output, and what makes code differ, but not what clang-tidy finds.
CODE_GENERATION = re.compile(r" (-o \S+|-c(?= )|-O\w|-g\w*|-pthread|-fPI[CE]|-U_FORTIFY_SOURCE"
                             r"|-f(no-)?(sanitize|stack-protector)\S*|-f(function|data)-sections"
                             r"|-D\w+_EXPORTS|-DGTEST_HAS_PTHREAD=1)(?= )")
INCLUDE = re.compile(r'#include ([<"])(\S+)[>"]')


def once(commands):
    """By the source's name from here, the first command of each."""
    found = {}
    for entry in commands:
        entry["command"] = CODE_GENERATION.sub("", entry["command"])
        found.setdefault(os.path.relpath(entry["file"]), entry)
    return found


@functools.cache
def includes(file):
    """What a file of ours includes whatever is defined: (bracket or quote, name)."""
    found = []
    depth = 0
    for line in file.read_text().splitlines():
        if re.match(r"\s*#\s*if", line):
            depth += 1
        elif re.match(r"\s*#\s*endif", line):
            depth -= 1
        elif depth == 0 and (include := INCLUDE.match(line)):
            found.append(include.groups())
    return found


def libraries(source, entry):
    """The libraries' headers that a source includes, itself or by headers of ours, by name;
    each with how it is included, in the order in which they come."""
    folders = [Path(folder) for folder in re.findall(r" -I(\S+)", entry["command"])]
    found = {}
    seen = set()

    def read(file):
        seen.add(file)
        for bracket, name in includes(file):
            places = [folder / name for folder in [file.parent, *folders]] if bracket == '"' else []
            ours = next((place.resolve() for place in places if place.exists()), None)
            if not ours:
                found[name] = f"#include <{name}>\n" if bracket == "<" else f'#include "{name}"\n'
            elif ours not in seen:
                read(ours)

    read(source.resolve())
    return found


def compiled_alike(entry):
    """The compiler and what a library's header can depend on of its options."""
    return shlex.split(re.sub(r" -(isystem \S+|(DMIRELON_|I|W|ffile-prefix-map=)\S+)", "",
                              entry["command"]))[:-1]


def groups(entries):
    """Sources that are compiled alike and include the same large headers: as name, entry
    and the headers that they include."""
    found = collections.defaultdict(list)
    for name, entry in entries.items():
        if Path(name).exists():
            included = libraries(Path(name), entry)
            large = [header for header in LARGE_HEADERS if header in included]
            found[(*compiled_alike(entry), *large)].append((entry, included))
    return [group for group in found.values() if len(group) >= SMALLEST_GROUP]


def keep(group, precompiled):
    """Has clang read what all of a group include, templates included; and lets them use it."""
    first, included = group[0]
    common = [line for name, line in included.items() if all(name in other for _, other in group)]
    compiler = shlex.split(first["command"])[:-1]
    subprocess.run([*compiler, "-w", "-fpch-instantiate-templates", "-x", "c++-header", "-",
                    "-o", precompiled.resolve()],
                   input="".join(common), text=True, check=True)
    for entry, _ in group:
        entry["command"] += " " + shlex.join(["-include-pch", str(precompiled.resolve())])


def main(build, into):
    entries = once(json.loads((Path(build) / "compile_commands.json").read_text()))
    into = Path(into)
    into.mkdir(parents=True, exist_ok=True)
    for old in into.glob("*.pch"):
        old.unlink()
    kept = [(group, into / f"{number}.pch") for number, group in enumerate(groups(entries))]
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        list(pool.map(keep, *zip(*kept)))
    (into / "compile_commands.json").write_text(json.dumps(list(entries.values())))
    sources = sys.stdin.read().split()
    print("\n".join(source for source in sources if source in entries))
    left = [source for source in sources if source not in entries]
    if left:
        print("not analysed:", *left, file=sys.stderr)
    return any(not KNOWN_ELSEWHERE.fullmatch(source) for source in left)


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
