"""A copy of the project with all changes in it, built once."""
import json
import os
import re
import shutil
import subprocess
from pathlib import Path

import schemata
from rooms import SOURCES

ERROR = re.compile(r"^(/[^:\n]+|\.\./[^:\n]+):(\d+):(?:\d+:)? (?:fatal )?error: ")
MENTION = re.compile(r"(/[^:\s]+|\.\./[^:\s]+):(\d+):\d+")


class Tree:
    def __init__(self, root, folder, preset):
        self.root = root
        self.preset = preset
        self.top = folder / "tree"
        self.build = self.top / "build" / preset
        self.log = folder / "build.log"
        self.dropped = folder / "dropped.json"

    def copy(self):
        """The project as it is now."""
        listed = subprocess.run(
            ["git", "-C", str(self.root), "ls-files", "-co", "--exclude-standard", "-z"],
            check=True, capture_output=True, text=True,
        ).stdout.split("\0")
        self.files = [f for f in listed if f and (self.root / f).is_file()]
        for file in self.files:
            # Sources come with their changes, so that what has not changed is not built again.
            if not file.endswith(SOURCES) or not (self.top / file).exists():
                self.write(file, (self.root / file).read_bytes())
                shutil.copymode(self.root / file, self.top / file)
        # What has been fetched need not be fetched again.
        (self.top / "build").mkdir(parents=True, exist_ok=True)
        for fetched in (self.root / "build").glob("*.fetch") if (self.root / "build").exists() else ():
            for path in (fetched, fetched.with_suffix("")):
                link = self.top / "build" / path.name
                if not os.path.lexists(link):
                    link.symlink_to(path)

    def write(self, file, content):
        path = self.top / file
        if not path.exists() or path.read_bytes() != content:
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_bytes(content)

    def configure(self):
        # What lies beyond a container is noticed in the sanitized suite, and so cheaply here.
        subprocess.run(
            ["cmake", "--preset", self.preset, "-D", "CMAKE_CXX_FLAGS=-D_GLIBCXX_ASSERTIONS"],
            cwd=self.top, check=True, stdout=subprocess.DEVNULL,
        )
        # How the project's own sources would be compiled, which have no changes in them.
        here = re.compile(re.escape(str(self.top)) + "(?!/build/)")
        return [
            {key: here.sub(str(self.root), value) for key, value in entry.items()}
            for entry in json.loads((self.build / "compile_commands.json").read_text())
        ]

    def rewrite(self, places):
        """Puts the changes in; answers with those that cannot be put in."""
        by_file = {}
        for place in places:
            by_file.setdefault(place.file, []).append(place)
        self.regions, refused = {}, set()
        for file in self.files:
            if not file.endswith(SOURCES):
                continue
            content = (self.root / file).read_bytes()
            if file in by_file:
                text, left = schemata.rewritten(content.decode("latin-1"), by_file[file])
                self.regions[str(self.top / file)] = schemata.regions(text, by_file[file])
                refused |= left
                content = text.encode("latin-1")
            self.write(file, content)
        return refused

    def compile(self, places, jobs, targets=()):
        """Builds with as many of the changes as compile; answers with these. Those that did
        not the last time are not tried again."""
        known = set(json.loads(self.dropped.read_text())) if self.dropped.exists() else set()
        places = [p for p in places if p.address not in known]
        while True:
            refused = self.rewrite(places)
            places = [p for p in places if p.number not in refused]
            run = subprocess.run(
                ["nice", "-n", "10", "ninja", "-C", str(self.build), f"-j{jobs}", "-k0", *targets],
                stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, errors="replace",
            )
            self.log.write_text(run.stdout)
            if run.returncode == 0:
                return places
            faulty = self.faulty(run.stdout)
            if not faulty:
                raise SystemExit(f"mutation: it does not build, and by no change's fault: see {self.log}")
            print(f"mutation: {len(faulty)} changes do not compile", flush=True)
            known |= {p.address for p in places if p.number in faulty}
            self.dropped.write_text(json.dumps(sorted(known)))
            places = [p for p in places if p.number not in faulty]

    def region_of(self, path, line):
        resolved = str(Path(path) if path.startswith("/") else (self.build / path).resolve())
        return schemata.at_fault(self.regions.get(resolved, {}), int(line))

    def faulty(self, log):
        """The changes that the compiler's errors mean. One in a library's template is that
        of the line of ours which is named next to it."""
        found, lines = set(), log.split("\n")
        for i, line in enumerate(lines):
            match = ERROR.match(line)
            if not match:
                continue
            meant = self.region_of(match[1], match[2])
            near = range(i - 1, max(i - 40, -1), -1)
            for j in near:
                if meant or ERROR.match(lines[j]):
                    break
                for mention in MENTION.finditer(lines[j]):
                    meant = meant or self.region_of(mention[1], mention[2])
            for j in range(i + 1, min(i + 40, len(lines))):
                if meant or ERROR.match(lines[j]):
                    break
                for mention in MENTION.finditer(lines[j]):
                    meant = meant or self.region_of(mention[1], mention[2])
            found |= meant
        return found
