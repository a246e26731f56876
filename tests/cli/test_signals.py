#!/usr/bin/env python3
"""Signals that end krelcc: what it leaves behind, and how it ends."""

import contextlib
import os
import resource
import signal
import time
import unittest

from harness import CommandLineTest, TIMEOUT_SECONDS

ENDING = (signal.SIGHUP, signal.SIGINT, signal.SIGQUIT, signal.SIGALRM, signal.SIGTERM,
          signal.SIGXCPU, signal.SIGXFSZ, signal.SIGVTALRM, signal.SIGPROF, signal.SIGUSR1,
          signal.SIGUSR2)


def is_running(pid):
    try:
        with open(f"/proc/{pid}/stat", encoding="ascii") as file:
            return file.read().rsplit(")", 1)[1].split()[0] != "Z"
    except FileNotFoundError:
        return False


class Signals(CommandLineTest):
    def setUp(self):
        super().setUp()
        self.temporary = self.directory / "tmp"
        self.temporary.mkdir()
        self.ready = self.directory / "ready"

    def environment(self, changes):
        return super().environment({"TMPDIR": str(self.temporary), **changes})

    def wait_for(self, condition, what):
        for _ in range(TIMEOUT_SECONDS * 100):
            if condition():
                return
            time.sleep(0.01)
        self.fail(f"waited in vain for {what}")

    def start_and_wait(self, *arguments, before="", **options):
        """Starts krelcc with a native compiler that never ends; gives both, once it runs."""
        self.ready.unlink(missing_ok=True)
        self.stub("gcc", f'{before}\n'
                         f'echo $$ > "{self.ready}.new"\n'
                         f'/bin/mv "{self.ready}.new" "{self.ready}"\n'
                         "while :; do /bin/sleep 0.05; done")
        process = self.start("prog.krl", *arguments, **options)
        self.addCleanup(process.kill)
        self.wait_for(self.ready.exists, "the native compiler")
        child = int(self.ready.read_text())
        self.addCleanup(self.end, child)
        return process, child

    @staticmethod
    def end(child):
        """Leaves no stand-in behind when a test fails."""
        with contextlib.suppress(ProcessLookupError):
            os.kill(child, signal.SIGKILL)

    def assert_ended(self, process, child, number):
        process.communicate(timeout=TIMEOUT_SECONDS)
        self.assertEqual(process.returncode, -number)
        self.assertFalse(is_running(child))
        self.assertEqual(list(self.temporary.iterdir()), [])

    def test_nothing_is_left_while_the_native_compiler_runs(self):
        for number in ENDING:
            with self.subTest(signal=number.name):
                process, child = self.start_and_wait()
                self.assertEqual(len(list(self.temporary.iterdir())), 1)
                process.send_signal(number)
                self.assert_ended(process, child, number)

    def test_child_is_ended_without_a_temporary_file_too(self):
        process, child = self.start_and_wait("--asm-dump")
        process.send_signal(signal.SIGTERM)
        self.assert_ended(process, child, signal.SIGTERM)
        self.assertTrue((self.directory / "prog.s").exists())

    def test_child_that_does_not_listen_is_killed(self):
        process, child = self.start_and_wait(before="trap '' TERM")
        process.send_signal(signal.SIGTERM)
        self.assert_ended(process, child, signal.SIGTERM)

    def test_child_gets_the_same_signal(self):
        process, child = self.start_and_wait(
            before=f"trap 'echo told > \"{self.directory}/told\"; exit 1' INT")
        process.send_signal(signal.SIGINT)
        self.assert_ended(process, child, signal.SIGINT)
        self.assertEqual(self.read("told"), "told\n")

    def test_child_that_would_not_clean_up_gets_another_signal(self):
        process, child = self.start_and_wait(
            before=f"trap 'echo told > \"{self.directory}/told\"; exit 1' TERM")
        process.send_signal(signal.SIGUSR1)
        self.assert_ended(process, child, signal.SIGUSR1)
        self.assertEqual(self.read("told"), "told\n")

    def test_signal_to_the_whole_group_as_from_a_terminal(self):
        process, child = self.start_and_wait(start_new_session=True)
        os.killpg(process.pid, signal.SIGINT)
        self.assert_ended(process, child, signal.SIGINT)

    def test_ignored_signals_stay_ignored(self):
        process, child = self.start_and_wait(
            preexec_fn=lambda: signal.signal(signal.SIGHUP, signal.SIG_IGN))
        process.send_signal(signal.SIGHUP)
        os.kill(child, signal.SIGHUP)  # ignored by the native compiler as well: it inherits that
        time.sleep(0.2)
        self.assertIsNone(process.poll())
        self.assertTrue(is_running(child))
        process.send_signal(signal.SIGTERM)
        self.assert_ended(process, child, signal.SIGTERM)

    def test_native_compiler_has_the_usual_signals(self):
        # It holds none back, and handles none of them as krelcc does.
        self.stub("gcc", f'while read -r line; do case $line in Sig*) echo "$line";; esac; '
                         f'done < /proc/self/status > "{self.directory}/seen"')
        self.assertEqual(self.krelcc("prog.krl")[0], 0)
        masks = dict(line.split() for line in self.read("seen").splitlines())
        ending = sum(1 << (number - 1) for number in (*ENDING, signal.SIGPIPE))
        self.assertEqual(int(masks["SigBlk:"], 16) & ending, 0)
        self.assertEqual(int(masks["SigCgt:"], 16) & ending & ~(1 << (signal.SIGINT - 1)), 0)

    def test_closed_pipe_for_its_own_messages(self):
        self.stub("gcc", "exit 2")
        reading, writing = os.pipe()
        os.close(reading)
        # Python ignores the signal, and would have krelcc ignore it, too.
        process = self.start("prog.krl", stderr=writing, restore_signals=True)
        os.close(writing)
        process.communicate(timeout=TIMEOUT_SECONDS)
        self.assertEqual(process.returncode, -signal.SIGPIPE)
        self.assertEqual(list(self.temporary.iterdir()), [])

    def test_assembly_larger_than_files_may_be(self):
        self.stub("gcc")
        self.write("prog.krl", "void main() {\n" + "    print(1);\n" * 10000 + "}\n")
        process = self.start("prog.krl", preexec_fn=lambda: resource.setrlimit(
            resource.RLIMIT_FSIZE, (100_000, 100_000)))
        process.communicate(timeout=TIMEOUT_SECONDS)
        self.assertEqual(process.returncode, -signal.SIGXFSZ)
        self.assertEqual(list(self.temporary.iterdir()), [])


if __name__ == "__main__":
    unittest.main()
