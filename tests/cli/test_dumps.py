#!/usr/bin/env python3
"""Dump files and the temporary assembly file: where they are, how long, and how writing fails."""

import os
import pathlib
import select
import subprocess
import unittest

from harness import (ABORTED, CommandLineTest, FLAGS, GENERATOR_ERROR, GENERATOR_MESSAGE, PROGRAM,
                     SEMANTIC_ERROR, SYNTAX_ERROR, TIMEOUT_SECONDS, WRITTEN)

FAILED = "Native compilation failed.\n"


class Dumps(CommandLineTest):
    def setUp(self):
        super().setUp()
        self.stub("gcc")

    def test_dumps_go_to_the_working_directory(self):
        self.write("src/prog.krl", PROGRAM)
        (self.directory / "prog.krl").unlink()
        self.assertEqual(self.krelcc("src/prog.krl", *FLAGS.values()),
                         (0, "".join(WRITTEN.values()) + self.compiled("src/prog.krl", "src/prog"),
                          ""))
        self.assertEqual(self.files(), sorted([*FLAGS, "called"]))
        self.assertEqual([path.name for path in (self.directory / "src").iterdir()], ["prog.krl"])
        self.assertEqual(self.called()[-1], "src/prog")

    def test_each_dump_comes_alone_when_asked_for(self):
        for name, flag in FLAGS.items():
            self.assertEqual(self.krelcc("prog.krl", flag),
                             (0, WRITTEN[name] + self.compiled(), ""))
            self.assertEqual(self.files(), sorted([name, "called", "prog.krl"]))
            (self.directory / name).unlink()

    def test_order_of_messages_does_not_follow_the_options(self):
        self.assertEqual(self.krelcc(*reversed(FLAGS.values()), "prog.krl")[1],
                         "".join(WRITTEN.values()) + self.compiled())

    def test_dumps_are_the_same_from_any_directory(self):
        self.krelcc("prog.krl", *FLAGS.values())
        other = self.directory / "other"
        other.mkdir()
        self.krelcc(self.directory / "prog.krl", *FLAGS.values(), cwd=other)
        for name in FLAGS:
            self.assertEqual(self.read(name), (other / name).read_text())

    def test_last_extension_is_replaced(self):
        self.write("a.b.krl", PROGRAM)
        self.krelcc("a.b.krl", *FLAGS.values())
        self.assertEqual([name for name in self.files() if name.startswith("a.b.")],
                         ["a.b.ast.json", "a.b.ir", "a.b.krl", "a.b.s", "a.b.semantic.json"])

    def test_older_dump_is_replaced(self):
        self.krelcc("prog.krl", *FLAGS.values())
        for name in FLAGS:
            expected = self.read(name)
            self.write(name, "old " * 10000)
            self.krelcc("prog.krl", FLAGS[name])
            self.assertEqual(self.read(name), expected)

    def test_each_dump_is_announced_before_the_native_compiler_runs(self):
        self.stub("gcc", "echo compiling")
        for names in ([], *([name] for name in FLAGS), list(FLAGS)):
            flags = [FLAGS[name] for name in names]
            expected = "".join(WRITTEN[name] for name in names) + "compiling\n" + self.compiled()
            with self.subTest(dumps=names):
                self.assertEqual(self.krelcc("prog.krl", *flags), (0, expected, ""))
                with open(self.directory / "out", "wb") as out:
                    self.assertEqual(self.krelcc("prog.krl", *flags, stdout=out), (0, None, ""))
                self.assertEqual(self.read("out"), expected)

    def test_dumps_stay_when_the_native_compiler_fails(self):
        self.stub("gcc", "exit 2")
        self.assertEqual(self.krelcc("prog.krl", *FLAGS.values()),
                         (2, "".join(WRITTEN.values()), FAILED))
        self.assertEqual(self.files(), sorted([*FLAGS, "called", "prog.krl"]))


