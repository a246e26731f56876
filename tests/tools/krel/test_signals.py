#!/usr/bin/env python3
"""Signals while `krel run` compiles: nothing is left of it, and krel ends by them."""

import contextlib
import os
import signal
import time
import unittest

from sandbox import KrelTest, SHELL, TIMEOUT_SECONDS, ignoring, is_running

ENDING = (signal.SIGHUP, signal.SIGINT, signal.SIGQUIT, signal.SIGPIPE, signal.SIGALRM,
          signal.SIGTERM, signal.SIGXCPU, signal.SIGXFSZ, signal.SIGVTALRM, signal.SIGPROF,
          signal.SIGUSR1, signal.SIGUSR2)


class Signals(KrelTest):
    def setUp(self):
        super().setUp()
        self.ready = self.directory / "ready"

    def waiting(self, before=""):
        """Commands of a stand-in that never ends, and that says when it has begun."""
        return (f'{before}\necho $PPID $$ > "{self.ready}.new"\n'
                f'/bin/mv "{self.ready}.new" "{self.ready}"\n'
                "while :; do /bin/sleep 0.05; done")

    def start_and_wait(self, before="", **options):
        """Starts krel with a native compiler that never ends; gives both, and krelcc."""
        self.ready.unlink(missing_ok=True)
        self.native(self.waiting(before))
        return self.start_until_ready(**options)

    def start_until_ready(self, **options):
        # Into a file: processes that are left would keep a pipe open, and a failing test waiting.
        with open(self.directory / "said", "w", encoding="ascii") as said:
            process = self.start_krel("run", "prog.krl", stdout=said, stderr=said, **options)
        self.addCleanup(process.kill)
        self.wait_for(self.ready.exists, "the stand-in")
        children = [int(word) for word in self.ready.read_text().split()]
        for child in children:
            if child != process.pid:
                self.addCleanup(self.end, child)
        return process, children

    @staticmethod
    def end(child):
        with contextlib.suppress(ProcessLookupError):
            os.kill(child, signal.SIGKILL)

    def assert_ended(self, process, children, number):
        self.assertEqual(process.wait(timeout=TIMEOUT_SECONDS), -number)
        self.assertEqual(self.read("said"), "")
        for child in children:
            self.assertFalse(is_running(child))
        self.assertEqual(list(self.temporary.iterdir()), [])

    def test_each_signal_ends_all(self):
        for number in ENDING:
            with self.subTest(signal=number.name):
                # Python ignores some of them, and would have krel ignore them, too.
                process, children = self.start_and_wait(restore_signals=True)
                self.assertEqual(len(list(self.temporary.iterdir())), 1)
                process.send_signal(number)
                self.assert_ended(process, children, number)

    def test_signal_to_all_as_from_a_terminal(self):
        process, children = self.start_and_wait(start_new_session=True)
        os.killpg(process.pid, signal.SIGINT)
        self.assert_ended(process, children, signal.SIGINT)

    def test_native_compiler_that_does_not_listen_is_killed(self):
        process, children = self.start_and_wait(before="trap '' TERM")
        process.send_signal(signal.SIGTERM)
        self.assert_ended(process, children, signal.SIGTERM)

    def test_krelcc_that_does_not_listen_is_killed(self):
        self.script(self.home / "krelcc", self.waiting(before="trap '' TERM"))
        process, children = self.start_until_ready()
        self.assertEqual(children[0], process.pid)
        process.send_signal(signal.SIGTERM)
        self.assert_ended(process, children[1:], signal.SIGTERM)

    def test_the_first_of_several_signals_ends_krel(self):
        process, children = self.start_and_wait()
        process.send_signal(signal.SIGTERM)
        self.assert_ended(process, children, signal.SIGTERM)
        process, children = self.start_and_wait(before="trap '' TERM")
        process.send_signal(signal.SIGTERM)
        process.send_signal(signal.SIGTERM)
        self.assert_ended(process, children, signal.SIGTERM)

    def test_ignored_signals_stay_ignored(self):
        process, children = self.start_and_wait(preexec_fn=ignoring(signal.SIGHUP))
        process.send_signal(signal.SIGHUP)
        time.sleep(0.2)
        self.assertIsNone(process.poll())
        self.assertTrue(all(map(is_running, children)))
        process.send_signal(signal.SIGTERM)
        self.assert_ended(process, children, signal.SIGTERM)

    def test_blocked_signals_stay_blocked(self):
        process, children = self.start_and_wait(
            preexec_fn=lambda: signal.pthread_sigmask(signal.SIG_BLOCK, [signal.SIGUSR1]))
        process.send_signal(signal.SIGUSR1)
        time.sleep(0.2)
        self.assertIsNone(process.poll())
        process.send_signal(signal.SIGTERM)
        self.assert_ended(process, children, signal.SIGTERM)

    def test_signal_that_comes_when_the_compilation_is_over(self):
        # krelcc tells krel nothing of it: that has only its own signal left to end by.
        self.script(self.home / "krelcc", 'trap "" TERM\nkill -TERM "$PPID"\nexit 0')
        for _ in range(5):
            self.assertEqual(self.krel("run", "prog.krl"), (-signal.SIGTERM, "", ""))

    def test_children_that_are_not_reported(self):
        self.native(SHELL)
        self.assertEqual(self.krel("run", "prog.krl", "-c", "exit 3",
                                   preexec_fn=ignoring(signal.SIGCHLD)), (3, "", ""))

    def test_stopping_and_going_on(self):
        process, children = self.start_and_wait()
        process.send_signal(signal.SIGSTOP)
        process.send_signal(signal.SIGCONT)
        os.kill(children[0], signal.SIGSTOP)
        os.kill(children[0], signal.SIGCONT)
        time.sleep(0.1)
        self.assertIsNone(process.poll())
        process.send_signal(signal.SIGTERM)
        self.assert_ended(process, children, signal.SIGTERM)

    def test_signals_reach_the_program(self):
        self.native(SHELL)
        process = self.start_krel(
            "run", "prog.krl", "-c", f"trap 'echo caught; exit 5' TERM\n{self.waiting()}")
        self.addCleanup(process.kill)
        self.wait_for(self.ready.exists, "the program")
        process.send_signal(signal.SIGTERM)
        self.assertEqual(process.communicate(timeout=60), ("caught\n", ""))
        self.assertEqual(process.returncode, 5)


if __name__ == "__main__":
    unittest.main()
