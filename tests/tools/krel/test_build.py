#!/usr/bin/env python3
"""`krel build`: what krelcc does, with our native compiler first on the search path."""

import signal
import subprocess
import unittest

from sandbox import KrelTest, REAL
from harness import SEMANTIC_ERROR, SYNTAX_ERROR


class Build(KrelTest):
    def assert_prints_hello(self, name):
        result = subprocess.run([self.directory / name], capture_output=True, text=True,
                                check=False)
        self.assertEqual((result.returncode, result.stdout), (0, "hello"))

    def test_executable_beside_the_program(self):
        self.assertEqual(self.krel("build", "prog.krl"), (0, self.compiled(), ""))
        self.assert_prints_hello("prog")

    def test_output(self):
        for words in (("prog.krl", "-o", "out"), ("-o", "out", "prog.krl"),
                      ("-o", "out", "--", "prog.krl")):
            with self.subTest(words=words):
                (self.directory / "out").unlink(missing_ok=True)
                self.assertEqual(self.krel("build", *words),
                                 (0, self.compiled(output="out"), ""))
                self.assert_prints_hello("out")

    def test_output_that_looks_like_an_option(self):
        self.assertEqual(self.krel("build", "prog.krl", "-o", "-x"),
                         (0, self.compiled(output="-x"), ""))
        self.assert_prints_hello("-x")

    def test_program_that_looks_like_an_option(self):
        self.write("-x.krl", 'void main() {\n    print("hello");\n}\n')
        self.assertEqual(self.krel("build", "--", "-x.krl"),
                         (0, self.compiled("./-x.krl", "./-x"), ""))
        self.assert_prints_hello("-x")

    def test_messages_and_statuses_are_those_of_krelcc(self):
        self.write("syntax.krl", SYNTAX_ERROR)
        self.write("semantic.krl", SEMANTIC_ERROR)
        self.write("notes.txt", "")
        krelcc = self.home / "krelcc"
        self.stub("gcc")
        for words in (("syntax.krl",), ("semantic.krl",), ("nosuch.krl",), ("notes.txt",), ("",),
                      ("prog.krl", "-o", "")):
            with self.subTest(words=words):
                expected = self.krelcc(*words, program=krelcc, name=str(krelcc))
                self.assertEqual(expected[:2], (1, ""))
                self.assertEqual(self.krel("build", *words), expected)
        self.native("exit 7")
        self.assertEqual(self.krel("build", "prog.krl"), (7, "", "Native compilation failed.\n"))

    def test_messages_of_the_native_compiler_pass(self):
        self.native("echo noted >&2\necho told\nexit 0")
        self.assertEqual(self.krel("build", "prog.krl"),
                         (0, f"told\n{self.compiled()}", "noted\n"))

    def test_signals_reach_krelcc(self):
        self.native('kill -TERM "$PPID"\nwhile :; do /bin/sleep 0.05; done')
        self.assertEqual(self.krel("build", "prog.krl"), (-signal.SIGTERM, "", ""))


class Native(KrelTest):
    """Which native compiler is found. Each of them makes a mark."""

    def setUp(self):
        super().setUp()
        self.native(f"echo own >> '{self.directory}/marks'\n"
                    f"printf '%s' \"${{PATH-unset}}\" > '{self.directory}/path'\n{REAL}")
        self.script(self.bin / "gcc", f"echo system >> '{self.directory}/marks'\n{REAL}")

    def mark(self, *words, **options):
        (self.directory / "marks").unlink(missing_ok=True)
        for command in ("run", "build"):
            status, _, stderr = self.krel(command, *words, "prog.krl", **options)
            self.assertEqual((status, stderr), (0, ""))
        first, second = self.read("marks").split()
        self.assertEqual(first, second)
        return first

    def test_own_is_the_default(self):
        self.assertEqual(self.mark(), "own")
        self.assertEqual(self.mark("--native=own"), "own")
        self.assertEqual(self.mark("--native", "own"), "own")

    def test_system(self):
        self.assertEqual(self.mark("--native=system"), "system")
        self.assertEqual(self.mark("--native", "system"), "system")

    def test_own_is_put_before_the_search_path(self):
        own = str(self.home / "native")
        # A path that is not set or empty has no piece. An empty one would be the working directory.
        for path, expected in (("/x:/y", f"{own}:/x:/y"), (":/y", f"{own}::/y"), ("", own),
                               (None, own)):
            with self.subTest(path=path):
                self.assertEqual(self.mark(environment={"PATH": path}), "own")
                self.assertEqual(self.read("path"), expected)

    def test_system_without_a_search_path(self):
        for command in ("run", "build"):
            status, stdout, stderr = self.krel(command, "--native=system", "prog.krl",
                                               environment={"PATH": None})
            self.assertEqual((status, stdout, stderr),
                             (1, "", "No native compiler found (install gcc or clang).\n"))

    def test_own_that_is_missing(self):
        (self.home / "native" / "gcc").unlink()
        for command in ("run", "build"):
            self.assert_complains(self.krel(command, "prog.krl"), 1, str(self.home / "native"),
                                  "--native=system")
        self.assertEqual(self.mark("--native=system"), "system")

    def test_own_in_a_folder_that_no_search_path_can_name(self):
        self.home = self.home.rename(self.directory / "ho:me")
        self.program = self.home / "krel"
        for command in ("run", "build"):
            self.assert_complains(self.krel(command, "prog.krl"), 1, "colon", "--native=system")
        self.assertEqual(self.mark("--native=system"), "system")

    def test_krel_started_by_a_link(self):
        link = self.directory / "link"
        link.symlink_to(self.program)
        self.program = link
        self.assertEqual(self.mark(), "own")

    def test_krelcc_that_is_missing(self):
        (self.home / "krelcc").unlink()
        for command in ("run", "build"):
            self.assert_complains(self.krel(command, "prog.krl"), 1, str(self.home / "krelcc"),
                                  "No such file or directory")


if __name__ == "__main__":
    unittest.main()
