#!/usr/bin/env python3
"""The file that our own native build writes: there as a whole or not at all, as from the real one.

Each situation is made twice, once for our own and once for the real native compiler. What is there
afterwards has to be the same: kinds of files, modes, links, whether old content is still there.
"""

import os
import pathlib
import resource
import shutil
import signal
import stat
import subprocess
import time
import unittest

from harness import NATIVE, NativeTest, RUNTIME, system_tool

UNUSED_USER = 54321
ASSEMBLY = """\
\t.text

\t.globl main
\t.type main, @function
main:
\txorl %eax, %eax
\tret
\t.size main, .-main
\t.section .note.GNU-stack,"",@progbits
"""
# So large that writing it takes a while.
DATA_BYTES = 40_000_000


class Situation:
    """What is in a folder: made before a build, and looked at afterwards."""

    def __init__(self, folder):
        self.folder = folder
        folder.mkdir()
        folder.chmod(0o755)

    def file(self, name="out", content="old", mode=0o644):
        path = self.folder / name
        path.write_text(content)
        path.chmod(mode)
        return path

    def describe(self):
        """The state of all files: kind, mode, number of links, and a word on the content."""
        return {str(path.relative_to(self.folder)): self.describe_file(path)
                for path in sorted(self.folder.rglob("*"))}

    @staticmethod
    def describe_file(path):
        status = path.lstat()
        kind = stat.filemode(status.st_mode)
        if stat.S_ISLNK(status.st_mode):
            return kind, f"to {os.readlink(path)}"
        if not stat.S_ISREG(status.st_mode):
            return kind, "no file"
        content = path.read_bytes()
        what = "an executable" if content.startswith(b"\x7fELF") else repr(content[:20])
        return kind, f"{status.st_nlink} links to {what}"


class OutputTest(NativeTest):
    def setUp(self):
        super().setUp()
        self.real = system_tool("gcc")
        if not self.real:
            self.skipTest("there is no other gcc to compare with")
        self.directory.chmod(0o755)
        self.write("prog.s", ASSEMBLY).chmod(0o644)
        # Without another compiler behind it, our own can only do all of the work or none.
        self.environment = {"PATH": "/no/such/folder"}

    def build(self, native, folder, output="out", assembly="prog.s", **options):
        environment = self.environment if native else None
        status, stdout, _ = self.run_here(
            NATIVE if native else self.real, self.directory / assembly, RUNTIME, "-o", output,
            cwd=folder, environment=environment, **options)
        self.assertEqual(stdout, "")
        return status == 0

    def assert_same(self, prepare, output="out", works=True, **options):
        """Builds with both in folders that were prepared; both have to leave the same."""
        left = []
        for native in (True, False):
            situation = Situation(self.directory / f"{'own' if native else 'real'}")
            prepare(situation)
            done = self.build(native, situation.folder, output, **options)
            left.append((done, situation.describe()))
            shutil.rmtree(situation.folder)
        self.assertEqual(left[0], left[1])
        self.assertEqual(left[0][0], works)

    def as_other_user(self):
        """Options of a process that permissions apply to."""
        if os.getuid() != 0:
            return {}
        other = {"user": UNUSED_USER, "group": UNUSED_USER, "extra_groups": []}
        if subprocess.run(["test", "-x", NATIVE], check=False, **other).returncode != 0:
            self.skipTest("no other user comes to where this lies, which is root's own")
        return other


