#!/usr/bin/env python3
"""krel run --checked and its options as commands: what is printed where, and exit statuses."""

import pathlib
import subprocess
import sys
import tempfile
import unittest

sys.path.append(str(pathlib.Path(__file__).resolve().parents[1] / "krel"))

from sandbox import KREL  # noqa: E402 (after the path is known)

FAULTED = 134
PROGRAM = """\
int square(int n) {
    int result = n * n;
    return result;
}

void main() {
    int a[2] = {1, 2};
    for (int i = 0; i < 2; i++) {
        a[i] = square(a[i]);
        if (a[i] > 3) {
            print("large\\n");
        } else {
            print("small\\n");
        }
    }
}

void never() {
    print("never\\n");
}
"""
TRACE = """\
p.krl:7: int a[2] = {1, 2};    a[0] = 1, a[1] = 2
p.krl:8: for (int i = 0; i < 2; i++) {    i = 0
p.krl:9: a[i] = square(a[i]);
  p.krl:1: int square(int n) {    n = 1
  p.krl:2: int result = n * n;    result = 1
  p.krl:3: return result;
p.krl:9: a[i] = square(a[i]);    a[0] = 1
p.krl:10: if (a[i] > 3) {
p.krl:13: print("small\\n");
p.krl:8: for (int i = 0; i < 2; i++) {    i = 1
p.krl:9: a[i] = square(a[i]);
  p.krl:1: int square(int n) {    n = 2
  p.krl:2: int result = n * n;    result = 4
  p.krl:3: return result;
p.krl:9: a[i] = square(a[i]);    a[1] = 4
p.krl:10: if (a[i] > 3) {
p.krl:11: print("large\\n");
p.krl:8: for (int i = 0; i < 2; i++) {    i = 2
"""
PROFILE = """\
       calls  function
           2  square
           1  main
           0  never

        runs  line
           2   1 | int square(int n) {
           2   2 |     int result = n * n;
           2   3 |     return result;
               4 | }
               5 |
           1   6 | void main() {
           1   7 |     int a[2] = {1, 2};
           3   8 |     for (int i = 0; i < 2; i++) {
           2   9 |         a[i] = square(a[i]);
           2  10 |         if (a[i] > 3) {
           1  11 |             print("large\\n");
              12 |         } else {
           1  13 |             print("small\\n");
              14 |         }
              15 |     }
              16 | }
              17 |
           0  18 | void never() {
           0  19 |     print("never\\n");
              20 | }
"""
LCOV = """\
TN:
SF:%s
FN:1,square
FN:6,main
FN:18,never
FNDA:2,square
FNDA:1,main
FNDA:0,never
FNF:3
FNH:2
DA:1,2
DA:2,2
DA:3,2
DA:6,1
DA:7,1
DA:8,3
DA:9,2
DA:10,2
DA:11,1
DA:13,1
DA:18,0
DA:19,0
LF:12
LH:10
end_of_record
"""
OUTPUT = b"small\nlarge\n"