class Checkpoints(CommandLineTest):
    """After which faults which dumps are left."""

    def setUp(self):
        super().setUp()
        self.stub("gcc")

    def assert_stops(self, text, status, message, dumps):
        self.write("prog.krl", text)
        result = self.krelcc("prog.krl", *FLAGS.values())
        self.assertEqual(result, (status, "".join(WRITTEN[name] for name in dumps), message))
        self.assertEqual(self.called(), [])

    def test_syntax_error(self):
        self.assert_stops(SYNTAX_ERROR, 1, "Syntax error in prog.krl at line 2: "
                                           "syntax error, unexpected end of file\n", [])
        self.assertEqual(self.files(), ["prog.krl"])

    def test_lexer_error(self):
        self.assert_stops(PROGRAM + "@", 1,
                          "Lexer error in prog.krl at line 4: illegal character '@'\n", [])
        self.assertEqual(self.files(), ["prog.krl"])

    def test_semantic_error(self):
        self.assert_stops(SEMANTIC_ERROR, 1,
                          "Semantic error in prog.krl at line 2: "
                          "Cannot assign value of type 'boolean' to type 'int'.\n",
                          ["prog.ast.json"])
        self.assertEqual(self.files(), ["prog.ast.json", "prog.krl"])

    def test_internal_error(self):
        # Each dump is announced at once, so an abort loses no announcement.
        for text, message, dumps in (
                ("void main() {\n    double x = (double) y;\n}\n",
                 "Semantic error in prog.krl at line 2: Undeclared identifier: 'y'.\n"
                 "Internal error: Cast expression has invalid target or source type.\n",
                 ["prog.ast.json"]),
                ("void main() {\n    break;\n}\n", "Internal error: break outside loop\n",
                 ["prog.ast.json", "prog.semantic.json"])):
            self.write("prog.krl", text)
            self.assertEqual(self.krelcc("prog.krl", *FLAGS.values()),
                             (ABORTED, "".join(WRITTEN[name] for name in dumps), message))
            self.assertEqual(self.files(), [*dumps[:1], "prog.krl", *dumps[1:]])
            self.assertEqual(self.called(), [])

    def test_error_of_the_code_generator(self):
        # The assembly written so far stays, but it is not announced.
        self.assert_stops(GENERATOR_ERROR, 1, GENERATOR_MESSAGE,
                          ["prog.ast.json", "prog.semantic.json", "prog.ir"])
        self.assertEqual(self.files(), sorted([*FLAGS, "prog.krl"]))


class ClosedStreams(CommandLineTest):
    """Standard streams that are closed when krelcc begins: no file gets their number."""

    def setUp(self):
        super().setUp()
        self.stub("gcc")

    def test_dumps_are_the_same(self):
        self.krelcc("prog.krl", *FLAGS.values())
        expected = {name: self.read(name) for name in FLAGS}
        for closed in ((0,), (1,), (2,), (0, 1), (0, 1, 2)):
            with self.subTest(closed=closed):
                for name in FLAGS:
                    (self.directory / name).unlink()
                process = self.start("prog.krl", *FLAGS.values(),
                                     preexec_fn=lambda: [os.close(number) for number in closed])
                stdout, stderr = process.communicate(timeout=TIMEOUT_SECONDS)
                self.assertEqual(process.returncode, 0)
                self.assertEqual(stdout, "" if 1 in closed else
                                 "".join(WRITTEN.values()) + self.compiled())
                self.assertEqual(stderr, "")
                self.assertEqual({name: self.read(name) for name in FLAGS}, expected)

    def test_no_file_that_is_written_gets_their_number(self):
        # A pipe that nobody empties holds krelcc up while it writes the dump.
        self.write("prog.krl", "void main() {\n" + "    print(1);\n" * 10000 + "}\n")
        for name, flag in FLAGS.items():
            pipe = self.directory / name
            os.mkfifo(pipe)
            reading = os.open(pipe, os.O_RDONLY | os.O_NONBLOCK)
            process = self.start("prog.krl", flag,
                                 preexec_fn=lambda: [os.close(number) for number in range(3)])
            select.select([reading], [], [], TIMEOUT_SECONDS)
            numbers = [int(entry.name) for entry in
                       pathlib.Path(f"/proc/{process.pid}/fd").iterdir()
                       if os.readlink(entry) == str(pipe)]
            process.kill()
            process.communicate()
            os.close(reading)
            self.assertEqual(len(numbers), 1, name)
            self.assertGreater(numbers[0], 2, name)

    def test_native_compiler_finds_them_closed(self):
        for number in range(3):
            self.stub("gcc", f"if [ -e /proc/$$/fd/{number} ]; then exit 7; fi")
            process = self.start("prog.krl", preexec_fn=lambda: os.close(number))
            process.communicate(timeout=TIMEOUT_SECONDS)
            self.assertEqual(process.returncode, 0, number)


