#!/usr/bin/env python3
"""`krel fmt`: files, directories, standard input, and what is left alone."""

import os
import pathlib
import sys
import unittest

sys.path.append(str(pathlib.Path(__file__).resolve().parents[1] / "krel"))

from sandbox import KrelTest  # noqa: E402 (after the path is known)

UGLY = "void main(){print(1);\n}\n"
NEAT = "void main() {\n    print(1);\n}\n"
SYNTAX_ERROR = "void main() {\n    int x;\n}\n"
SAID = "  Syntax error in {} at line 2: syntax error, unexpected T_SEMICOLON, " \
       "expecting T_LBRACKET or T_ASSIGN\n"
REFUSED = "krel: fmt: {}: left as it is, because it does not parse\n" + SAID


class Fmt(KrelTest):
    def fmt(self, *words, **options):
        return self.krel("fmt", *words, **options)

    def test_rewrites_files(self):
        self.write("a.krl", UGLY)
        self.write("b.txt", UGLY)
        self.assertEqual(self.fmt("a.krl", "b.txt"), (0, "", ""))
        self.assertEqual((self.read("a.krl"), self.read("b.txt")), (NEAT, NEAT))
        self.assertEqual(self.files(), ["a.krl", "b.txt", "prog.krl"])

    def test_does_not_touch_what_is_formatted(self):
        path = self.write("a.krl", NEAT)
        os.utime(path, ns=(1, 1))
        before = path.stat()
        self.assertEqual(self.fmt("a.krl"), (0, "", ""))
        after = path.stat()
        self.assertEqual((before.st_ino, before.st_mtime_ns), (after.st_ino, after.st_mtime_ns))

    def test_keeps_mode_and_links(self):
        path = self.write("real/a.krl", UGLY)
        path.chmod(0o640)
        (self.directory / "link.krl").symlink_to(path)
        self.assertEqual(self.fmt("link.krl"), (0, "", ""))
        self.assertTrue((self.directory / "link.krl").is_symlink())
        self.assertEqual((path.read_text(), path.stat().st_mode & 0o7777), (NEAT, 0o640))

    def test_mends_line_ends(self):
        self.write("a.krl", NEAT.replace("\n", "\r\n"))
        self.assertEqual(self.fmt("--check", "a.krl"), (1, "a.krl\n", ""))
        self.assertEqual(self.fmt("a.krl"), (0, "", ""))
        self.assertEqual((self.directory / "a.krl").read_bytes(), NEAT.encode())

    def test_check_lists_and_changes_nothing(self):
        self.write("a.krl", UGLY)
        self.write("b.krl", NEAT)
        self.write("c.krl", UGLY)
        self.assertEqual(self.fmt("--check", "a.krl", "b.krl", "c.krl"),
                         (1, "a.krl\nc.krl\n", ""))
        self.assertEqual(self.read("a.krl"), UGLY)
        self.assertEqual(self.fmt("--check", "b.krl"), (0, "", ""))

    def test_searches_directories(self):
        for name in ("d/b.krl", "d/a/z.krl", "d/a/notes.txt", "d/.git/x.krl"):
            self.write(name, UGLY)
        (self.directory / "d" / "link.krl").symlink_to(self.directory / "outside.krl")
        self.write("outside.krl", UGLY)
        self.assertEqual(self.fmt("--check", "d"), (1, "d/a/z.krl\nd/b.krl\n", ""))
        self.assertEqual(self.fmt("d"), (0, "", ""))
        self.assertEqual([self.read(f"d/{name}") for name in ("b.krl", "a/z.krl")], [NEAT, NEAT])
        self.assertEqual([self.read(name) for name in ("d/a/notes.txt", "d/.git/x.krl",
                                                       "outside.krl")], [UGLY, UGLY, UGLY])
        (self.directory / "empty").mkdir()
        self.assertEqual(self.fmt("empty"), (0, "", ""))

    def test_standard_input(self):
        self.assertEqual(self.fmt("-", text=UGLY), (0, NEAT, ""))
        self.assertEqual(self.fmt("-", text=NEAT), (0, NEAT, ""))
        self.assertEqual(self.fmt("-", text=""), (0, "", ""))
        self.assertEqual(self.fmt("--check", "-", text=NEAT), (0, "", ""))
        self.assertEqual(self.fmt("--check", "-", text=UGLY), (1, "stdin.krl\n", ""))
        self.assertEqual(self.fmt("-", text=SYNTAX_ERROR),
                         (2, "", REFUSED.format("stdin.krl", "stdin.krl")))

    def test_what_does_not_parse_is_left_alone_and_the_others_are_done(self):
        self.write("a.krl", UGLY)
        self.write("d/bad.krl", SYNTAX_ERROR)
        self.write("e.krl", UGLY)
        self.assertEqual(self.fmt("--check", "a.krl", "d", "e.krl"),
                         (2, "a.krl\ne.krl\n", REFUSED.format("d/bad.krl", "bad.krl")))
        self.assertEqual(self.fmt("a.krl", "d", "e.krl"),
                         (2, "", REFUSED.format("d/bad.krl", "bad.krl")))
        self.assertEqual([self.read(name) for name in ("a.krl", "d/bad.krl", "e.krl")],
                         [NEAT, SYNTAX_ERROR, NEAT])

    def test_shows_the_first_faults(self):
        self.write("many.krl", "@" * 20)
        status, stdout, stderr = self.fmt("many.krl")
        fault = "  Lexer error in many.krl at line 1: illegal character '@'\n"
        self.assertEqual((status, stdout, stderr),
                         (2, "", "krel: fmt: many.krl: left as it is, because it does not parse\n"
                          + 5 * fault + "  and 15 more\n"))

    def test_what_only_later_passes_refuse_is_formatted(self):
        self.write("a.krl", "void main(){int i=true;int i=2;break;}")
        self.assertEqual(self.fmt("a.krl"), (0, "", ""))
        self.assertEqual(self.read("a.krl"), "void main() {\n    int i = true;\n    int i = 2;\n"
                                             "    break;\n}\n")

    def test_what_cannot_be_read_or_written(self):
        os.mkfifo(self.directory / "pipe.krl")
        self.write("a.krl", UGLY)
        status, stdout, stderr = self.fmt("missing.krl", "pipe.krl", "/dev/null", "a.krl")
        self.assertEqual((status, stdout, stderr),
                         (2, "", "krel: fmt: missing.krl: No such file or directory\n"
                                 "krel: fmt: pipe.krl: is no regular file\n"
                                 "krel: fmt: /dev/null: is no regular file\n"))
        self.assertEqual(self.read("a.krl"), NEAT)
        with open("/dev/full", "w", encoding="ascii") as full:
            for words in (("-",), ("--check", "-")):
                status, _, stderr = self.fmt(*words, text=UGLY, stdout=full)
                self.assertEqual((status, stderr), (2, "krel: fmt: cannot write to standard "
                                                       "output: No space left on device\n"))

    def test_names_that_look_like_options(self):
        self.write("--check", UGLY)
        self.assertEqual(self.fmt("--", "--check"), (0, "", ""))
        self.assertEqual(self.read("--check"), NEAT)

    def test_wrong_use(self):
        for words, part in (((), "FILE"), (("--check",), "FILE"),
                            (("--width=80", "prog.krl"), "'--width=80'")):
            with self.subTest(words=words):
                self.assert_complains(self.fmt(*words), 2, part, "krel help fmt")


if __name__ == "__main__":
    unittest.main()
