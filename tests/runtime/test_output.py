#!/usr/bin/env python3
"""What a program prints arrives: at once on a terminal, whole elsewhere, or it says why not."""

import os
import pathlib
import pty
import resource
import select
import signal
import subprocess
import time
import unittest

from harness import (DIVIDED_BY_ZERO, MEGABYTE, RuntimeTest, error_line, main_with,
                     native_build)

# Enough for a program to start; those on a terminal never end.
PROMPT_SECONDS = 20

LINES = 200000
COUNT = f"""\
    for (int line = 0; line < {LINES}; line++) {{
        print("line ", line, "\\n");
    }}
"""
COUNTED = b"".join(b"line %d\n" % line for line in range(LINES))

TRAP = "    int zero = 0; zero = 1 / zero;\n"


def cannot_write(why):
    return error_line("cannot write standard output: " + why)


class Terminal(RuntimeTest):
    def read(self, terminal):
        """What appears on a terminal next."""
        self.assertEqual(select.select([terminal], [], [], PROMPT_SECONDS)[0], [terminal])
        return os.read(terminal, 1000)

    def start_on_terminal(self, source):
        try:
            terminal, output = pty.openpty()
        except OSError:
            self.skipTest("the system has no pseudo-terminals")
        self.addCleanup(os.close, terminal)
        self.start(self.compile(source), stdout=output)
        os.close(output)
        return terminal

    def test_prompt_appears_at_once(self):
        terminal = self.start_on_terminal(main_with('    print("name? ");\n    for (;;) { }'))
        self.assertEqual(self.read(terminal), b"name? ")

    def test_text_made_at_run_time_appears_at_once(self):
        terminal = self.start_on_terminal(main_with('    print(12, 0.5);\n    for (;;) { }'))
        self.assertEqual(self.read(terminal), b"120.5")


class Pipe(RuntimeTest):
    def read_slowly(self, pipe):
        """Reads little pieces at first, so that the pipe is full most of the time."""
        pieces = []
        for _ in range(50):
            time.sleep(0.002)
            pieces.append(os.read(pipe, 3000))
        while piece := os.read(pipe, MEGABYTE):
            pieces.append(piece)
        return b"".join(pieces)

    def assert_arrives(self, blocking=True, while_writing=None, **options):
        pipe, output = os.pipe()
        self.addCleanup(os.close, pipe)
        os.set_blocking(output, blocking)
        process = self.start(self.compile(main_with(COUNT)), stdout=output, **options)
        os.close(output)
        if while_writing:
            while_writing(process)
        self.assertTrue(self.read_slowly(pipe) == COUNTED)
        self.assertEqual(self.finish(process), (0, None, b""))

    def test_slow_reader_gets_everything(self):
        self.assert_arrives()

    def test_slow_reader_of_a_pipe_that_does_not_block_gets_everything(self):
        self.assert_arrives(blocking=False)

    def test_writer_that_is_stopped_goes_on(self):
        def interrupt(process):
            for _ in range(10):
                process.send_signal(signal.SIGSTOP)
                time.sleep(0.002)
                process.send_signal(signal.SIGCONT)
        self.assert_arrives(while_writing=interrupt)

    @unittest.skipIf(native_build.FOLDER, "programs of our own native build load no libraries")
    def test_writer_that_is_interrupted_goes_on(self):
        library = self.directory / "interrupting.so"
        source = pathlib.Path(__file__).with_name("interrupting.c")
        subprocess.run(["gcc", "-shared", "-fPIC", "-o", library, source], check=True)
        for blocking in (True, False):
            self.assert_arrives(blocking, env={**os.environ, "LD_PRELOAD": str(library)})

    def test_closed_pipe_ends_the_program_as_usual(self):
        process = self.start(self.compile(main_with(COUNT)))
        process.stdout.close()
        process.stdout = None
        self.assertEqual(self.finish(process), (-signal.SIGPIPE, None, b""))

    def test_closed_pipe_is_reported_where_its_signal_is_ignored(self):
        process = self.start(self.compile(main_with(COUNT)), restore_signals=False)
        process.stdout.close()
        process.stdout = None
        self.assertEqual(self.finish(process), (1, None, cannot_write("broken pipe")))