class Unwritable(CommandLineTest):
    def setUp(self):
        super().setUp()
        self.stub("gcc")

    def test_directory_in_the_way(self):
        before = ""
        for name in FLAGS:
            with self.subTest(dump=name):
                (self.directory / name).mkdir()
                self.assertEqual(self.krelcc("prog.krl", *FLAGS.values()),
                                 (1, before, f'Could not open "{name}" for writing.\n'))
                self.assertEqual(self.called(), [])
                (self.directory / name).rmdir()
            before += WRITTEN[name]

    def test_working_directory_without_room_for_files(self):
        for name, flag in FLAGS.items():
            self.assertEqual(self.krelcc(self.directory / "prog.krl", flag, cwd="/proc"),
                             (1, "", f'Could not open "{name}" for writing.\n'))

    def test_parser_dump_that_cannot_be_opened_ends_the_compilation_before_the_analysis(self):
        self.write("prog.krl", SEMANTIC_ERROR)
        (self.directory / "prog.ast.json").mkdir()
        self.assertEqual(self.krelcc("prog.krl", "--ast-dump"),
                         (1, "", 'Could not open "prog.ast.json" for writing.\n'))

    def test_full_disk(self):
        for name, flag in FLAGS.items():
            (self.directory / name).symlink_to("/dev/full")
            message = ("Compilation error: could not write assembly file\n" if name == "prog.s"
                       else f'Could not write "{name}".\n')
            self.assertEqual(self.krelcc("prog.krl", flag), (1, "", message))
        self.assertEqual(self.called(), [])


class Memory(CommandLineTest):
    """Dumps are written as they are made: they need no memory that grows with their size."""

    ROOM_KILOBYTES = 4096

    def setUp(self):
        super().setUp()
        self.stub("gcc")
        for name in FLAGS:
            (self.directory / name).symlink_to("/dev/null")

    def peak(self, *arguments):
        """The most memory that a compilation needs, in kilobytes."""
        process = self.start("prog.krl", *arguments, stderr=subprocess.DEVNULL)
        process.stdout.read()
        process.stdout.close()
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
        self.assertEqual(process.returncode, 0)
        return usage.ru_maxrss

    def assert_dumps_need_no_memory(self, body):
        self.write("prog.krl", "void main() {\n" + body + "}\n")
        without = min(self.peak() for _ in range(3))
        for flag in FLAGS.values():
            if flag != "--asm-dump":  # it is written without being asked for, too
                self.assertLess(self.peak(flag), without + self.ROOM_KILOBYTES, flag)

    def test_deep_tree(self):
        # 200 MB of text, most of it blanks
        self.assert_dumps_need_no_memory("    int x = " + "+".join(["1"] * 4000) + ";\n")

    def test_wide_tree(self):
        self.assert_dumps_need_no_memory("    int x = 1;\n" + "    x = 2;\n" * 30000)

    def test_long_text(self):
        self.assert_dumps_need_no_memory('    print("' + "word\\n" * 2_000_000 + '");\n')