class Written(OutputTest):
    def test_new_file(self):
        self.assert_same(lambda situation: None)

    def test_new_file_with_other_masks(self):
        for mask in (0o000, 0o027, 0o077, 0o177, 0o777):
            with self.subTest(oct(mask)):
                self.assert_same(lambda situation: None, umask=mask)

    def test_existing_file(self):
        self.assert_same(Situation.file)

    def test_existing_files_with_other_modes(self):
        for mode in (0o600, 0o444, 0o755, 0o777, 0o4755, 0o000):
            for mask in (0o022, 0o077):
                with self.subTest(mode=oct(mode), mask=oct(mask)):
                    self.assert_same(lambda situation: situation.file(mode=mode), umask=mask)

    def test_empty_file(self):
        for mode in (0o644, 0o600, 0o444, 0o755):
            with self.subTest(oct(mode)):
                self.assert_same(lambda situation: situation.file(content="", mode=mode))

    def test_hard_link(self):
        def prepare(situation):
            os.link(situation.file("other"), situation.folder / "out")
        self.assert_same(prepare)

    def test_hard_link_to_an_empty_file(self):
        def prepare(situation):
            os.link(situation.file("other", content=""), situation.folder / "out")
        self.assert_same(prepare)

    def test_link_to_a_file(self):
        def prepare(situation):
            situation.file("other")
            (situation.folder / "out").symlink_to("other")
        self.assert_same(prepare)

    def test_link_to_an_empty_file(self):
        def prepare(situation):
            situation.file("other", content="")
            (situation.folder / "out").symlink_to("other")
        self.assert_same(prepare)

    def test_link_to_nothing(self):
        self.assert_same(lambda situation: (situation.folder / "out").symlink_to("missing"))

    def test_link_to_a_null_device(self):
        self.assert_same(lambda situation: (situation.folder / "out").symlink_to("/dev/null"))

    def test_null_device(self):
        self.assert_same(lambda situation: None, output="/dev/null")
        self.assertTrue(stat.S_ISCHR(os.stat("/dev/null").st_mode))

    def test_file_in_another_folder(self):
        self.assert_same(lambda situation: (situation.folder / "sub").mkdir(), output="sub/out")

    def test_running_executable(self):
        def prepare(situation):
            shutil.copy(shutil.which("sleep"), situation.folder / "out")
            sleeper = subprocess.Popen([situation.folder / "out", "100"])
            self.addCleanup(sleeper.wait)
            self.addCleanup(sleeper.kill)
        self.assert_same(prepare)


class NotWritten(OutputTest):
    def assert_fails_alike(self, prepare, output="out", **options):
        self.assert_same(prepare, output, works=False, **options)

    def test_missing_folder(self):
        self.assert_fails_alike(lambda situation: None, output="missing/out")

    def test_folder_in_its_place(self):
        self.assert_fails_alike(lambda situation: (situation.folder / "out").mkdir())

    def test_file_as_a_folder(self):
        self.assert_fails_alike(lambda situation: situation.file("file"), output="file/out")

    def test_link_that_leads_to_itself(self):
        self.assert_fails_alike(lambda situation: (situation.folder / "out").symlink_to("out"))

    def test_folder_that_cannot_be_written(self):
        for prepare in (lambda situation: situation.folder.chmod(0o555),
                        lambda situation: (situation.file(), situation.folder.chmod(0o555))):
            self.assert_fails_alike(prepare, **self.as_other_user())

    def test_full_device(self):
        self.assert_fails_alike(lambda situation: None, output="/dev/full")
        self.assertTrue(stat.S_ISCHR(os.stat("/dev/full").st_mode))

    def test_pipe_with_a_name(self):
        self.assert_fails_alike(lambda situation: os.mkfifo(situation.folder / "out"))

    def test_pipe_with_a_name_that_is_read(self):
        def prepare(situation):
            os.mkfifo(situation.folder / "out")
            reader = os.open(situation.folder / "out", os.O_RDONLY | os.O_NONBLOCK)
            self.addCleanup(os.close, reader)
        self.assert_fails_alike(prepare)

    def test_empty_name(self):
        self.assert_fails_alike(lambda situation: None, output="")

    def test_failed_build(self):
        """The real one, which gets the work then, removes what was there."""
        self.write("broken.s", ASSEMBLY.replace("xorl %eax, %eax", "call nowhere@PLT"))
        self.environment = None
        for prepare in (lambda situation: None, Situation.file):
            self.assert_fails_alike(prepare, assembly="broken.s")

    def test_failed_build_without_another_compiler(self):
        self.write("broken.s", ASSEMBLY.replace("xorl %eax, %eax", "call nowhere@PLT"))
        situation = Situation(self.directory / "own")
        situation.file()
        before = situation.describe()
        self.assertFalse(self.build(True, situation.folder, assembly="broken.s"))
        self.assertEqual(situation.describe(), before)

    def test_limited_size(self):
        """Also with the signal, which Python ignores, as it is for others."""
        def limit():
            resource.setrlimit(resource.RLIMIT_FSIZE, (5000, 5000))

        def limit_with_signal():
            limit()
            signal.signal(signal.SIGXFSZ, signal.SIG_DFL)
        for prepare in (limit, limit_with_signal):
            for before in ("old", None):
                with self.subTest(before=before, prepare=prepare.__name__):
                    situation = Situation(self.directory / "limited")
                    if before:
                        situation.file(content=before)
                    self.assertFalse(self.build(True, situation.folder, preexec_fn=prepare))
                    self.assert_whole_or_absent(situation, before)
                    shutil.rmtree(situation.folder)

    def test_limited_size_is_said(self):
        def limit():
            resource.setrlimit(resource.RLIMIT_FSIZE, (5000, 5000))
            signal.signal(signal.SIGXFSZ, signal.SIG_DFL)
        status, _, stderr = self.run_here(NATIVE, "prog.s", RUNTIME, "-o", "out",
                                          environment=self.environment, preexec_fn=limit)
        self.assertEqual(status, 1)
        self.assertIn("cannot write out: File too large", stderr)

    def assert_whole_or_absent(self, situation, before):
        """Nothing but what was there is left, and no half file."""
        left = {name: content for name, (_, content) in situation.describe().items()}
        self.assertIn(left, ({}, {"out": f"1 links to {before.encode()!r}"} if before else {}))


