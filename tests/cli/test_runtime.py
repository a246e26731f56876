#!/usr/bin/env python3
"""The runtime object: the three places where it is looked for, seen from wherever krelcc runs."""

import os
import unittest

from harness import CommandLineTest, SYNTAX_ERROR

NOT_FOUND = "Could not find codegen/runtime.o relative to krelcc.\n"


class Runtime(CommandLineTest):
    def setUp(self):
        super().setUp()
        self.stub("gcc")
        self.program = self.install(self.directory / "a" / "b")
        self.start_directory = self.directory / "elsewhere"
        self.start_directory.mkdir()
        self.source = self.directory / "prog.krl"

    def runtime(self, directory):
        path = self.directory / directory / "codegen" / "runtime.o"
        path.parent.mkdir(parents=True, exist_ok=True)
        path.touch()
        return path

    def assert_found(self, path, **options):
        options = {"program": self.program, "cwd": self.start_directory, **options}
        (self.directory / "called").unlink(missing_ok=True)
        self.assertEqual(self.krelcc(self.source, **options),
                         (0, self.compiled(self.source, self.source.with_suffix("")), ""))
        self.assertEqual(self.called()[2], str(path))

    def test_beside_the_executable_then_above_it_then_in_the_working_directory(self):
        beside = self.runtime("a/b")
        above = self.runtime("a")
        here = self.runtime("elsewhere")
        self.assert_found(beside)
        beside.unlink()
        self.assert_found(above)
        above.unlink()
        self.assert_found(here)

    def test_two_directories_above_is_too_far(self):
        self.runtime(".")
        self.assertEqual(self.krelcc(self.source, program=self.program, cwd=self.start_directory),
                         (1, "", NOT_FOUND))

    def test_only_the_exact_name_counts(self):
        self.runtime("a/b").rename(self.directory / "a" / "b" / "runtime.o")
        self.assertEqual(self.krelcc(self.source, program=self.program, cwd=self.start_directory),
                         (1, "", NOT_FOUND))

    def test_directory_of_that_name_is_passed_over(self):
        (self.directory / "a" / "b" / "codegen" / "runtime.o").mkdir(parents=True)
        self.assert_found(self.runtime("a"))

    def test_unreadable_place_is_passed_over(self):
        (self.directory / "a" / "b" / "codegen").write_text("a file, so nothing can lie in it")
        self.assert_found(self.runtime("a"))

    def test_link_to_a_regular_file_counts(self):
        target = self.runtime("store")
        link = self.directory / "a" / "b" / "codegen" / "runtime.o"
        link.parent.mkdir()
        link.symlink_to(target)
        self.assert_found(link)

    def test_dangling_link_is_passed_over(self):
        link = self.directory / "a" / "b" / "codegen" / "runtime.o"
        link.parent.mkdir()
        link.symlink_to("/no/such/place")
        self.assert_found(self.runtime("a"))

    def test_started_through_a_symbolic_link(self):
        beside = self.runtime("a/b")
        link = self.directory / "link"
        link.symlink_to(self.program)
        self.assert_found(beside, program=link)

    def test_started_by_a_relative_name(self):
        beside = self.runtime("a/b")
        self.assert_found(beside, name="../a/b/krelcc",
                          program=os.path.relpath(self.program, self.start_directory))

    def test_name_under_which_it_was_started_does_not_matter(self):
        beside = self.runtime("a/b")
        self.runtime("c")
        self.assert_found(beside, name=str(self.directory / "c" / "krelcc"))
        self.assert_found(beside, name="krelcc")


class Missing(CommandLineTest):
    def test_nothing_is_parsed_and_no_dump_is_written(self):
        self.stub("gcc")
        self.write("bad.krl", SYNTAX_ERROR)
        program = self.install(self.directory / "a")
        for source in ("prog.krl", "bad.krl", "missing.krl"):
            self.assertEqual(self.krelcc(source, "--ast-dump", "--asm-dump", program=program),
                             (1, "", NOT_FOUND))
        self.assertEqual(self.files(), ["bad.krl", "prog.krl"])

    def test_native_compiler_is_looked_for_first(self):
        program = self.install(self.directory / "a")
        self.assertEqual(self.krelcc("prog.krl", program=program),
                         (1, "", "No native compiler found (install gcc or clang).\n"))


if __name__ == "__main__":
    unittest.main()
