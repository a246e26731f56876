#!/usr/bin/env python3
"""The sample projects for CMake, make and ninja, built with an installation: at first, again, after
changes, with faults."""

import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

from installed import SAMPLES, Installation

FAULTY = "void main() {\n    int = 1;\n}\n"


class Project:
    """What is the same for all: how a copy of the samples is built, and what comes out."""

    executables = "."

    @classmethod
    def setUpClass(cls):
        cls.prefix = Installation(cls).prefix

    def setUp(self):
        place = tempfile.TemporaryDirectory()
        self.addCleanup(place.cleanup)
        self.folder = Path(place.name) / "a project"
        shutil.copytree(SAMPLES, self.folder)
        self.prepare()

    def prepare(self):
        pass

    def run_in(self, folder, *command, fails=False):
        run = subprocess.run(command, cwd=folder, capture_output=True, text=True, check=False)
        self.assertEqual(run.returncode != 0, fails, run.stdout + run.stderr)
        return run.stdout + run.stderr

    def path(self, name):
        return self.folder / self.name / self.executables / name

    def built(self):
        """When each executable was made, in nanoseconds."""
        return {name: self.path(name).stat().st_mtime_ns for name in ("hello", "goodbye")}

    def touch(self, path):
        """Makes a file newer than all that was built, which takes until the clock's next step."""
        newest = max(self.built().values())
        while path.stat().st_mtime_ns <= newest:
            path.touch()

    def made_anew(self):
        """The executables that a build makes again."""
        before = self.built()
        self.build()
        after = self.built()
        return {name for name in before if before[name] != after[name]}

    def test_builds_what_runs(self):
        self.build()
        for name, text in (("hello", "Hello!\n"), ("goodbye", "Goodbye!\n")):
            run = subprocess.run([self.path(name)], capture_output=True, text=True, check=True)
            self.assertEqual(run.stdout, text)

    def test_builds_nothing_twice(self):
        self.build()
        self.assertEqual(self.made_anew(), set())

    def test_a_changed_program_is_built_again_and_no_other(self):
        self.build()
        self.touch(self.folder / "hello.krl")
        self.assertEqual(self.made_anew(), {"hello"})
        self.assertEqual(self.made_anew(), set())

    def test_a_new_compiler_builds_all_again(self):
        self.build()
        self.touch(self.prefix / "lib/krelcc/krel")
        self.assertEqual(self.made_anew(), {"hello", "goodbye"})

    def test_a_fault_is_told_and_stays_one(self):
        self.build()
        (self.folder / "hello.krl").write_text(FAULTY)
        self.touch(self.folder / "hello.krl")
        for _ in range(2):
            shown = self.build(fails=True)
            self.assertIn("hello.krl at line 2", shown)
            self.assertIn("Syntax error", shown)

    def test_in_parallel(self):
        more = [f"program{number}" for number in range(20)]
        for name in more:
            (self.folder / f"{name}.krl").write_text(f'void main() {{ print("{name}"); }}\n')
        self.add_programs(more)
        self.build()
        for name in more:
            run = subprocess.run([self.path(name)], capture_output=True, text=True, check=True)
            self.assertEqual(run.stdout, name)


class Make(Project, unittest.TestCase):
    name = "make"

    def build(self, fails=False):
        return self.run_in(self.folder / "make", "make", "-j8", f"prefix={self.prefix}",
                           fails=fails)

    def add_programs(self, names):
        makefile = self.folder / "make/Makefile"
        makefile.write_text(makefile.read_text().replace("goodbye", " ".join(["goodbye", *names])))


class Ninja(Project, unittest.TestCase):
    name = "ninja"

    def prepare(self):
        self.replace("prefix = /usr", f"prefix = {self.prefix}")

    def replace(self, old, new):
        file = self.folder / "ninja/build.ninja"
        text = file.read_text()
        self.assertIn(old, text)
        file.write_text(text.replace(old, new))

    def build(self, fails=False):
        return self.run_in(self.folder / "ninja", "ninja", "-j8", fails=fails)

    def add_programs(self, names):
        with (self.folder / "ninja/build.ninja").open("a") as file:
            file.writelines(f"build {name}: krel ../{name}.krl | $krel\n" for name in names)


class CMake(Project):
    name = "cmake"
    executables = "build/bin"

    def prepare(self):
        self.configure()

    def configure(self):
        self.run_in(self.folder / "cmake", "cmake", "-B", "build", "-G", self.generator,
                    f"-DCMAKE_PREFIX_PATH={self.prefix}")

    def build(self, fails=False):
        return self.run_in(self.folder / "cmake", "cmake", "--build", "build", "-j8", fails=fails)

    def add_programs(self, names):
        with (self.folder / "cmake/CMakeLists.txt").open("a") as file:
            file.writelines(f"add_krel_executable({name} ../{name}.krl)\n" for name in names)
        self.configure()

    def test_targets_one_by_one(self):
        self.run_in(self.folder / "cmake", "cmake", "--build", "build", "--target", "hello")
        self.assertTrue(self.path("hello").exists())
        self.assertFalse(self.path("goodbye").exists())

    def test_programs_are_tests(self):
        self.build()
        shown = self.run_in(self.folder / "cmake/build", "ctest")
        self.assertIn("100% tests passed, 0 tests failed out of 1", shown)

    def test_installation(self):
        self.build()
        target = self.folder / "installed"
        self.run_in(self.folder / "cmake", "cmake", "--install", "build", "--prefix", target)
        run = subprocess.run([target / "bin/goodbye"], capture_output=True, text=True, check=True)
        self.assertEqual(run.stdout, "Goodbye!\n")

    def test_version(self):
        lists = self.folder / "cmake/CMakeLists.txt"
        lists.write_text(lists.read_text().replace("find_package(krel", "find_package(krel 99.0"))
        shown = self.run_in(self.folder / "cmake", "cmake", "-B", "build", fails=True)
        self.assertIn("99.0", shown)

    def test_wrong_use_is_told(self):
        lists = self.folder / "cmake/CMakeLists.txt"
        sound = lists.read_text()
        for call, message in (
                ("add_krel_executable(two ../hello.krl ../goodbye.krl)", "one source"),
                ("add_krel_executable(two hello.txt)", "does not end in .krl")):
            with self.subTest(call=call):
                lists.write_text(sound + call + "\n")
                shown = self.run_in(self.folder / "cmake", "cmake", "-B", "build", fails=True)
                self.assertIn(message, " ".join(shown.split()))


class CMakeWithMake(CMake, unittest.TestCase):
    generator = "Unix Makefiles"


class CMakeWithNinja(CMake, unittest.TestCase):
    generator = "Ninja"


if __name__ == "__main__":
    unittest.main()
