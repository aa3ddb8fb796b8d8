"""Makes of a build folder's compile commands those that clang-tidy works with.

  python3 scripts/analysis/commands.py BUILD INTO <SOURCES >THOSE_KNOWN

What several targets compile is there once. Of the libraries that are all header, and that
take longer to read than most of the files that include them, each is read once for all
who are compiled alike and include it by name: nobody sees more of it than before.
Status 1, and the names, if the build does not know a source.
"""
import hashlib
import json
import os
import re
import shlex
import subprocess
import sys
from pathlib import Path

LARGE_HEADERS = ("CLI/CLI.hpp", "gtest/gtest.h")
# What no build of this machine may know: the peers' benchmarks are compiled where the
# peers' interfaces are installed, and tools of the scripts' own by their scripts.
KNOWN_ELSEWHERE = re.compile("bench/[a-z0-9]+peers_bench.cpp|scripts/(analysis|mutation)/.*")


def once(commands):
    """By the source's name from here, the first command of each."""
    found = {}
    for entry in commands:
        found.setdefault(os.path.relpath(entry["file"]), entry)
    return found


def header_in(source):
    """The large header that a source includes itself, if any."""
    included = re.findall(r"^#include <(\S+)>", source.read_text(), re.M)
    return next((header for header in LARGE_HEADERS if header in included), None)


def compiled_alike(entry):
    """The compiler and what a library's header can depend on of its options."""
    left_out = r" -(o|isystem) \S+| -c \S+$| -(DMIRELON_|I|ffile-prefix-map=)\S+"
    return shlex.split(re.sub(left_out, "", entry["command"]))


def read_once(header, compiler, folder):
    """The header as clang keeps it when it has read it, templates included."""
    precompiled = folder / (hashlib.sha1(repr((header, compiler)).encode()).hexdigest() + ".pch")
    if not precompiled.exists():
        subprocess.run([*compiler, "-w", "-fpch-instantiate-templates", "-x", "c++-header", "-",
                        "-o", precompiled.resolve()],
                       input=f"#include <{header}>\n", text=True, check=True)
    return precompiled


def main(build, into):
    entries = once(json.loads((Path(build) / "compile_commands.json").read_text()))
    into = Path(into)
    into.mkdir(parents=True, exist_ok=True)
    for old in into.glob("*.pch"):
        old.unlink()
    for name, entry in entries.items():
        header = header_in(Path(name)) if Path(name).exists() else None
        if header:
            precompiled = read_once(header, compiled_alike(entry), into)
            entry["command"] += " " + shlex.join(["-include-pch", str(precompiled.resolve())])
    (into / "compile_commands.json").write_text(json.dumps(list(entries.values())))
    sources = sys.stdin.read().split()
    print("\n".join(source for source in sources if source in entries))
    left = [source for source in sources if source not in entries]
    if left:
        print("not analysed:", *left, file=sys.stderr)
    return any(not KNOWN_ELSEWHERE.fullmatch(source) for source in left)


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
