#!/usr/bin/env python3
"""`krel run`: what the program gets, and how krel ends."""

import os
import re
import signal
import subprocess
import unittest

from sandbox import KrelTest, SHELL, ignoring
from harness import GENERATOR_ERROR, GENERATOR_MESSAGE, PROGRAM, SEMANTIC_ERROR, SYNTAX_ERROR

DIVISION_BY_ZERO = "void main() {\n    int zero = 0;\n    print(1 / zero);\n}\n"
TOO_LONG = 256 * 1024 * 1024 + 1


class Run(KrelTest):
    def test_only_the_program_is_heard(self):
        self.assertEqual(self.krel("run", "prog.krl"), (0, "hello", ""))
        self.assertEqual(self.files(), ["prog.krl"])

    def test_program_that_a_signal_ends(self):
        self.write("prog.krl", DIVISION_BY_ZERO)
        status, stdout, stderr = self.krel("run", "prog.krl")
        self.krel("build", "prog.krl")
        built = subprocess.run([self.directory / "prog"], capture_output=True, text=True,
                               check=False)
        self.assertEqual((status, stdout), (-signal.SIGFPE, ""))
        self.assertEqual((status, stdout, stderr), (built.returncode, built.stdout, built.stderr))

    def test_faulty_programs(self):
        krelcc = self.home / "krelcc"
        for text in (SYNTAX_ERROR, SEMANTIC_ERROR, GENERATOR_ERROR):
            self.write("prog.krl", text)
            with self.subTest(text=text):
                self.stub("gcc")
                expected = self.krelcc("prog.krl", program=krelcc)
                self.assertEqual(expected[:2], (1, ""))
                self.assertEqual(self.krel("run", "prog.krl"), expected)
        self.assertEqual(expected[2], GENERATOR_MESSAGE)

    def test_status_and_messages_of_a_failed_native_compiler(self):
        self.native("echo told\necho noted >&2\nexit 7")
        self.assertEqual(self.krel("run", "prog.krl"),
                         (7, "", "noted\nNative compilation failed.\n"))

    def test_messages_of_a_successful_native_compiler(self):
        self.native(f"echo told\necho noted >&2\n{SHELL}")
        self.assertEqual(self.krel("run", "prog.krl", "-c", "exit 0"), (0, "", "noted\n"))

    def test_krelcc_that_a_signal_ends(self):
        for number in (signal.SIGABRT, signal.SIGSEGV, signal.SIGKILL, signal.SIGTERM):
            with self.subTest(signal=number.name):
                self.script(self.home / "krelcc", f"kill -{int(number)} $$")
                self.assertEqual(self.krel("run", "prog.krl"), (-number, "", ""))

    def test_internal_error_of_krelcc(self):
        self.write("prog.krl", "void main() {\n    break;\n}\n")
        status, stdout, stderr = self.krel("run", "prog.krl")
        self.assertEqual((status, stdout), (-signal.SIGABRT, ""))
        self.assertTrue(stderr.startswith("Internal error: "), stderr)


class Names(KrelTest):
    def test_odd_names(self):
        for name in ("a b.krl", "two\nlines.krl", "@x.krl", "..krl", "...krl", "a.krl.krl", "'.krl",
                     "\u00fc.krl", "\udcff.krl", "$HOME.krl", "*.krl", "sub/x.krl",
                     "./-x.krl", "n" * 251 + ".krl"):
            with self.subTest(name=name):
                path = self.directory / name
                path.parent.mkdir(exist_ok=True)
                path.write_text(PROGRAM)
                self.assertEqual(self.krel("run", name), (0, "hello", ""))
                self.assertEqual(self.krel("run", path), (0, "hello", ""))

    def test_name_like_an_option(self):
        self.write("-x.krl", PROGRAM)
        self.assertEqual(self.krel("run", "--", "-x.krl"), (0, "hello", ""))
        self.assert_complains(self.krel("run", "-x.krl"), 2, "'-x.krl'")

    def test_what_is_no_program_is_answered_by_krelcc(self):
        (self.directory / "folder.krl").mkdir()
        usage = f"Usage: {self.home}/krelcc <source.krl> [-o output] [dump-options]\n"
        for name, message in (("nosuch.krl", "nosuch.krl: No such file or directory\n"),
                              ("folder.krl", "folder.krl: Is a directory\n"),
                              ("prog", usage), ("prog.txt", usage), (".krl", usage), ("", usage)):
            with self.subTest(name=name):
                status, stdout, stderr = self.krel("run", name)
                self.assertEqual((status, stdout), (1, ""))
                self.assertTrue(stderr.startswith(message), stderr)