class FullDisk(OutputTest):
    def mounted(self):
        """A small file system, or None."""
        place = self.directory / "disk"
        place.mkdir()
        mounted = subprocess.run(["mount", "-t", "tmpfs", "-o", "size=16k", "tmpfs", place],
                                 capture_output=True, check=False)
        if mounted.returncode != 0:
            self.skipTest("needs root to mount a small file system")
        self.addCleanup(subprocess.run, ["umount", place], check=True)
        return place

    def test_nothing_new_is_left(self):
        place = self.mounted()
        for before in (None, "", "old"):
            with self.subTest(before=before):
                if before is not None:
                    (place / "out").write_text(before)
                self.assertFalse(self.build(True, place))
                left = {path.name: path.read_text() for path in place.iterdir()}
                self.assertIn(left, ({}, {"out": before}))


class Killed(OutputTest):
    """Whenever the build is killed, the file is the old one or the new one."""

    @classmethod
    def assembly(cls):
        text = "0123456789" * (DATA_BYTES // 10)
        return (ASSEMBLY + '\t.section .rodata\n.LC0:\n\t.string "' + text + '"\n')

    def test_at_any_time(self):
        self.write("large.s", self.assembly())
        environment = {**os.environ, **self.environment, "ASAN_OPTIONS": "detect_leaks=0"}
        kept = killed = 0
        for step in range(60):
            out = self.directory / "out"
            out.write_text("old")
            process = subprocess.Popen([NATIVE, "large.s", RUNTIME, "-o", "out"], env=environment,
                                       cwd=self.directory, stderr=subprocess.DEVNULL)
            time.sleep(0.003 * step)
            process.kill()
            killed += process.wait() != 0
            kept += out.stat().st_size == 3
            self.assertTrue(out.stat().st_size == 3 or out.stat().st_size > DATA_BYTES)
            if out.stat().st_size > DATA_BYTES:
                self.assertEqual(self.run_here("./out"), (0, "", ""))
                break
        self.assertGreater(kept, 0)
        self.assertGreater(killed, 0)

    def test_other_signals_leave_no_other_file(self):
        self.write("large.s", self.assembly())
        environment = {**os.environ, **self.environment, "ASAN_OPTIONS": "detect_leaks=0"}
        before = {"prog.s", "large.s"}
        for step in range(30):
            process = subprocess.Popen([NATIVE, "large.s", RUNTIME, "-o", "out"], env=environment,
                                       cwd=self.directory, stderr=subprocess.DEVNULL)
            time.sleep(0.006 * step)
            process.terminate()
            process.wait()
            left = {path.name for path in pathlib.Path(self.directory).iterdir()}
            self.assertIn(left - before, (set(), {"out"}))
            if "out" in left:
                self.assertGreater((self.directory / "out").stat().st_size, DATA_BYTES)
                (self.directory / "out").unlink()


if __name__ == "__main__":
    unittest.main()
