#!/usr/bin/env python3
"""scripts/mutate rooms on a small project, whose tests notice some changes and miss others."""
import contextlib
import json
import os
import subprocess
import sys
import tempfile
import unittest
import unittest.mock
from pathlib import Path

sys.dont_write_bytecode = True
TOOL = Path(__file__).resolve().parents[2] / "scripts/mutation"
sys.path.insert(0, str(TOOL))

import equivalents
import rooms
import sampling
import schemata
from places import Place, built_plugin, ordered, search
from rooms import Rooms

PROJECT = {
    "CMakePresets.json": """{"version": 6, "configurePresets": [{"name": "release", "generator": "Ninja",
      "binaryDir": "${sourceDir}/build/${presetName}",
      "cacheVariables": {"CMAKE_EXPORT_COMPILE_COMMANDS": "ON"}}]}""",
    "CMakeLists.txt": """
cmake_minimum_required(VERSION 3.25)
project(sample LANGUAGES CXX)
set(CMAKE_CXX_STANDARD 20)
include_directories("${CMAKE_SOURCE_DIR}")
add_library(counter OBJECT counter/counter.cpp)
find_package(GTest REQUIRED)
include(GoogleTest)
enable_testing()
add_subdirectory(tests/counter)
""",
    "counter/counter.h": """#pragma once
int limited(int value, int limit);
int counted(int value);
int neverCalled(int value);
""",
    "counter/counter.cpp": """#include "counter/counter.h"

#include <mutex>

namespace {
std::mutex mutex;
constexpr int step = 2;
static_assert(step * 2 == 4);
} // namespace

int limited(int value, int limit) {
    if (value > limit)
        return limit;
    return value;
}

int counted(int value) {
    const std::lock_guard lock(mutex);
    return value + step;
}

int neverCalled(int value) {
    return value - 1;
}
""",
    "tests/counter/CMakeLists.txt": """
add_executable(counter_test counter_test.cpp)
target_link_libraries(counter_test PRIVATE counter GTest::gtest GTest::gtest_main)
gtest_discover_tests(counter_test DISCOVERY_MODE PRE_TEST)
""",
    "tests/counter/counter_test.cpp": """#include "counter/counter.h"
#include <gtest/gtest.h>
#include <fstream>
#include <sys/resource.h>
TEST(Counter, IsLimited) {
    EXPECT_EQ(limited(5, 3), 3);
    EXPECT_EQ(limited(2, 3), 2);
}
TEST(Counter, Counts) { EXPECT_EQ(counted(1), 3); }
TEST(World, CannotBeWrittenTo) {
    EXPECT_FALSE(std::ofstream("/usr/mutation-test-was-here").is_open());
    EXPECT_TRUE(std::ofstream("/tmp/here").is_open());
}
TEST(World, HasLimits) {
    for (auto what : {RLIMIT_AS, RLIMIT_FSIZE, RLIMIT_CORE}) {
        rlimit limit{};
        EXPECT_EQ(getrlimit(what, &limit), 0);
        EXPECT_NE(limit.rlim_cur, RLIM_INFINITY);
    }
}
""",
}
LIMIT = "counter/counter.cpp | limited | operator | > -> >= | 1"
GUARD = "counter/counter.cpp | counted | guard | std::lock_guard left out | 1"
# What nobody calls.
UNREACHED = [
    "counter/counter.cpp | neverCalled | return | -> empty | 1",
    "counter/counter.cpp | neverCalled | operator | - -> + | 1",
    "counter/counter.cpp | neverCalled | constant | 1 -> + 1 | 1",
    "counter/counter.cpp | neverCalled | constant | 1 -> - 1 | 1",
]