class TemporaryAssembly(CommandLineTest):
    def setUp(self):
        super().setUp()
        self.temporary = self.directory / "tmp"
        self.temporary.mkdir()

    def environment(self, changes):
        return super().environment({"TMPDIR": str(self.temporary), **changes})

    def assert_gone(self):
        self.assertEqual(list(self.temporary.iterdir()), [])

    def test_name_and_contents(self):
        self.stub("gcc", f'/bin/cp "$1" "{self.directory}/seen"')
        self.assertEqual(self.krelcc("prog.krl"), (0, self.compiled(), ""))
        assembly = pathlib.Path(self.called()[1])
        self.assertEqual(assembly.parent, self.temporary)
        self.assertRegex(assembly.name, r"^krelcc-[A-Za-z0-9]{6}\.s$")
        self.assert_gone()
        self.krelcc("prog.krl", "--asm-dump")
        self.assertEqual(self.read("seen"), self.read("prog.s"))

    def test_default_directory(self):
        self.stub("gcc")
        self.krelcc("prog.krl", environment={"TMPDIR": None, "TMP": None, "TEMP": None,
                                             "TEMPDIR": None})
        self.assertEqual(str(pathlib.Path(self.called()[1]).parent), "/tmp")
        self.assertFalse(os.path.exists(self.called()[1]))

    def test_none_with_an_assembly_dump(self):
        self.stub("gcc", f'/bin/ls "{self.temporary}" > "{self.directory}/seen"')
        self.krelcc("prog.krl", "--asm-dump")
        self.assertEqual(self.read("seen"), "")

    def test_gone_after_a_failed_native_compilation(self):
        for end in ("exit 2", "kill -9 $$"):
            self.stub("gcc", end)
            self.assertNotEqual(self.krelcc("prog.krl")[0], 0)
            self.assert_gone()

    def test_gone_when_the_native_compiler_cannot_run(self):
        self.stub("gcc").write_text("not a program\n")
        self.assertEqual(self.krelcc("prog.krl")[0], 127)
        self.assert_gone()

    def test_gone_after_an_error_of_the_code_generator(self):
        self.stub("gcc")
        self.write("prog.krl", GENERATOR_ERROR)
        self.assertEqual(self.krelcc("prog.krl"), (1, "", GENERATOR_MESSAGE))
        self.assert_gone()

    def test_removed_by_the_native_compiler_already(self):
        self.stub("gcc", '/bin/rm "$1"')
        self.assertEqual(self.krelcc("prog.krl"), (0, self.compiled(), ""))

    def test_cannot_be_created(self):
        self.stub("gcc")
        self.assertEqual(self.krelcc("prog.krl", environment={"TMPDIR": "/proc"}),
                         (1, "", "Compilation error: could not create temporary assembly file: "
                                 "No such file or directory\n"))
        self.assertEqual(self.called(), [])

    def test_temporary_directory_that_is_none(self):
        self.stub("gcc")
        status, stdout, stderr = self.krelcc("prog.krl", environment={"TMPDIR": "/no/such/place"})
        self.assertEqual((status, stdout), (1, ""))
        self.assertRegex(stderr, r"\ACompilation error: [^\n]+\n\Z")
        self.assertEqual(self.called(), [])

    def test_two_compilers_at_once(self):
        # Each native compiler waits until it has seen that the other one runs as well.
        self.stub("gcc", f': > "{self.directory}/$4.runs"\n'
                         f'until [ -e "{self.directory}/$OTHER.runs" ]; do /bin/sleep 0.05; done')
        first = self.start("prog.krl", "-o", "one", environment={"OTHER": "two"})
        second = self.start("prog.krl", "-o", "two", environment={"OTHER": "one"})
        self.assertEqual(first.communicate(timeout=TIMEOUT_SECONDS),
                         (self.compiled(output="one"), ""))
        self.assertEqual(second.communicate(timeout=TIMEOUT_SECONDS),
                         (self.compiled(output="two"), ""))
        names = [word for word in self.called() if word.endswith(".s")]
        self.assertEqual(len(set(names)), 2)
        self.assert_gone()


if __name__ == "__main__":
    unittest.main()