class Unwritable(RuntimeTest):
    def run_on_full_disk(self, statements, **options):
        with open("/dev/full", "wb") as full:
            return self.run_source(main_with(statements), stdout=full, **options)

    def test_full_disk_at_the_end(self):
        self.assertEqual(self.run_on_full_disk('    print("text");'),
                         (1, None, cannot_write("no space left on device")))

    def test_full_disk_at_exit(self):
        self.assertEqual(self.run_on_full_disk('    print("text");\n    exit(0);'),
                         (1, None, cannot_write("no space left on device")))

    def test_full_disk_is_reported_once(self):
        self.assertEqual(self.run_on_full_disk(COUNT),
                         (1, None, cannot_write("no space left on device")))

    def test_full_disk_and_a_trap(self):
        self.assertEqual(
            self.run_on_full_disk('    print("text");\n' + TRAP),
            (DIVIDED_BY_ZERO, None,
             cannot_write("no space left on device") + error_line("integer division by zero")))

    def test_full_disk_and_nothing_to_print(self):
        self.assertEqual(self.run_on_full_disk(""), (0, None, b""))

    def test_full_disk_and_nobody_to_tell(self):
        outcome = self.run_on_full_disk('    print("text");', prepare=lambda: os.close(2))
        self.assertEqual((outcome.status, outcome.stderr), (1, b""))

    def test_closed_standard_output(self):
        self.assertEqual(
            self.run_source(main_with('    print("text");'), prepare=lambda: os.close(1)),
            (1, b"", cannot_write("bad file descriptor")))

    def test_closed_standard_output_and_nothing_to_print(self):
        self.assertEqual(self.run_source(main_with(""), prepare=lambda: os.close(1)), (0, b"", b""))

    def test_limited_file_keeps_the_beginning(self):
        path = self.directory / "limited"
        with path.open("wb") as output:
            outcome = self.run_source(main_with(COUNT), stdout=output, restore_signals=False,
                                      limits={resource.RLIMIT_FSIZE: 100000})
        self.assertEqual(outcome, (1, None, cannot_write("file too large")))
        self.assertTrue(path.read_bytes() == COUNTED[:100000])


class Complete(RuntimeTest):
    """More than any buffer holds, and a rest, is all there however the program ends."""

    def assert_complete(self, ending, status=0, stderr=b"", functions=""):
        program = self.compile(functions + main_with(COUNT + '    print("rest");\n' + ending))
        outcome = self.run_program(program)
        self.assertEqual((outcome.status, outcome.stderr), (status, stderr))
        self.assertTrue(outcome.stdout == COUNTED + b"rest")
        path = self.directory / "file"
        with path.open("wb") as output:
            self.assertEqual(self.run_program(program, stdout=output), (status, None, stderr))
        self.assertTrue(path.read_bytes() == COUNTED + b"rest")

    def test_end_of_main(self):
        self.assert_complete("")

    def test_exit(self):
        self.assert_complete("    exit(0);")

    def test_exit_from_a_function(self):
        self.assert_complete("    leave();", functions="void leave() { exit(3); }\n")

    def test_trap(self):
        self.assert_complete(TRAP, DIVIDED_BY_ZERO, error_line("integer division by zero"))

    def test_appends_to_a_file(self):
        path = self.directory / "log"
        program = self.compile(main_with('    print("once\\n");'))
        for _ in range(2):
            with path.open("ab") as output:
                self.run_program(program, stdout=output)
        self.assertEqual(path.read_bytes(), b"once\nonce\n")


class Environment(RuntimeTest):
    # The numbers would look different in some languages, and half a million strings are made under
    # whatever lies at the end of the stack.
    PROGRAM = main_with("""\
    double number = 1234567.25;
    string text = "";
    for (int i = 0; i < 500000; i++) {
        string count = (string) i;
        text = "count " + count;
    }
    print(number, " ", 1234567, " ", true, " ", text, "\\n");
""")
    PRINTED = b"1234567.25 1234567 true count 499999\n"

    def test_changes_nothing(self):
        program = self.compile(self.PROGRAM)
        for environment in (
                {},
                {"LANG": "de_DE.UTF-8", "LC_NUMERIC": "de_DE.UTF-8"},
                {"LC_ALL": "fr_FR.ISO-8859-1"},
                {"LC_ALL": "no such language", "LANGUAGE": "tr"},
                {"MALLOC_PERTURB_": "85", "MALLOC_ARENA_MAX": "1"},
                {f"VARIABLE_{number}": "value" * 1000 for number in range(200)}):
            with self.subTest(list(environment)[:2]):
                self.assertEqual(self.run_program(program, env=environment),
                                 (0, self.PRINTED, b""))

    def test_arguments_change_nothing(self):
        program = self.compile(self.PROGRAM)
        for arguments in ([], ["--help"], ["x" * 100000] * 10, [""] * 1001):
            self.assertEqual(self.run_program(program, *arguments), (0, self.PRINTED, b""))


if __name__ == "__main__":
    unittest.main()
