#!/usr/bin/env python3
"""krel check and krel explain as commands: files, directories, exit statuses, colours, formats."""

import json
import os
import pathlib
import pty
import subprocess
import sys
import tempfile
import unittest

sys.path.append(str(pathlib.Path(__file__).resolve().parents[1] / "krel"))

from sandbox import KREL  # noqa: E402 (after the path is known)

HERE = pathlib.Path(__file__).resolve().parent
SCHEMA = HERE / "schemas" / "sarif-2.1.0.json"
GOOD = "void main() {\n    print(\"hello\\n\");\n}\n"
REFUSED = "void main() {\n    int x;\n    print(x, \"\\n\");\n}\n"
FIXED = REFUSED.replace("int x;", "int x = 0;")
TRAP = "void main() {\n    double d = 1.5;\n    print(d > 0.5, \"\\n\");\n}\n"
FINDING = """program.krl:2:9: error: `x` has no initial value [initial-value]
 2 |     int x;
   |         ^
   help: write `x = 0`
"""


class Command(unittest.TestCase):
    def setUp(self):
        holder = tempfile.TemporaryDirectory()
        self.addCleanup(holder.cleanup)
        self.directory = pathlib.Path(holder.name)

    def write(self, name, text):
        path = self.directory / name
        path.parent.mkdir(exist_ok=True)
        path.write_text(text, encoding="utf-8")
        return path

    def krel(self, *words, text=None, **environment):
        made = subprocess.run([KREL, *words], input=text, capture_output=True, text=True,
                              cwd=self.directory, check=False, timeout=100,
                              env={**os.environ, **environment})
        return made.returncode, made.stdout, made.stderr

    def test_nothing_found(self):
        self.write("program.krl", GOOD)
        self.assertEqual(self.krel("check", "program.krl"), (0, "", ""))

    def test_findings(self):
        self.write("program.krl", REFUSED)
        self.assertEqual(self.krel("check", "program.krl"), (1, FINDING, ""))

    def test_standard_input(self):
        self.assertEqual(self.krel("check", "-", text=REFUSED),
                         (1, FINDING.replace("program", "stdin"), ""))

    def test_directories_are_searched(self):
        self.write("below/program.krl", REFUSED)
        self.write("below/other.txt", REFUSED)
        self.write("good.krl", GOOD)
        status, out, fault = self.krel("check", ".")
        self.assertEqual((status, fault), (1, ""))
        self.assertEqual(out.count("[initial-value]"), 1)
        self.assertIn("below/program.krl:2:9: error", out)

    def test_unreadable_files(self):
        self.write("program.krl", REFUSED)
        status, out, fault = self.krel("check", "missing.krl", "program.krl")
        self.assertEqual((status, out), (2, FINDING))
        self.assertIn("missing.krl", fault)

    def test_wrong_use(self):
        for words in [[], ["--fix=bad", "x.krl"], ["--format=xml", "x.krl"], ["--other", "x.krl"]]:
            status, out, fault = self.krel("check", *words)
            self.assertEqual((status, out), (2, ""), words)
            self.assertTrue(fault.startswith("krel: check: "), fault)

    def test_fix_repairs_refused_programs(self):
        path = self.write("program.krl", REFUSED)
        self.assertEqual(self.krel("check", "--fix", "program.krl"),
                         (0, "program.krl:2:10: repaired: = 0\n", ""))
        self.assertEqual(path.read_text(), FIXED)
        before = path.stat().st_mtime_ns
        self.assertEqual(self.krel("check", "--fix", "program.krl"), (0, "", ""))
        self.assertEqual(path.stat().st_mtime_ns, before)

    def test_fix_tells_what_it_removes(self):
        self.write("program.krl", "int f(int x);\nint f(int x) { return x; }\n"
                                  "void main() { print(f(1)); }\n")
        self.assertEqual(self.krel("check", "--fix", "program.krl"),
                         (0, "program.krl:1:1: repaired: (removed) int f(int x);\n", ""))

    def test_fix_leaves_accepted_programs_alone(self):
        path = self.write("program.krl", TRAP)
        status, out, _ = self.krel("check", "--fix", "program.krl")
        self.assertEqual((status, path.read_text()), (1, TRAP))
        self.assertIn("warning", out)
        status, out, _ = self.krel("check", "--fix=all", "program.krl")
        self.assertEqual(status, 0)
        self.assertIn("boolean holds = false;", path.read_text())

    def test_fix_takes_several_files(self):
        paths = [self.write(name, REFUSED) for name in ("a.krl", "b.krl")]
        self.assertEqual(self.krel("check", "--fix", "a.krl", "b.krl")[0], 0)
        self.assertEqual([path.read_text() for path in paths], [FIXED, FIXED])

    def test_fix_of_standard_input_goes_to_standard_output(self):
        self.assertEqual(self.krel("check", "--fix", "-", text=REFUSED),
                         (0, FIXED, "krel: check: 1 repairs\n"))

    def test_diff_changes_nothing(self):
        path = self.write("program.krl", REFUSED)
        expected = ("--- program.krl\n+++ program.krl\n@@ -2,1 +2,1 @@\n-    int x;\n"
                    "+    int x = 0;\n")
        self.assertEqual(self.krel("check", "--diff", "program.krl"), (1, expected, ""))
        self.assertEqual(path.read_text(), REFUSED)

    def test_hints_are_shown_when_asked_for(self):
        self.write("program.krl", "void f(int p) { }\n" + GOOD.replace("print", "f(1); print"))
        self.assertEqual(self.krel("check", "program.krl"), (0, "", ""))
        status, out, _ = self.krel("check", "--hints", "program.krl")
        self.assertEqual(status, 1)
        self.assertIn("program.krl:1:12: hint: `p` is never used [unused-variable]", out)

    def test_colours(self):
        self.write("program.krl", REFUSED)
        self.assertIn("\x1b[", self.krel("check", "--color=always", "program.krl")[1])
        self.assertNotIn("\x1b[", self.krel("check", "program.krl")[1])

    @unittest.skipUnless(pathlib.Path("/dev/pts/ptmx").exists(), "there are no terminals here")
    def test_colours_on_a_terminal(self):
        self.write("program.krl", REFUSED)
        for variables, coloured in [({}, True), ({"NO_COLOR": "1"}, False),
                                    ({"NO_COLOR": ""}, True)]:
            with self.subTest(variables):
                environment = {name: value for name, value in os.environ.items()
                               if name != "NO_COLOR"}
                main, other = pty.openpty()
                with subprocess.Popen([KREL, "check", "program.krl"], stdout=other,
                                      cwd=self.directory,
                                      env={**environment, **variables}) as process:
                    process.wait(100)
                os.close(other)
                self.assertEqual(b"\x1b[" in os.read(main, 10000), coloured)
                os.close(main)

    def test_json(self):
        self.write("a.krl", REFUSED)
        self.write("b.krl", GOOD)
        status, out, _ = self.krel("check", "--format=json", "a.krl", "b.krl")
        files = json.loads(out)["files"]
        self.assertEqual(status, 1)
        self.assertEqual([file["accepted"] for file in files], [False, True])
        self.assertEqual(files[0]["findings"][0]["rule"], "initial-value")
        self.assertEqual(files[0]["findings"][0]["edits"], [0])
        self.assertEqual(files[0]["edits"], [{"line": 2, "column": 10, "endLine": 2,
                                              "endColumn": 10, "text": " = 0"}])
        self.assertEqual(files[1]["findings"], [])

    def test_sarif(self):
        self.write("program.krl", REFUSED)
        status, out, _ = self.krel("check", "--format=sarif", "program.krl")
        run = json.loads(out)["runs"][0]
        self.assertEqual((status, len(run["results"])), (1, 1))
        change = run["results"][0]["fixes"][0]["artifactChanges"][0]
        self.assertEqual(change["replacements"][0]["insertedContent"], {"text": " = 0"})

    def test_edits_of_each_finding(self):
        self.write("program.krl", "void main() {\n    int a[3] = {1, 2, 3};\n    int n = 1;\n"
                                  "    print(a[n + 1], n % 2);\n    n *= 2;\n    missing();\n}\n")
        file = json.loads(self.krel("check", "--format=json", "program.krl")[1])["files"][0]
        texts = {finding["rule"]: [file["edits"][number]["text"] for number in finding["edits"]]
                 for finding in file["findings"]}
        self.assertEqual(texts, {"index-expression": ["int aIndex = n + 1;\n    ", "[aIndex]"],
                                 "remainder": ["n - n / 2 * 2"],
                                 "compound-assignment": [" = n * "], "undeclared-name": []})

    @staticmethod
    def faults_of(sarif):
        """What the schema has against a text. The module for that belongs to Debian's python3,
        which need not be the first one."""
        pythons = (sys.executable, "/usr/bin/python3")
        python = next(python for python in pythons
                      if subprocess.run([python, "-c", "import jsonschema"], check=False,
                                        capture_output=True).returncode == 0)
        return subprocess.run([python, HERE / "validate.py", SCHEMA], input=sarif, text=True,
                              check=False, capture_output=True).stderr

    def test_sarif_follows_its_schema(self):
        self.assertIn("'tool' is a required property",
                      self.faults_of('{"version": "2.1.0", "runs": [{}]}'))
        for text in [GOOD, REFUSED, TRAP, "", "x", "void main() { string s = \"a - \xe4\" }"]:
            self.write("a b#1.krl", text)
            out = self.krel("check", "--format=sarif", "--hints", "a b#1.krl")[1]
            self.assertEqual(self.faults_of(out), "")
        programs = sorted(SCHEMA.parents[1].glob("programs/*/program.krl"))
        out = self.krel("check", "--format=sarif", *programs)[1]
        self.assertEqual(self.faults_of(out), "")
        self.assertGreater(len(json.loads(out)["runs"][0]["results"]), 100)

    def test_explain(self):
        status, page, _ = self.krel("explain", "whole-double")
        self.assertEqual((status, page.splitlines()[0]), (0, "# whole-double"))
        self.assertEqual(self.krel("explain", "Compilation error: unknown double IR value: 2"),
                         (0, page, ""))
        status, out, _ = self.krel("explain")
        self.assertEqual(status, 0)
        self.assertGreater(len(out.splitlines()), 50)
        status, out, fault = self.krel("explain", "nothing of that name")
        self.assertEqual((status, out), (2, ""))
        self.assertIn("nothing of that name", fault)


if __name__ == "__main__":
    unittest.main()
