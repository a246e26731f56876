#!/usr/bin/env python3
"""The native compiler: where it is searched, how it is called, and how it can fail."""

import os
import resource
import shutil
import signal
import subprocess
import unittest

from harness import CommandLineTest, FLAGS, PROGRAM, RUNTIME, WRITTEN

NOT_FOUND = "No native compiler found (install gcc or clang).\n"
FAILED = "Native compilation failed.\n"
SEARCH_PATH = "/usr/bin:/bin"
UNUSED_USER = 54321

# A native compiler that prints its open descriptors, and what those above 2 are. It is no script,
# as a shell would open that.
DESCRIPTORS = r"""
#include <fcntl.h>
#include <stdio.h>
#include <unistd.h>

int main(void) {
    for (int number = 0; number < 1024; ++number) {
        if (fcntl(number, F_GETFD) >= 0) {
            char link[64];
            char target[4096] = "";
            snprintf(link, sizeof link, "/proc/self/fd/%d", number);
            if (number > 2 && readlink(link, target, sizeof target - 1) < 0) {
                return 3;
            }
            printf("%d %s\n", number, target);
        }
    }
    return 0;
}
"""


class Search(CommandLineTest):
    def assert_chosen(self, compiler, path):
        """Compiles with this search path and checks the name under which the compiler ran."""
        (self.directory / "called").unlink(missing_ok=True)
        self.assertEqual(self.krelcc("prog.krl", environment={"PATH": path}),
                         (0, self.compiled(), ""))
        self.assertEqual(self.called()[0], str(compiler))

    def assert_not_found(self, path):
        self.assertEqual(self.krelcc("prog.krl", environment={"PATH": path}), (1, "", NOT_FOUND))
        self.assertEqual(self.called(), [])

    def test_gcc_is_preferred_wherever_it_is(self):
        self.stub("one/clang")
        gcc = self.stub("two/gcc")
        self.stub("two/clang")
        self.assert_chosen(gcc, f"{self.bin}/one:{self.bin}/two")

    def test_clang_without_gcc(self):
        clang = self.stub("two/clang")
        (self.bin / "one").mkdir()
        self.assert_chosen(clang, f"{self.bin}/one:{self.bin}/two")

    def test_first_directory_wins(self):
        one = self.stub("one/gcc")
        two = self.stub("two/gcc")
        self.assert_chosen(one, f"{self.bin}/one:{self.bin}/two")
        self.assert_chosen(two, f"{self.bin}/two:{self.bin}/one")

    def test_missing_directories_are_passed_over(self):
        gcc = self.stub("gcc")
        self.assert_chosen(gcc, f"/no/such/place:{self.bin}")

    def test_file_that_is_not_executable_is_passed_over(self):
        self.stub("one/gcc").chmod(0o644)
        two = self.stub("two/gcc")
        self.assert_chosen(two, f"{self.bin}/one:{self.bin}/two")

    def test_other_names_do_not_count(self):
        for name in ("cc", "gcc-12", "GCC", "clang-14", "clang++"):
            self.stub(name)
        self.assert_not_found(str(self.bin))

    def test_no_compiler(self):
        self.assert_not_found(str(self.bin))

    def test_unset_path(self):
        self.stub("../gcc")
        self.assert_not_found(None)

    def test_empty_path_is_the_working_directory(self):
        self.assert_not_found("")
        self.stub("../gcc")
        self.assert_chosen("./gcc", "")

    def test_empty_piece_is_the_working_directory(self):
        gcc = self.stub("gcc")
        self.stub("../gcc")
        self.assert_chosen("./gcc", f":{self.bin}")
        self.assert_chosen("./gcc", f"/no/such/place::{self.bin}")
        self.assert_chosen("./gcc", "/no/such/place:")
        self.assert_chosen(gcc, f"{self.bin}:")

    def test_piece_is_joined_as_it_is(self):
        self.stub("gcc")
        self.assert_chosen("bin/gcc", "bin")
        self.assert_chosen("bin/gcc", "bin/")
        self.assert_chosen("./bin/../bin/gcc", "./bin/../bin")

    def test_lookup_comes_before_anything_else(self):
        self.assertEqual(self.krelcc("missing.krl"), (1, "", NOT_FOUND))
        self.write("prog.krl", "@")
        self.assertEqual(self.krelcc("prog.krl"), (1, "", NOT_FOUND))