class Surroundings(KrelTest):
    """What the program finds is what it would find if it had been started instead of krel."""

    def setUp(self):
        super().setUp()
        self.native(SHELL)

    def shell(self, commands, *arguments, **options):
        return self.krel("run", "prog.krl", "-c", commands, *arguments, **options)

    def assert_same(self, commands, **options):
        process = self.start("-c", commands, program="/bin/sh", name="prog", **options)
        expected = process.communicate(timeout=60)
        self.assertEqual(self.shell(commands, **options), (process.returncode, *expected))
        return expected[0]

    def test_status(self):
        self.assertEqual(self.shell("exit 3"), (3, "", ""))

    def test_ending_by_a_signal(self):
        for number in (signal.SIGTERM, signal.SIGKILL, signal.SIGPIPE, signal.SIGUSR1):
            with self.subTest(signal=number.name):
                self.assertEqual(self.shell(f"kill -{int(number)} $$"), (-number, "", ""))

    def test_arguments(self):
        arguments = ["a b", "", "--help", "--native=other", "--", "-", "two\nlines", "\udcff"]
        status, stdout, _ = self.shell("/bin/cat /proc/$$/cmdline", *arguments)
        self.assertEqual(status, 0)
        self.assertEqual(stdout.split("\0")[:-1],
                         ["prog", "-c", "/bin/cat /proc/$$/cmdline", *arguments])

    def test_name_is_that_of_the_source(self):
        self.write("some folder/a b.krl", PROGRAM)
        self.assertEqual(self.krel("run", "some folder/a b.krl", "-c", "echo $0"),
                         (0, "a b\n", ""))

    def test_process_is_the_same(self):
        process = self.start_krel("run", "prog.krl", "-c", "echo $$")
        self.assertEqual(process.communicate(timeout=60), (f"{process.pid}\n", ""))

    def test_there_are_no_children(self):
        self.assert_same("/bin/cat /proc/$$/task/$$/children > children; read -r a b < children; "
                         "echo ${b-none}")

    def test_environment_and_directory(self):
        for path in ("/usr/bin:relative", "", None):
            self.assert_same("/bin/cat /proc/$$/environ", environment={"PATH": path})
        self.assert_same("pwd", cwd=self.bin.parent)

    def test_standard_input(self):
        (self.directory / "in").write_text("one\ntwo\n")
        with open(self.directory / "in", encoding="ascii") as stdin:
            self.assertEqual(self.shell("read -r a; read -r b; echo $b $a", stdin=stdin),
                             (0, "two one\n", ""))

    def test_descriptors(self):
        reading, writing = os.pipe()
        self.addCleanup(os.close, reading)
        self.addCleanup(os.close, writing)
        listing = self.assert_same("cd /proc/$$/fd; echo *", pass_fds=[writing])
        self.assertIn(str(writing), listing.split())

    def test_closed_streams(self):
        for closed in ((0,), (1,), (2,), (0, 1), (0, 1, 2)):
            with self.subTest(closed=closed):
                def close(numbers=closed):
                    for number in numbers:
                        os.close(number)
                found = self.directory / "found"
                open_ones = " ".join(str(n) for n in range(3) if n not in closed)
                status, _, _ = self.shell(
                    f"s=; for n in 0 1 2; do [ -e /proc/$$/fd/$n ] && s=\"$s $n\"; done; "
                    f"echo $s > '{found}'", preexec_fn=close)
                self.assertEqual((status, found.read_text().strip()), (0, open_ones))

    def test_closed_streams_and_a_faulty_program(self):
        self.write("prog.krl", SEMANTIC_ERROR)
        for number in range(3):
            with self.subTest(closed=number):
                status, stdout, _ = self.krel("run", "prog.krl",
                                              preexec_fn=lambda n=number: os.close(n))
                self.assertEqual((status, stdout), (1, ""))

    def test_signals(self):
        # A shell would change how it treats some of them.
        self.native('/bin/cp /bin/cat "$4"')

        def prepare():
            ignoring(signal.SIGHUP, signal.SIGCHLD)()
            signal.pthread_sigmask(signal.SIG_BLOCK, [signal.SIGUSR1, signal.SIGCHLD])

        def masks(program, *words):
            process = self.start(*words, "/proc/self/status", program=program, preexec_fn=prepare)
            status = process.communicate(timeout=60)[0]
            found = dict(re.findall(r"(?m)^Sig(Blk|Ign|Cgt):\s*(\w+)$", status))
            return {name: int(mask, 16) for name, mask in found.items()}
        found = masks(self.program, "run", "prog.krl")
        self.assertEqual(found, masks("/bin/cat"))
        self.assertEqual(found["Ign"] >> (signal.SIGCHLD - 1) & 1, 1)
        self.assertEqual(found["Blk"] >> (signal.SIGUSR1 - 1) & 1, 1)


