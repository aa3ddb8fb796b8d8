#!/usr/bin/env python3
"""scripts/includes on small trees: each rule is broken once."""
import importlib.machinery
import importlib.util
import sys
import tempfile
import unittest
from pathlib import Path

sys.dont_write_bytecode = True
SCRIPT = str(Path(__file__).resolve().parents[2] / "scripts/includes")
loader = importlib.machinery.SourceFileLoader("includes", SCRIPT)
spec = importlib.util.spec_from_loader("includes", loader)
includes = importlib.util.module_from_spec(spec)
sys.modules["includes"] = includes
loader.exec_module(includes)

# A tree with one header a room, and the single headers that others may have.
SOUND = {
    "formats/a.h": '#include "editor/a.h"\n#include "processor/a.h"\n#include "processor/core/a.h"\n'
    '#include "presetsystem/a.h"\n#include "shell/a.h"\n',
    "editor/a.h": '#include "processor/a.h"\n#include "processor/core/a.h"\n#include "platform/a.h"\n'
    '#include "presetsystem/a.h"\n#include "resources/a.h"\n',
    "processor/a.h": '#include "presetsystem/a.h"\n#include "processor/core/a.h"\n',
    "processor/core/a.h": "#include <array>\n#include <immintrin.h>\n",
    "processor/core/b.h": '#include "processor/core/a.h"\n',
    "presetsystem/a.h": '#include "shell/a.h"\n#include "platform/a.h"\n#include "resources/a.h"\n',
    "presetsystem/presetrecord.h": "",
    "presetsystem/chunkimage.h": "",
    "presetsystem/presetimages.h": "",
    "shell/a.h": '#include "shell/vst24.h"\n',
    "shell/vst24.h": "",
    "platform/a.h": '#include "vstgui/lib/cview.h"\n#include <glib.h>\n',
    "resources/a.h": "",
    "hosting/a.h": '#include "shell/vst24.h"\n#include "presetsystem/chunkimage.h"\n',
    "validator/a.h": '#include "hosting/a.h"\n#include "shell/vst24.h"\n',
    "tools/a.h": '#include "hosting/a.h"\n#include "validator/a.h"\n'
    '#include "presetsystem/presetrecord.h"\n',
    "tests/a.cpp": '#include "editor/a.h"\n#include "shell/a.h"\n#include "tools/a.h"\n',
    "build/release/a.cpp": '#include "nowhere/a.h"\n',
}
# Every include of a header of another room that no rule allows.
MAY = {
    "formats": {"editor", "processor", "processor/core", "presetsystem", "shell"},
    "editor": {"processor", "processor/core", "presetsystem", "platform", "resources"},
    "processor": {"processor/core", "presetsystem"},
    "processor/core": set(),
    "presetsystem": {"platform", "resources", "shell"},
    "shell": set(),
    "platform": set(),
    "resources": set(),
    "tools": {"hosting", "validator"},
    "validator": {"hosting"},
    "hosting": set(),
}