class Call(CommandLineTest):
    def tools(self, name):
        """Makes a folder with a real native compiler and what it has to find itself."""
        tools = self.directory / name
        tools.mkdir()
        for tool in (name, "as", "ld"):
            found = shutil.which(tool, path=SEARCH_PATH)
            self.assertIsNotNone(found, f"these tests need {tool}")
            (tools / tool).symlink_to(found)
        return tools

    def test_arguments(self):
        gcc = self.stub("gcc")
        self.assertEqual(self.krelcc("prog.krl", "-o", "my out", "--asm-dump"),
                         (0, 'Assembly written to "prog.s".\n' + self.compiled(output="my out"),
                          ""))
        self.assertEqual(self.called(), [str(gcc), "prog.s", str(RUNTIME), "-o", "my out"])

    def test_paths_that_look_like_options_are_handed_over_as_files(self):
        gcc = self.stub("gcc")
        for stem in ("@prog", "-prog"):
            source = f"./{stem}.krl"
            self.write(source, PROGRAM)
            self.assertEqual(self.krelcc(source, "-o", stem, "--asm-dump"),
                             (0, f'Assembly written to "{stem}.s".\n' +
                              self.compiled(source, stem), ""))
            self.assertEqual(self.called()[-5:],
                             [str(gcc), f"./{stem}.s", str(RUNTIME), "-o", f"./{stem}"])

    def test_files_of_options_are_not_read(self):
        # With the real compilers, which would print their version and build nothing.
        for name in ("gcc", "clang"):
            with self.subTest(compiler=name):
                tools = self.tools(name)
                self.write("@r.krl", PROGRAM)
                self.write("r.s", "--version")
                self.write("r", "--version")
                self.assertEqual(self.krelcc("@r.krl", "--asm-dump",
                                             environment={"PATH": str(tools)}),
                                 (0, 'Assembly written to "@r.s".\n' +
                                  self.compiled("@r.krl", "@r"), ""))
                ran = subprocess.run([self.directory / "@r"], capture_output=True, check=False)
                self.assertEqual((ran.returncode, ran.stdout), (0, b"hello"))
                (self.directory / "@r").unlink()

    def test_standard_streams_are_inherited(self):
        self.stub("gcc", 'read word; echo "out $word"; echo "err $word" >&2')
        reading, writing = os.pipe()
        os.write(writing, b"word\n")
        os.close(writing)
        with open(reading, "rb") as stdin:
            result = self.krelcc("prog.krl", stdin=stdin)
        self.assertEqual(result, (0, "out word\n" + self.compiled(), "err word\n"))

    def test_no_other_descriptor_is_inherited(self):
        source = self.write("descriptors.c", DESCRIPTORS)
        built = subprocess.run([shutil.which("gcc", path=SEARCH_PATH), source, "-o",
                                self.bin / "gcc"], check=False)
        self.assertEqual(built.returncode, 0)
        for dumps in ([], *([name] for name in FLAGS), list(FLAGS)):
            with self.subTest(dumps=dumps):
                self.assertEqual(self.krelcc("prog.krl", *(FLAGS[name] for name in dumps)),
                                 (0, "".join(WRITTEN[name] for name in dumps) +
                                  "0 \n1 \n2 \n" + self.compiled(), ""))

    def test_both_compilers_build_the_program(self):
        for name in ("gcc", "clang"):
            with self.subTest(compiler=name):
                tools = self.tools(name)
                self.assertEqual(self.krelcc("prog.krl", environment={"PATH": str(tools)}),
                                 (0, self.compiled(), ""))
                ran = subprocess.run([self.directory / "prog"], capture_output=True, check=False)
                self.assertEqual((ran.returncode, ran.stdout, ran.stderr), (0, b"hello", b""))
                (self.directory / "prog").unlink()


class Failure(CommandLineTest):
    def test_exit_status_is_passed_on(self):
        for status in (1, 2, 126, 255):
            self.stub("gcc", f"echo broken >&2; exit {status}")
            self.assertEqual(self.krelcc("prog.krl"), (status, "", "broken\n" + FAILED))

    def test_death_by_a_signal(self):
        for number in (signal.SIGKILL, signal.SIGSEGV, signal.SIGTERM):
            self.stub("gcc", f"kill -{int(number)} $$")
            self.assertEqual(self.krelcc("prog.krl"), (1, "", FAILED))

    def test_compiler_that_cannot_run(self):
        gcc = self.stub("gcc")
        gcc.write_text("#!/no/such/interpreter\n")
        self.assertEqual(self.krelcc("prog.krl"),
                         (127, "", f"Could not run {gcc}: No such file or directory\n" + FAILED))
        gcc.write_text("not a program\n")
        self.assertEqual(self.krelcc("prog.krl"),
                         (127, "", f"Could not run {gcc}: Exec format error\n" + FAILED))

    def test_directory_counts_as_executable(self):
        (self.bin / "one" / "gcc").mkdir(parents=True)
        self.stub("two/gcc")
        self.stub("one/clang")
        result = self.krelcc("prog.krl",
                             environment={"PATH": f"{self.bin}/one:{self.bin}/two"})
        self.assertEqual(
            result,
            (127, "", f"Could not run {self.bin}/one/gcc: Permission denied\n" + FAILED))
        self.assertEqual(self.called(), [])

    def test_child_that_cannot_be_waited_for(self):
        # A process that ignores SIGCHLD never sees the status of its children.
        gcc = self.stub("gcc")
        result = self.krelcc("prog.krl",
                             preexec_fn=lambda: signal.signal(signal.SIGCHLD, signal.SIG_IGN))
        self.assertEqual(result,
                         (1, "", f"Could not wait for {gcc}: No child processes\n" + FAILED))

    def test_child_that_cannot_be_started(self):
        # With one process allowed, krelcc is the only one of its user. Root is not limited.
        gcc = self.stub("gcc")
        krelcc = self.install(self.directory / "build")
        (self.directory / "build" / "codegen").mkdir()
        (self.directory / "build" / "codegen" / "runtime.o").touch()
        self.directory.chmod(0o755)
        # A build for coverage keeps its counts of lines in a place that is not the user's.
        counts = self.directory / "counts"
        counts.mkdir()
        counts.chmod(0o777)

        def restrict():
            resource.setrlimit(resource.RLIMIT_NPROC, (1, 1))
            if os.getuid() == 0:
                os.setgroups([])
                os.setgid(UNUSED_USER)
                os.setuid(UNUSED_USER)

        result = self.krelcc("prog.krl", program=krelcc, preexec_fn=restrict,
                             environment={"TMPDIR": "/tmp", "GCOV_PREFIX": str(counts)})
        self.assertEqual(result, (1, "",
                                  f"Could not start {gcc}: Resource temporarily unavailable\n"
                                  + FAILED))
        self.assertEqual(self.called(), [])


if __name__ == "__main__":
    unittest.main()