class StandardInput(KrelTest):
    def test_program(self):
        self.assertEqual(self.krel("run", "-", text=PROGRAM), (0, "hello", ""))
        self.assertEqual(self.krel("run", "--", "-", text=PROGRAM), (0, "hello", ""))

    def test_through_a_pipe_in_parts(self):
        process = self.start_krel("run", "-", stdin=subprocess.PIPE)
        for line in PROGRAM.splitlines(keepends=True):
            process.stdin.write(line)
            process.stdin.flush()
        self.assertEqual(process.communicate(timeout=60), ("hello", ""))

    def test_arguments(self):
        self.native(SHELL)
        self.assertEqual(self.krel("run", "-", "-c", "echo $0 $1; pwd", "name", "one",
                                   text=PROGRAM),
                         (0, f"name one\n{self.directory}\n", ""))

    def test_messages_name_no_temporary_file(self):
        self.assertEqual(self.krel("run", "-", text=SEMANTIC_ERROR),
                         (1, "", "Semantic error in stdin.krl at line 2: Cannot assign value of "
                                 "type 'boolean' to type 'int'.\n"))
        status, stdout, stderr = self.krel("run", "-", text="void")
        self.assertEqual((status, stdout), (1, ""))
        self.assertRegex(stderr, r"\ASyntax error in stdin\.krl at line 1: .*\n\Z")

    def test_relative_search_path(self):
        self.stub("gcc", SHELL)
        for path in ("bin", "/nowhere:bin", "./bin"):
            with self.subTest(path=path):
                self.assertEqual(self.krel("run", "--native=system", "-", "-c", "exit 4",
                                           text=PROGRAM, environment={"PATH": path}), (4, "", ""))
        self.assertEqual(self.krel("run", "--native=system", "-", "-c", "exit 4", cwd=self.bin,
                                   text=PROGRAM, environment={"PATH": "/nowhere:"}), (4, "", ""))

    def test_input_that_cannot_be_read(self):
        self.assert_complains(self.krel("run", "-", preexec_fn=lambda: os.close(0)), 1,
                              "standard input", "Bad file descriptor")
        folder = os.open(self.directory, os.O_RDONLY)
        self.addCleanup(os.close, folder)
        self.assert_complains(self.krel("run", "-", stdin=folder), 1, "standard input",
                              "Is a directory")

    def test_input_without_end(self):
        with open(self.directory / "long", "wb") as file:
            file.truncate(TOO_LONG)
        with open(self.directory / "long", "rb") as stdin:
            self.assert_complains(self.krel("run", "-", stdin=stdin), 1, str(TOO_LONG - 1))

    def test_signal_while_reading(self):
        process = self.start_krel("run", "-", stdin=subprocess.PIPE)
        process.stdin.write("void")
        process.stdin.flush()
        process.send_signal(signal.SIGTERM)
        self.assertEqual(process.wait(timeout=60), -signal.SIGTERM)
        process.communicate()


if __name__ == "__main__":
    unittest.main()
