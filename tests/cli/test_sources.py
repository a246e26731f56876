#!/usr/bin/env python3
"""The source file: how it is named in messages and dumps, and how krelcc ends without it."""

import unittest

from harness import CommandLineTest, SYNTAX_ERROR

EMPTY_TREE = """{{
  "kind": "Program",
  "sourceFile": "{}",
  "children": [
    {{
      "kind": "ExternalList",
      "sourceLine": "1",
      "value": 0
    }}
  ]
}}

"""


class Unreadable(CommandLineTest):
    def setUp(self):
        super().setUp()
        self.stub("gcc")

    def assert_unreadable(self, source, reason):
        self.assertEqual(self.krelcc(source, "--ast-dump"), (1, "", f"{source}: {reason}\n"))
        self.assertEqual(self.files(), ["prog.krl"])

    def test_missing_source(self):
        self.assert_unreadable("missing.krl", "No such file or directory")
        self.assert_unreadable("missing/prog.krl", "No such file or directory")
        self.assert_unreadable(self.directory / "missing.krl", "No such file or directory")

    def test_source_below_a_file(self):
        self.assert_unreadable("prog.krl/prog.krl", "Not a directory")

    def test_link_to_itself(self):
        (self.directory / "loop.krl").symlink_to("loop.krl")
        self.assert_unreadable("loop.krl", "Too many levels of symbolic links")

    def test_directory(self):
        (self.directory / "dir.krl").mkdir()
        self.assert_unreadable("dir.krl", "Is a directory")


class Names(CommandLineTest):
    def setUp(self):
        super().setUp()
        self.stub("gcc")

    def test_diagnostics_show_the_name_without_its_directory(self):
        for source, name in (("bad.krl", "bad.krl"), ("./bad.krl", "bad.krl"),
                             ("dir/sub/bad.krl", "bad.krl"), ("dir\\sub/a.krl", "a.krl"),
                             ("dir/sub\\a.krl", "a.krl"), ("\\.krl", ".krl"),
                             ("two words.krl", "two words.krl"), ('"q".krl', '"q".krl')):
            self.write(source, SYNTAX_ERROR)
            self.assertEqual(self.krelcc(source),
                             (1, "", f"Syntax error in {name} at line 2: "
                                     "syntax error, unexpected end of file\n"))

    def test_diagnostics_of_an_absolute_source(self):
        source = self.write("dir/bad.krl", "print(1);")
        self.assertEqual(self.krelcc(source),
                         (1, "", "Semantic error in bad.krl at line 1: "
                                 "all statements must be inside a function\n"))

    def test_tree_shows_the_name_without_its_directory(self):
        for source, stem, name in (("dir/a.krl", "a", "a.krl"), ("dir/b\\c.krl", "b\\c", "c.krl"),
                                   ('q"\t.krl', 'q"\t', 'q\\"\\t.krl')):
            self.write(source, "")
            status, _, stderr = self.krelcc(source, "--ast-dump")
            self.assertEqual((status, stderr), (0, ""))
            self.assertEqual(self.read(f"{stem}.ast.json"), EMPTY_TREE.format(name))


class Empty(CommandLineTest):
    def test_source_without_a_token(self):
        # There is no program in it to link; a stand-in for the native compiler accepts anything.
        self.stub("gcc")
        for text in ("", "\n", "  \t\n\n", "# comment", "#{\n\n}#\n"):
            self.write("prog.krl", text)
            self.assertEqual(self.krelcc("prog.krl", "--ast-dump", "--ast-semantic-dump",
                                         "--ir-dump", "--asm-dump"),
                             (0, 'AST written to "prog.ast.json".\n'
                                 'AST written to "prog.semantic.json".\n'
                                 'KrelIR written to "prog.ir".\n'
                                 'Assembly written to "prog.s".\n' + self.compiled(), ""))
            self.assertEqual(self.read("prog.ast.json"), EMPTY_TREE.format("prog.krl"))
            self.assertEqual(self.read("prog.semantic.json"), EMPTY_TREE.format("prog.krl"))
            self.assertEqual(self.read("prog.ir"), "")
            self.assertEqual(self.read("prog.s"),
                             '\t.text\n\t.section .note.GNU-stack,"",@progbits\n')


if __name__ == "__main__":
    unittest.main()
