#!/usr/bin/env python3
"""`krel debug --tty`: commands, and what is odd about them. docs/debugging.md has more sessions."""

import pathlib
import signal
import subprocess
import tempfile
import threading
import unittest

from client import KREL, TIMEOUT_SECONDS

PROGRAM = """int twice(int n) {
    return n + n;
}

void main() {
    int a = twice(3);
    print("a is ", a);
    a++;
    exit();
}
"""


class TerminalTest(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.directory = pathlib.Path(directory.name)

    def start(self, text, *words, commands=None):
        (self.directory / "p.krl").write_text(text, encoding="utf-8")
        process = subprocess.Popen([KREL, "debug", *words], cwd=self.directory,
                                   stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                   stderr=subprocess.PIPE)
        if commands is None:
            self.addCleanup(self.end, process)
            return process
        out, err = process.communicate("\n".join(commands).encode(), timeout=TIMEOUT_SECONDS)
        return process.returncode, out.decode(), err.decode()

    @staticmethod
    def end(process):
        process.kill()
        process.wait()
        for stream in (process.stdin, process.stdout, process.stderr):
            stream.close()

    def answers(self, *commands, text=PROGRAM, words=()):
        """What is said behind each command, without its own line; the last may be cut short."""
        status, out, err = self.start(text, "--tty", *words, "p.krl",
                                      commands=[*commands, "quit"])
        self.assertEqual((status, err), (0, ""))
        parts = out.split("(krel) ")
        self.assertEqual([part.split("\n")[0] for part in parts[1:]], [*commands, "quit"])
        return [part.split("\n", 1)[1] for part in parts[1:-1]]

    def test_end_of_input_ends(self):
        self.assertEqual(self.start(PROGRAM, "--tty", "p.krl", commands=[]),
                         (0, "(krel) \n", ""))
        status, out, _ = self.start(PROGRAM, "--tty", "p.krl", commands=["start"])
        self.assertEqual(status, 0)
        self.assertTrue(out.endswith("     6 |     int a = twice(3);\n(krel) \n"), out)

    def test_going_on_starts(self):
        self.assertEqual(self.answers("continue"),
                         ["a is 6\nthe program has ended with status 0\n"])
        for command in ("next", "step", "stepi"):
            self.assertIn("main at p.krl:6", self.answers(command)[0])

    def test_what_needs_a_program(self):
        for command in ("back", "vars", "print 1", "stack", "ir", "out", "set a = 1", "frame 0"):
            self.assertEqual(self.answers(command),
                             ["the program has not started: run it first\n"], command)

    def test_after_the_end(self):
        found = self.answers("run", "next", "stack", "list", "back", "print a", "run")
        self.assertEqual(found[1], "the program cannot go on: go back, or run it again\n")
        self.assertEqual(found[2], "> 0 main at p.krl:9\n")
        self.assertEqual(found[4], "main at p.krl:9\n     9 |     exit();\n")
        self.assertEqual(found[5], "int a = 7\n")
        self.assertEqual(found[6], "a is 6\nthe program has ended with status 0\n")

    def test_after_the_end_of_main(self):
        found = self.answers("run", "vars", "print 1", "stack", "rstep", "stack",
                             text="void main() {\n    print(1);\n}\n")
        self.assertEqual(found[1:4], ["the program has ended: go back, or run it again\n",
                                      "the program has ended: go back, or run it again\n", ""])
        self.assertEqual(found[5], "> 0 main at p.krl:3\n")

    def test_wrong_commands(self):
        for command, answer in (
                ("dance", "there is no command 'dance'; try help"),
                ("break", "say where: a line or a function"),
                ("break nowhere", "there is no function `nowhere`"),
                ("break 11", "there is no code in line 11 or behind it"),
                ("break 99999999999999999999", "there is no function `99999999999999999999`"),
                ("break 7 if b == 1", "there is no variable `b` in main"),
                ("log 7", "say what to log: log LINE MESSAGE"),
                ("delete 1", "there is no breakpoint '1'"),
                ("delete", "there is no breakpoint ''"),
                ("condition x a", "there is no breakpoint 'x'")):
            self.assertEqual(self.answers(command), [answer + "\n"])
        found = self.answers("start", "frame 1", "frame", "set a", "print", "print a a")
        self.assertEqual(found[1:], ["there is no call '1' on the stack\n",
                                     "there is no call '' on the stack\n",
                                     "say what to set to what: set x = 5\n",
                                     "`` is no expression\n", "this is no expression\n"])

    def test_empty_line_repeats(self):
        found = self.answers("start", "step", "", "  ")
        self.assertEqual([each.split("\n")[0] for each in found[1:]],
                         ["twice at p.krl:2", "main at p.krl:7", "a is 6"])
        self.assertEqual(found[3].split("\n")[1], "main at p.krl:8")
        self.assertEqual(self.answers(""), [""])

    def test_short_names_and_blanks(self):
        found = self.answers("  b   7  ", "r", "p a", "\tbt\r")
        self.assertEqual(found[0], "breakpoint 1 at p.krl:7\n")
        self.assertEqual(found[2:], ["int a = 6\n", "> 0 main at p.krl:7\n"])

    def test_breakpoints_stay_when_it_runs_again(self):
        found = self.answers("break 7", "run", "run", "condition 1 a == 7", "run")
        self.assertEqual(found[1], found[2])
        self.assertIn("the program has ended", found[4])

    def test_list(self):
        self.assertEqual(self.answers("break 2", "start", "list 1"), [
            "breakpoint 1 at p.krl:2\n",
            "the beginning of the program\nmain at p.krl:6\n     6 |     int a = twice(3);\n",
            "     1 | int twice(int n) {\n*    2 |     return n + n;\n     3 | }\n     4 | \n"
            "     5 | void main() {\n>    6 |     int a = twice(3);\n"])
        self.assertEqual(self.answers("list 4000000000"), [""])

    def test_help_lists_every_command(self):
        names = [line.split()[0] for line in self.answers("help")[0].splitlines()]
        self.assertEqual(len(set(names)), 28)
        for name in names:
            if name != "quit":
                self.assertNotIn("there is no command", self.answers(name)[0])

    def test_back_into_functions(self):
        found = self.answers("break 7", "run", "rstep", "rstep", "break twice", "continue",
                             "rout")
        self.assertEqual([each.split("\n")[0] for each in (found[2], found[3], found[6])],
                         ["twice at p.krl:2", "the beginning of the program",
                          "the beginning of the program"])
        self.assertEqual(found[3].split("\n")[1], "main at p.krl:6")

    def test_traps_and_faults_before_main_begins(self):
        found = self.answers("run", "back", "vars",
                             text="void main() {\n    int a[9000000];\n    a[0] = 1;\n}\n")
        self.assertIn("the stack is full", found[0])
        self.assertEqual(found[1:], ["the beginning of the program\n",
                                     "the program has ended: go back, or run it again\n"])

    def test_allowed_rules(self):
        text = "void main() {\n    int n = 4000000000;\n    print(n);\n}\n"
        self.assertIn("[overflow]", self.answers("run", text=text)[0])
        self.assertEqual(self.answers("run", text=text, words=["--allow=overflow"]),
                         ["-294967296\nthe program has ended with status 0\n"])
        status, _, err = self.start(text, "--tty", "--allow=nothing", "p.krl", commands=[])
        self.assertEqual(status, 2)
        self.assertIn("there is no rule 'nothing'", err)

    def test_programs_that_are_none(self):
        status, out, err = self.start("void main() {\n    int a = b;\n}\n", "--tty", "p.krl",
                                      commands=["run"])
        self.assertEqual((status, out), (1, ""))
        self.assertIn("p.krl cannot be run:\n", err)
        self.assertIn("b", err)
        self.assertEqual(self.start(PROGRAM, "--tty", "other.krl", commands=[])[0], 1)
        self.assertEqual(self.start(PROGRAM, "--tty", commands=[])[0], 2)
        self.assertEqual(self.start(PROGRAM, "--tty", "p.krl", "p.krl", commands=[])[0], 2)

    def test_interrupt_stops_an_endless_program(self):
        process = self.start("void main() {\n    int n = 0;\n    while (true) {\n        n++;\n"
                             "        if (n > 99) {\n            n = 0;\n        }\n    }\n}\n",
                             "--tty", "p.krl")
        process.stdin.write(b"break 2\nrun\ncontinue\n")
        process.stdin.flush()
        while b"continue" not in process.stdout.readline():
            pass
        # A signal that comes before the program runs says nothing, hence more than one.
        is_interrupted = threading.Event()

        def interrupt():
            while not is_interrupted.wait(0.05):
                process.send_signal(signal.SIGINT)

        sender = threading.Thread(target=interrupt)
        sender.start()
        try:
            while b"interrupted" not in process.stdout.readline():
                pass
        finally:
            is_interrupted.set()
            sender.join()
        process.stdin.write(b"vars\n")
        process.stdin.close()
        rest = process.stdout.read().decode()
        self.assertRegex(rest, r"int n = \d+\n")
        self.assertEqual(process.wait(TIMEOUT_SECONDS), 0)

    def test_output_that_cannot_be_written(self):
        (self.directory / "p.krl").write_text(PROGRAM, encoding="utf-8")
        with open("/dev/full", "wb") as full:
            ran = subprocess.run([KREL, "debug", "--tty", "p.krl"], cwd=self.directory,
                                 input=b"run\n", stdout=full, stderr=subprocess.PIPE, check=False,
                                 timeout=TIMEOUT_SECONDS)
        self.assertEqual(ran.returncode, 1)
        self.assertIn(b"krel: cannot write", ran.stderr)

    def test_many_calls(self):
        found = self.answers("break 3 if n == 1", "run", "stack", "rcontinue",
                             text="int down(int n) {\n    if (n == 0) {\n        return 0;\n    }\n"
                                  "    int less = down(n - 1);\n    return less;\n}\n"
                                  "void main() {\n    int x = down(500);\n    print(x);\n}\n")
        self.assertIn("the program has ended", found[1])
        found = self.answers("break down if n == 1", "run", "stack",
                             text="int down(int n) {\n    if (n == 0) {\n        return 0;\n    }\n"
                                  "    int less = down(n - 1);\n    return less;\n}\n"
                                  "void main() {\n    int x = down(500);\n    print(x);\n}\n")
        self.assertTrue(found[2].endswith("  ... and 401 more\n"))


if __name__ == "__main__":
    unittest.main()
