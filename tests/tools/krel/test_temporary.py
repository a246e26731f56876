#!/usr/bin/env python3
"""Where `krel run` keeps its files, and that they are removed. The other tests check that, too."""

import os
import pathlib
import shlex
import subprocess
import unittest

from sandbox import KrelTest, SHELL
from harness import PROGRAM, SEMANTIC_ERROR


class Place(KrelTest):
    def seen_place(self, **options):
        """The folder that the native compiler is to write the executable into."""
        self.native(f"echo \"$4\" > '{self.directory}/seen'\n"
                    f"/usr/bin/stat -c %a \"${{4%/*}}\" > '{self.directory}/mode'\n{SHELL}")
        self.assertEqual(self.krel("run", "prog.krl", "-c", "exit 3", **options), (3, "", ""))
        return pathlib.Path(self.read("seen").strip()).parent

    def test_directory_of_its_own(self):
        first, second = self.seen_place(), self.seen_place()
        self.assertNotEqual(first, second)
        self.assertEqual(first.parent, self.temporary)
        self.assertEqual(self.read("mode"), "700\n")

    def test_without_a_variable(self):
        for value in (None, ""):
            place = self.seen_place(environment={"TMPDIR": value})
            self.assertEqual(place.parent, pathlib.Path("/tmp"))
            self.assertFalse(place.exists())

    def test_relative_variable(self):
        self.assertEqual(self.seen_place(environment={"TMPDIR": "tmp"}).parent, self.temporary)
        with open(self.directory / "prog.krl", "rb") as stdin:
            self.assertEqual(self.krel("run", "-", "-c", "exit 3", stdin=stdin,
                                       environment={"TMPDIR": "tmp"}), (3, "", ""))

    def test_directory_is_gone_when_the_program_begins(self):
        self.native(SHELL)
        self.assertEqual(self.krel("run", "prog.krl", "-c", f"echo '{self.temporary}'/*"),
                         (0, f"{self.temporary}/*\n", ""))

    def test_place_that_is_missing(self):
        self.native(f"echo called > '{self.directory}/called'")
        for name, reason in (("nowhere", "No such file or directory"),
                             ("prog.krl", "Not a directory")):
            with self.subTest(name=name):
                place = str(self.directory / name)
                self.assert_complains(
                    self.krel("run", "prog.krl", environment={"TMPDIR": place}), 1,
                    place, "TMPDIR", reason)
        self.assertEqual(self.files(), ["prog.krl"])

    @unittest.skipIf(os.geteuid() == 0, "root may write everywhere")
    def test_place_without_permission(self):
        place = self.directory / "locked"
        place.mkdir(mode=0o500)
        self.assert_complains(self.krel("run", "prog.krl", environment={"TMPDIR": str(place)}), 1,
                              str(place), "Permission denied")


class Removal(KrelTest):
    """tearDown looks whether anything is left."""

    def test_after_what_fails(self):
        self.write("bad.krl", SEMANTIC_ERROR)
        self.assertEqual(self.krel("run", "bad.krl")[0], 1)
        self.native("exit 7")
        self.assertEqual(self.krel("run", "prog.krl")[0], 7)

    def test_without_an_executable(self):
        self.native("exit 0")
        self.assert_complains(self.krel("run", "prog.krl"), 1, "cannot open the compiled program")

    def test_executable_that_cannot_be_executed(self):
        self.native('echo nothing > "$4"')
        self.assert_complains(self.krel("run", "prog.krl"), 1, "cannot run prog",
                              "Permission denied")
        self.native('echo nothing > "$4"\n/bin/chmod +x "$4"')
        self.assert_complains(self.krel("run", "prog.krl"), 1, "cannot run prog",
                              "Exec format error")

    def test_files_of_a_killed_native_compiler(self):
        self.native('/bin/mkdir -p "$TMPDIR/a/b"\n: > "$TMPDIR/a/b/c"\n: > "$4"\nkill -KILL $$')
        self.assertEqual(self.krel("run", "prog.krl"), (1, "", "Native compilation failed.\n"))

    def test_files_of_a_killed_krelcc(self):
        self.native('kill -KILL "$PPID"')
        self.assertEqual(self.krel("run", "prog.krl"), (-9, "", ""))

    def test_many_at_once(self):
        processes = []
        for number in range(12):
            self.write(f"{number}/prog.krl", PROGRAM.replace("hello", f"hello {number}"))
            processes.append(self.start_krel("run", f"{number}/prog.krl"))
        for number, process in enumerate(processes):
            self.assertEqual(process.communicate(timeout=120), (f"hello {number}", ""))
            self.assertEqual(process.returncode, 0)


class Mounted(KrelTest):
    """A file system of its own is the place for temporary files; only krel sees it."""

    def mounted(self, options, *words, native=SHELL):
        self.native(native)
        place = shlex.quote(str(self.temporary))
        mount = f"mount -t tmpfs -o {options} none {place}"
        namespace = ["unshare", "--user", "--map-root-user", "--mount"]
        if subprocess.run([*namespace, "sh", "-c", mount], capture_output=True,
                          check=False).returncode != 0:
            self.skipTest("file systems cannot be mounted here")
        script = (f"{mount} && {{ {shlex.join(words)}; status=$?; ls -A {place} >&2; "
                  "exit $status; }")
        result = subprocess.run([*namespace, "sh", "-c", script], cwd=self.directory,
                                env={**self.environment({}), "PATH": os.environ["PATH"]},
                                stdin=subprocess.DEVNULL, capture_output=True, text=True,
                                timeout=60, check=False)
        return result.returncode, result.stdout, result.stderr

    def test_place_in_memory(self):
        words = ("run", "prog.krl", "-c", "exit 3")
        self.assertEqual(self.mounted("size=64m", str(self.program), *words), (3, "", ""))

    def test_place_without_programs(self):
        self.assert_complains(
            self.mounted("noexec", str(self.program), "run", "prog.krl", "-c", "exit 3"), 1,
            "cannot run prog", str(self.temporary), "TMPDIR")

    def test_place_that_is_read_only(self):
        self.assert_complains(self.mounted("ro", str(self.program), "run", "prog.krl"), 1,
                              str(self.temporary), "Read-only file system")

    def test_place_that_is_full(self):
        self.write("long.krl", "#" * 100_000 + "\n" + PROGRAM)
        self.assert_complains(
            self.mounted("size=16k", "sh", "-c", f"'{self.program}' run - < long.krl"), 1,
            str(self.temporary), "No space left on device")
        # Here it is krelcc that finds no space for the assembly, or the native compiler.
        self.assertEqual(self.mounted("size=4k", str(self.program), "run", "prog.krl",
                                      native='/bin/cp /bin/sh "$4" || exit 5')[0:2], (5, ""))


if __name__ == "__main__":
    unittest.main()