class Command(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        holder = tempfile.TemporaryDirectory()
        self.addCleanup(holder.cleanup)
        self.directory = pathlib.Path(holder.name).resolve()
        self.write(PROGRAM)

    def write(self, text):
        (self.directory / "p.krl").write_text(text)

    def run_krel(self, *words, **options):
        return subprocess.run([KREL, "run", *words], cwd=self.directory, capture_output=True,
                              timeout=60, check=False, **options)

    def check(self, ran, status, stdout, stderr):
        self.assertEqual((ran.returncode, ran.stdout.decode(), ran.stderr.decode()),
                         (status, stdout if isinstance(stdout, str) else stdout.decode(), stderr))

    def test_nothing_is_said_about_a_correct_program(self):
        for options in (["--checked"], ["--allow=all"], ["--allow=overflow,wrong-type"],
                        ["--limit=1000"], ["--allow=overflow", "--allow=wrong-type"]):
            self.check(self.run_krel(*options, "p.krl"), 0, OUTPUT, "")
        self.check(self.run_krel("--checked", "-", input=PROGRAM.encode()), 0, OUTPUT, "")
        self.assertEqual([path.name for path in self.directory.iterdir()], ["p.krl"])

    def test_trace(self):
        self.check(self.run_krel("--trace", "p.krl"), 0, OUTPUT, TRACE)

    def test_trace_up_to_a_fault(self):
        self.write("void main() {\n    string s = \"a\\tb\";\n    double d = 0.5;\n"
                   "    boolean b = true;\n    character c = '\\n';\n    int n = 0;\n"
                   "    n = 1 / n;\n}\n")
        ran = self.run_krel("--trace", "p.krl")
        self.assertEqual(ran.returncode, FAULTED)
        self.assertEqual(ran.stderr.decode().splitlines()[:7], [
            'p.krl:2: string s = "a\\tb";    s = "a\\tb"',
            "p.krl:3: double d = 0.5;    d = 0.5",
            "p.krl:4: boolean b = true;    b = true",
            "p.krl:5: character c = '\\n';    c = '\\n'",
            "p.krl:6: int n = 0;    n = 0",
            "p.krl:7: n = 1 / n;",
            "p.krl:7:9: error: 1 is divided by zero [division-by-zero]"])

    def test_a_loop_in_one_line_is_traced_round_by_round(self):
        self.write("void main() {\n    int i = 0;\n    while (i < 2) { i++; }\n}\n")
        self.check(self.run_krel("--trace", "p.krl"), 0, "",
                   "p.krl:2: int i = 0;    i = 0\n"
                   "p.krl:3: while (i < 2) { i++; }    i = 1\n"
                   "p.krl:3: while (i < 2) { i++; }    i = 2\n"
                   "p.krl:3: while (i < 2) { i++; }\n")

    def test_profile(self):
        self.check(self.run_krel("--profile", "p.krl"), 0, OUTPUT, PROFILE)

    def test_coverage(self):
        self.check(self.run_krel("--coverage=p.info", "p.krl"), 0, OUTPUT, "")
        self.assertEqual((self.directory / "p.info").read_text(),
                         LCOV % (self.directory / "p.krl"))

    def test_counts_after_a_fault(self):
        self.write("void main() {\n    int i = 1;\n    i = i / 0;\n    print(i);\n}\n")
        ran = self.run_krel("--coverage=p.info", "p.krl")
        self.assertEqual(ran.returncode, FAULTED)
        text = (self.directory / "p.info").read_text()
        self.assertIn("DA:2,1\nDA:3,1\nDA:4,0\n", text)

    def test_coverage_that_cannot_be_written(self):
        self.check(self.run_krel("--coverage=no/p.info", "p.krl"), 1, OUTPUT,
                   "krel: run: cannot write no/p.info: No such file or directory\n")

    def test_limit(self):
        self.write("void main() {\n    print(\"on\\n\");\n    while (true) {\n    }\n}\n")
        self.check(self.run_krel("--limit=1000000", "p.krl"), FAULTED, "on\n",
                   "p.krl:3:5: error: 1000000 steps are done, and the program is still running "
                   "[step-limit]\n 3 |     while (true) {\n   |     ^^^^^^^^^^^^^^^\n"
                   "   help: give it a larger --limit, or let its loops end\n   in `main`\n")

    def test_output_comes_before_the_report(self):
        self.write("void main() {\n    print(\"first\\n\");\n    int i = 1;\n    i = i / 0;\n}\n")
        ran = subprocess.run([KREL, "run", "--checked", "p.krl"], cwd=self.directory, timeout=60,
                             stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
        self.assertTrue(ran.stdout.startswith(b"first\np.krl:4:9: error: "), ran.stdout)

    def test_refused_programs(self):
        self.write("void main() {\n    int x = y;\n}\n")
        refused = self.run_krel("--checked", "p.krl")
        compiled = self.run_krel("p.krl")
        self.assertEqual((refused.returncode, refused.stderr),
                         (compiled.returncode, compiled.stderr))
        self.write("void main() {\n    double d = 2.0;\n}\n")
        self.check(self.run_krel("--checked", "p.krl"), 1, "",
                   self.run_krel("p.krl").stderr.decode())

    def test_what_only_a_compiled_program_can(self):
        self.write("void main() {\n    int a[1] = {abs(1)};\n}\n")
        self.check(self.run_krel("--checked", "p.krl"), 1, "",
                   "krel: run: the function 'abs' is not in the program; only a compiled one can "
                   "call it\n")

    def test_wrong_use(self):
        self.check(self.run_krel("--allow=nothing", "p.krl"), 2, "",
                   "krel: run: there is no rule 'nothing'; see 'krel help run'\n")
        self.assertEqual(self.run_krel("--limit=many", "p.krl").returncode, 2)
        self.check(self.run_krel("--checked", "none.krl"), 1, "",
                   "krel: none.krl: No such file or directory\n")

    def test_full_disk(self):
        with open("/dev/full", "wb") as full:
            ran = subprocess.run([KREL, "run", "--checked", "p.krl"], cwd=self.directory,
                                 stdout=full, stderr=subprocess.PIPE, timeout=60, check=False)
        self.assertEqual((ran.returncode, ran.stderr), (
            1, b"krel: runtime error: cannot write standard output: no space left on device\n"))


if __name__ == "__main__":
    unittest.main()
