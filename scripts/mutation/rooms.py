"""The rooms of the project: the folders that have tests of their own. CMake says which
sources and which test programs there are; their folders say whose they are."""
import re
from pathlib import Path

SOURCES = (".cpp", ".h")
# Test programs that are another room's too: keys and the clipboard need an editor to type
# into, and what hosts a format a plug-in of that format.
SHARED = {
    "editor_keys_test": "platform", "editor_typing_test": "platform",
    "clap_effect_test": "hosting", "clap_effectwindow_test": "hosting", "clap_window_test": "hosting",
    "lv2_effectwindow_test": "hosting", "lv2_state_test": "hosting", "lv2_window_test": "hosting",
}


class Rooms:
    def __init__(self, root, wanted=()):
        """Those of the names that are wanted, or all that there are."""
        self.root = root
        tests = root / "tests"
        self.all = sorted(
            str(lists.parent.relative_to(tests))
            for lists in tests.rglob("CMakeLists.txt")
            if lists.parent != tests and any((root / lists.parent.relative_to(tests)).glob("*.cpp"))
        )
        unknown = set(wanted) - set(self.all)
        if unknown:
            raise SystemExit(f"mutation: no room {', '.join(sorted(unknown))}; there are {', '.join(self.all)}")
        self.wanted = set(wanted) or set(self.all)

    def holding(self, file):
        """The innermost room that a file below the root is in, or nothing."""
        return max((room for room in self.all if file.startswith(room + "/")), key=len, default="")

    def of(self, file):
        """As above, of the rooms that are wanted."""
        room = self.holding(file)
        return room if room in self.wanted else ""

    def of_path(self, path):
        path = Path(path)
        return self.of(str(path.relative_to(self.root))) if path.is_relative_to(self.root) else ""

    def headers(self):
        for room in {room.split("/")[0] for room in self.all}:
            yield from (self.root / room).rglob("*.h")

    def test_targets(self, database):
        """What CMake makes of the sources in the tests of the rooms that are wanted."""
        targets = set()
        for entry in database:
            path = Path(entry["file"])
            if not path.is_relative_to(self.root / "tests"):
                continue
            target = re.search(r" -o (\S*)/CMakeFiles/([\w.-]+)\.dir/", entry["command"])
            if target and self.tested_by(target[1].removeprefix("tests/") + "/", target[2]) & self.wanted:
                targets.add(target[2])
        return sorted(targets)

    def of_test(self, program, build):
        """The rooms that a test program is built for; nothing if it is no test program."""
        path = Path(program)
        if not path.is_relative_to(build / "tests"):
            return None
        return self.tested_by(str(path.relative_to(build / "tests")), path.name)

    def tested_by(self, file, program):
        """The rooms of a test program in this place below the tests."""
        return {room for room in (self.holding(file), SHARED.get(program)) if room}