class Includes(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name).resolve()
        for path, text in SOUND.items():
            self.write(path, text)

    def write(self, path, text):
        (self.root / path).parent.mkdir(parents=True, exist_ok=True)
        (self.root / path).write_text(text)

    def faults(self):
        return includes.examined(self.root)[0]

    def expect_fault(self, path, text, wanted):
        """The file is at fault, and nothing else is."""
        self.write(path, text)
        found = self.faults()
        self.assertEqual(len(found), 1, found)
        self.assertIn(wanted, found[0])
        self.assertTrue(found[0].startswith(path), found[0])
        (self.root / path).unlink()

    def test_a_sound_tree_has_no_fault(self):
        self.assertEqual(self.faults(), [])

    def test_each_room_includes_what_it_may_and_no_other(self):
        self.write("formats/a.h", "")
        for room, allowed in MAY.items():
            for other in MAY.keys() - {room}:
                with self.subTest(room=room, other=other):
                    self.write(f"{room}/b.h", f'#include "{other}/a.h"\n')
                    self.assertEqual(self.faults() == [], other in allowed, self.faults())
            self.write(f"{room}/b.h", "")

    def test_no_room_includes_tests_benchmarks_or_fuzzers(self):
        for room in MAY:
            for above in ("tests", "bench", "fuzz"):
                with self.subTest(room=room, above=above):
                    self.write(f"{above}/a.h", "")
                    self.expect_fault(f"{room}/c.h", f'#include "{above}/a.h"\n', "may not know")

    def test_programs_have_the_byte_images_and_the_binary_interface_and_no_more_of_the_plugin(self):
        for room in ("tools", "validator", "hosting"):
            for header in ("shell/vst24.h", "presetsystem/presetrecord.h", "presetsystem/chunkimage.h",
                           "presetsystem/presetimages.h"):
                self.write(f"{room}/b.h", f'#include "{header}"\n')
                self.assertEqual(self.faults(), [])
            self.expect_fault(f"{room}/b.h", '#include "presetsystem/a.h"\n', "presetsystem")
            self.expect_fault(f"{room}/b.h", '#include "shell/a.h"\n', "shell")

    def test_only_the_platform_has_the_toolkit(self):
        for room in MAY.keys() - {"platform"}:
            with self.subTest(room=room):
                self.expect_fault(f"{room}/c.h", '#include "vstgui/lib/cview.h"\n', "toolkit")

    def test_the_core_has_the_standard_library_only(self):
        for header in ("glib.h", "X11/Xlib.h", "cairo.h", "unistd.h"):
            self.expect_fault("processor/core/c.h", f"#include <{header}>\n", "standard library")

    def test_headers_of_ours_are_recognised_however_they_are_named(self):
        for text in ("#include <shell/a.h>\n", '#include "../../shell/a.h"\n', '# include\t"shell/a.h"\n'):
            self.expect_fault("processor/core/c.h", text, "core may not know shell")

    def test_an_include_of_nothing_is_a_fault(self):
        self.expect_fault("editor/c.h", '#include "processor/gone.h"\n', "no such file")

    def test_a_folder_without_a_rule_is_a_fault(self):
        self.expect_fault("newroom/a.h", "", "no rule")

    def test_a_room_that_has_gone_is_a_fault(self):
        (self.root / "resources/a.h").rename(self.root / "resources/a.txt")
        for user in ("editor/a.h", "presetsystem/a.h"):
            self.write(user, SOUND[user].replace('#include "resources/a.h"\n', ""))
        self.assertEqual(self.faults(), ["resources/: there are rules for it, but no sources"])

    def test_a_commented_include_does_not_count(self):
        self.write("shell/b.h", '// #include "editor/a.h"\n')
        self.assertEqual(self.faults(), [])

    def test_a_fault_is_told_with_its_line(self):
        self.expect_fault("shell/b.h", '\n\n#include "editor/a.h"\n', "shell/b.h:3: editor/a.h")


class Picture(unittest.TestCase):
    # As Graphviz writes them.
    SVG = (
        '<g id="node1" class="node">\n<title>editor</title></g>'
        '<g id="node2" class="node">\n<title>core</title></g>'
        '<g id="edge1" class="edge">\n<title>editor&#45;&gt;core</title></g>'
    )

    def setUp(self):
        self.rooms = {room.name: room for room in includes.ROOMS}
        self.met = {self.rooms["editor"], self.rooms["core"]}
        self.edges = {(self.rooms["editor"], self.rooms["core"])}

    def test_what_it_draws_is_what_is_included(self):
        self.assertEqual(includes.picture_faults(self.SVG, self.edges, self.met), [])

    def test_an_include_that_is_not_drawn_is_a_fault(self):
        more = self.edges | {(self.rooms["core"], self.rooms["editor"])}
        self.assertEqual(
            includes.picture_faults(self.SVG, more, self.met), ["included, but not drawn: core->editor"]
        )

    def test_an_arrow_without_an_include_is_a_fault(self):
        self.assertEqual(
            includes.picture_faults(self.SVG, set(), self.met), ["drawn, but not included: editor->core"]
        )

    def test_a_room_that_comes_or_goes_is_a_fault(self):
        self.assertEqual(
            includes.picture_faults(self.SVG, self.edges, self.met | {self.rooms["shell"]}),
            ["not drawn: shell"],
        )
        self.assertEqual(
            includes.picture_faults(self.SVG, set(), {self.rooms["core"]}),
            ["drawn, but not included: editor->core", "drawn, but no room: editor"],
        )

    def test_the_arrows_for_graphviz_are_the_includes(self):
        arrows = [line.strip() for line in includes.dot(self.edges, self.met).split("\n") if "->" in line]
        self.assertEqual(arrows, ["editor -> core;"])

    def test_single_headers_are_drawn_dashed(self):
        tools, shell = self.rooms["tools"], self.rooms["shell"]
        self.assertIn("tools -> shell [style=dashed];", includes.dot({(tools, shell)}, {tools, shell}))


if __name__ == "__main__":
    unittest.main()