def worlds_can_be_made():
    """Whether tests can be run apart: containers may refuse it, and what lies in /tmp would
    be out of a test's sight."""
    user = [] if os.geteuid() == 0 else ["--user", "--map-root-user"]
    command = ["unshare", *user, "--pid", "--mount", "--net", "--ipc", "--fork", "--mount-proc",
               "mount", "--bind", "/tmp", "/tmp"]
    made = subprocess.run(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    return made.returncode == 0 and not Path.cwd().is_relative_to("/tmp")


@unittest.skipUnless(worlds_can_be_made(), "no namespaces can be made here")
class SmallProject(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        # Not in /tmp, which tests of changed programs have to themselves.
        cls.folder = tempfile.TemporaryDirectory(prefix="mutation-test-", dir=Path.cwd())
        cls.root = Path(cls.folder.name).resolve() / "project"
        for path, text in PROJECT.items():
            (cls.root / path).parent.mkdir(parents=True, exist_ok=True)
            (cls.root / path).write_text(text)
        subprocess.run(["git", "init", "-q", str(cls.root)], check=True)
        (cls.root / ".gitignore").write_text("/build/\n")

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def run_tool(self, listed, *arguments):
        file = self.root / "scripts/mutation/equivalents"
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text("".join(f"# A reason.\n{address}\n\n" for address in listed))
        return subprocess.run(
            [sys.executable, str(TOOL), "--root", str(self.root), "--jobs", "2", *arguments],
            capture_output=True, text=True, env={**os.environ, "TMPDIR": self.folder.name},
        )

    def test_survivors_and_what_is_not_reached_are_told_and_fail_the_run(self):
        run = self.run_tool([])
        told = [line for line in run.stdout.splitlines() if line.startswith(("survived", "not reached"))]
        wanted = [f"survived: {LIMIT}", f"survived: {GUARD}", *(f"not reached: {a}" for a in UNREACHED)]
        self.assertEqual(sorted(line.split("  (line")[0] for line in told), sorted(wanted), run.stdout + run.stderr)
        self.assertEqual(run.returncode, 1)

    def test_each_verdict_is_counted_by_room(self):
        run = self.run_tool([LIMIT])
        row = next((line.split() for line in run.stdout.splitlines() if line.startswith("counter ")), None)
        # The branch both ways, the results of three returns, the sum and its constant: noticed.
        self.assertEqual(row and row[1:6], ["13", "7", "1", "1", "4"], run.stdout + run.stderr)

    def test_a_run_is_good_when_all_that_survives_is_listed(self):
        run = self.run_tool([LIMIT, GUARD, *UNREACHED])
        self.assertEqual(run.returncode, 0, run.stdout + run.stderr)
        self.assertNotIn("fails without a change", run.stdout)

    def test_a_folder_that_tests_would_not_see_is_refused(self):
        run = self.run_tool([], "--folder", "/tmp/mutation-test-is-not-here")
        self.assertIn("/tmp", run.stderr)
        self.assertEqual(run.returncode, 1)
        self.assertFalse(Path("/tmp/mutation-test-is-not-here").exists())

    def test_what_is_listed_but_gone_fails_the_run(self):
        run = self.run_tool([LIMIT, GUARD, *UNREACHED, "counter/counter.cpp | limited | operator | < -> <= | 1"])
        self.assertIn("listed, but no longer there: counter/counter.cpp | limited | operator | < -> <= | 1", run.stdout)
        self.assertEqual(run.returncode, 1)

    def test_what_is_listed_but_noticed_fails_the_run(self):
        noticed = "counter/counter.cpp | limited | branch | always | 1"
        run = self.run_tool([LIMIT, GUARD, *UNREACHED, noticed])
        self.assertIn(f"listed, but noticed: {noticed}", run.stdout)
        self.assertEqual(run.returncode, 1)

    def test_a_sample_is_as_large_as_asked_for(self):
        run = self.run_tool([LIMIT, GUARD, *UNREACHED], "--sample", "3", "--seed", "7")
        row = next((line.split() for line in run.stdout.splitlines() if line.startswith("counter ")), None)
        self.assertEqual(row and row[1], "3", run.stdout + run.stderr)


class Finding(unittest.TestCase):
    """What the syntax tree of a few lines is found to hold."""

    def found(self, source):
        with tempfile.TemporaryDirectory(dir=Path.cwd()) as folder:
            root = Path(folder).resolve()
            file = root / "a/a.cpp"
            file.parent.mkdir()
            file.write_text(source)
            entry = {"file": str(file), "directory": folder, "command": f"c++ -std=c++20 -o a.o -c {file}"}
            output = root / "places"
            run = search(built_plugin(), root, entry, output)
            self.assertEqual(run.returncode, 0, run.stderr)
            return [json.loads(line) for line in output.read_text().splitlines()]

    def changes(self, source):
        return sorted((p["kind"], p["change"]) for p in self.found(source) if "left" not in p)

    def left(self, source):
        return {p["left"] for p in self.found(source) if "left" in p}

    def test_a_call_and_an_assignment_may_be_left_out(self):
        self.assertEqual(
            self.changes("int f(); int g; void h(int i) { f(); g = i; }"),
            [("assignment", "left out"), ("call", "f left out")],
        )

    def test_a_call_whose_value_is_taken_stays(self):
        self.assertEqual(self.changes("int f(); void h() { int g = f(); (void)g; }"), [])

    def test_arguments_of_one_type_are_swapped_and_others_not(self):
        self.assertEqual(
            self.changes("int f(int, int, char*); int g(int a, int b, char* c) { int r = f(a, b, c); return r; }"),
            [("arguments", "f 1 and 2"), ("return", "-> empty")],
        )

    def test_a_text_is_emptied_and_changed(self):
        self.assertEqual(
            self.changes('void f(const char*); void (*p)(const char*) = f; const char* g() { const char* t = "abc"; '
                         'p(t); return nullptr; }'),
            [("call", "p left out"), ("constant", "text -> empty"), ("constant", "text -> other")],
        )

    def test_a_loop_may_be_left_at_once_but_does_not_go_on_for_ever(self):
        self.assertEqual(self.changes("bool f(); void g() { while (f()) {} }"), [("branch", "never")])

    def test_a_constant_is_changed_where_it_is_read(self):
        self.assertEqual(
            self.changes("constexpr int size = 4; int f(int i) { int r = i; r += size; return r; }"),
            [("assignment", "left out"), ("constant", "size -> + 1"), ("operator", "+= -> -="),
             ("return", "-> empty")],
        )

    def test_what_the_compiler_computes_is_left_out(self):
        source = "constexpr int size = 4; static_assert(size == 2 + 2); enum E { one = 1 };"
        self.assertEqual(self.changes(source), [])
        self.assertEqual(self.left(source), {"constant", "constant expression"})

    def test_nothing_is_not_replaced_by_nothing(self):
        source = "#include <optional>\nstd::optional<int> f() { return std::nullopt; }"
        self.assertEqual(self.changes(source), [])

    def test_array_bounds_and_labels_are_left_out(self):
        source = "int a[3]; void f(int i) { switch (i) { case 2: break; } int b[2 + 2]; (void)b; }"
        self.assertEqual(self.changes(source), [])

    def test_what_a_macro_makes_is_left_out(self):
        source = "#define ADD(a, b) (a + b)\nint f(int i) { int r = ADD(i, 5); return r; }"
        self.assertEqual(self.changes(source), [("return", "-> empty")])
        self.assertEqual(self.left(source), {"in a macro"})

    def test_the_arguments_of_what_ends_processes_are_left_out(self):
        source = 'extern "C" int kill(int, int); void f(int p) { kill(p + 1, 9); }'
        self.assertEqual(self.changes(source), [])
        self.assertEqual(self.left(source), {"ends or starts processes"})

    def test_a_function_that_makes_processes_is_left_out(self):
        source = 'extern "C" int fork(); void f(int n) { while (n > 0) { --n; fork(); } }'
        self.assertEqual(self.changes(source), [])
        self.assertEqual(self.left(source), {"makes processes"})

    def test_templates_are_changed_as_they_are_written(self):
        source = "template <class T> bool f(T a, T b) { return a < b; } bool g = f(1, 2) || f(1.0, 2.0);"
        self.assertEqual(
            [c for c in self.changes(source) if c[1] == "< -> <="], [("operator", "< -> <=")]
        )

    def test_a_place_has_the_name_of_its_function_also_in_a_lambda(self):
        source = "namespace n { struct S { int f(int i) { auto g = [](int k) { return k - i0; }; return g(i); } " \
                 "static int i0; }; }"
        self.assertEqual({p["function"] for p in self.found(source)}, {"n::S::f"})


def place(begin, end, number, before="(on(\1) ? x : ", kind="operator", inner=None):
    return Place("a.cpp", begin, end, inner or (begin, end), 1, "f", kind, "a -> b",
                 before.replace("on(", "::mutation::on("), ")", number=number)


class Rewriting(unittest.TestCase):
    def text(self, source, *places):
        text, refused = schemata.rewritten(source, places)
        return "".join(text.split("\n")[1:]), refused

    def test_a_place_within_another_stays_within_it(self):
        text, refused = self.text("a+b", place(0, 3, 1), place(2, 3, 2))
        self.assertEqual(text, "(::mutation::on(1) ? x : a+(::mutation::on(2) ? x : b)/*~2*/)/*~1*/")
        self.assertEqual(refused, set())

    def test_what_takes_no_value_stands_outside_of_what_gives_one(self):
        text, _ = self.text("f()", place(0, 3, 1), place(0, 3, 2, "(on(\1) ? void() : (", "call"))
        self.assertTrue(text.startswith("(::mutation::on(2) ? void()"), text)

    def test_places_that_overlap_are_refused(self):
        self.assertEqual(self.text("abcd", place(0, 3, 1), place(2, 4, 2))[1], {2})

    def test_an_error_means_the_change_on_its_line_or_the_innermost_around_it(self):
        places = [place(0, 3, 1), place(2, 3, 2)]
        text, _ = schemata.rewritten("a+b", places)
        where = schemata.regions(text, places)
        lines = text.split("\n")
        line_of = lambda part: next(i for i, line in enumerate(lines, 1) if part in line)
        self.assertEqual(schemata.at_fault(where, line_of("on(2)")), {2})
        self.assertEqual(schemata.at_fault(where, line_of("a+")), {1})
        self.assertEqual(schemata.at_fault(where, 1), set())


class Addresses(unittest.TestCase):
    def found(self, *begins):
        objects = [
            {"file": "counter/a.cpp", "begin": b, "end": b + 1, "inner": [b, b + 1], "line": b, "function": "f",
             "kind": "operator", "change": "+ -> -", "before": "", "after": ""} for b in begins
        ]
        rooms = unittest.mock.Mock()
        rooms.of = lambda file: file.split("/")[0]
        return ordered(objects, rooms)[0]

    def test_like_changes_in_a_function_are_numbered_in_their_order(self):
        places = self.found(30, 10, 10, 20)
        self.assertEqual([(p.begin, p.ordinal) for p in places], [(10, 1), (20, 2), (30, 3)])

    def test_an_address_does_not_change_with_the_line(self):
        self.assertEqual(self.found(10)[0].address, self.found(11)[0].address)

    def test_what_is_listed_without_a_reason_is_refused(self):
        with tempfile.TemporaryDirectory() as folder:
            file = Path(folder) / "equivalents"
            file.write_text("# Why.\na | f | operator | + -> - | 1\n\nb | f | operator | + -> - | 1\n")
            with self.assertRaisesRegex(SystemExit, "equivalents:4"):
                equivalents.read(file)


class Sampling(unittest.TestCase):
    def places(self):
        made = []
        for room, count in (("a", 5), ("b", 2)):
            for i in range(count):
                made.append(Place(f"{room}/x.cpp", i, i + 1, (i, i + 1), i, "f", "k", "c", "", "", room, i, i))
        return made

    def test_the_rooms_take_turns(self):
        self.assertEqual([p.room for p in sampling.drawn(self.places(), 1)], list("ababaaa"))

    def test_a_seed_gives_the_same_order_again_and_another_seed_another(self):
        order = lambda seed: [p.address for p in sampling.drawn(self.places(), seed)]
        self.assertEqual(order(1), order(1))
        self.assertNotEqual([order(s) for s in range(5)], [order(1)] * 5)


TWO_ROOMS = ("a/x.cpp", "b/y.cpp", "tests/a/CMakeLists.txt", "tests/b/CMakeLists.txt")


@contextlib.contextmanager
def folder_of(*files):
    """A folder with these files, which are empty."""
    with tempfile.TemporaryDirectory() as folder:
        for file in files:
            path = Path(folder) / file
            path.parent.mkdir(parents=True, exist_ok=True)
            path.touch()
        yield Path(folder)


class RoomNames(unittest.TestCase):
    def test_the_innermost_folder_with_tests_is_the_room(self):
        with folder_of("a/x.cpp", "a/b/y.cpp", "tests/a/CMakeLists.txt", "tests/a/b/CMakeLists.txt",
                       "tests/support/CMakeLists.txt") as root:
            rooms = Rooms(root)
            self.assertEqual(rooms.all, ["a", "a/b"])
            self.assertEqual(rooms.of("a/b/y.cpp"), "a/b")
            self.assertEqual(rooms.of("a/c/z.cpp"), "a")
            self.assertEqual(rooms.of("c/z.cpp"), "")
            self.assertEqual(Rooms(root, ["a"]).of("a/b/y.cpp"), "")

    def test_what_is_made_of_the_tests_of_a_room_is_known_by_its_folder(self):
        with folder_of(*TWO_ROOMS) as root:
            database = [
                {"file": str(root / "tests" / room / "t.cpp"),
                 "command": f"c++ -o tests/{room}/CMakeFiles/{room}_test.dir/t.cpp.o -c t.cpp"}
                for room in ("a", "b")
            ]
            self.assertEqual(Rooms(root, ["a"]).test_targets(database), ["a_test"])
            with unittest.mock.patch.dict(rooms.SHARED, {"b_test": "a"}):
                self.assertEqual(Rooms(root, ["a"]).test_targets(database), ["a_test", "b_test"])

    def test_a_test_program_may_be_of_two_rooms_or_of_none(self):
        with folder_of(*TWO_ROOMS) as root:
            known, build = Rooms(root), root / "build"
            with unittest.mock.patch.dict(rooms.SHARED, {"b_test": "a"}):
                self.assertEqual(known.of_test(build / "tests/b/b_test", build), {"a", "b"})
                self.assertEqual(known.of_test(build / "tests/b/other_test", build), {"b"})
                self.assertEqual(known.of_test(build / "tests/faults/c_test", build), set())
                self.assertIsNone(known.of_test(build / "tools/program", build))


if __name__ == "__main__":
    unittest.main()
