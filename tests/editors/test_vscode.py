#!/usr/bin/env python3
"""The extension for VS Code: its grammar, its parts, what it does, and its package.

npm's packages lie in the folder that the environment variable KREL_NODE names, where
`script/bootstrap test` installs them; without them the tests that need them are skipped.
"""

import json
import os
import pathlib
import re
import subprocess
import tempfile
import unittest
import zipfile

from sample import EDITORS, KREL, ROOT, TIMEOUT_SECONDS, WORDS

FOLDER = EDITORS / "vscode"
GRAMMAR = FOLDER / "syntaxes" / "krel.tmLanguage.json"
HERE = pathlib.Path(__file__).resolve().parent
NODE = pathlib.Path(os.environ.get("KREL_NODE", ROOT / "build" / "editors" / "node"))
MODULES = NODE / "node_modules"
PACKAGE = json.loads((FOLDER / "package.json").read_text(encoding="utf-8"))

WORD_SCOPES = {
    "types": "storage.type.krel",
    "control": "keyword.control.krel",
    "functions": "support.function.krel",
    "constants": "constant.language.krel",
    "operators": "keyword.operator.",
    "punctuation": "punctuation.",
}

FAULTY = """void main() {
    double x = 2.0
    int unused = 1;
    boolean b = true && x == 0.5;
    print("sum", "\\n");
}
"""

needs_packages = unittest.skipUnless(
    (MODULES / ".complete").exists(),
    f"npm's packages are missing in {NODE}; script/bootstrap test installs them")


def run(command, **options):
    return subprocess.run(command, check=False, capture_output=True, text=True,
                          timeout=TIMEOUT_SECONDS, stdin=options.pop("stdin", subprocess.DEVNULL)
                          if "input" not in options else None, **options)


def krel(*arguments, cwd):
    done = run([KREL, *arguments], cwd=cwd)
    return (done.stdout + done.stderr).splitlines()


class Files(unittest.TestCase):
    def test_lock_names_no_host_of_a_registry(self):
        lock = json.loads((FOLDER / "package-lock.json").read_text(encoding="utf-8"))
        for name, package in lock["packages"].items():
            with self.subTest(package=name):
                self.assertNotIn("resolved", package)

    def test_parts_exist(self):
        contributes = PACKAGE["contributes"]
        paths = [PACKAGE["main"], *(part["path"] for kind in ("grammars", "snippets")
                                    for part in contributes[kind]),
                 *(part["configuration"] for part in contributes["languages"])]
        for path in paths:
            with self.subTest(path=path):
                self.assertTrue((FOLDER / path).is_file())
                if path.endswith(".json"):
                    json.loads((FOLDER / path).read_text(encoding="utf-8"))

    def test_snippets_compile(self):
        snippets = json.loads((FOLDER / "snippets/krel.json").read_text(encoding="utf-8"))
        around = ("int function() { return 0; }\n"
                  "void main() {\n int a = 1; int b = 2; int number = 7; int divisor = 2;\n")
        for name, snippet in snippets.items():
            with self.subTest(snippet=name), tempfile.TemporaryDirectory() as directory:
                text = "\n".join(snippet["body"])
                for number, default in re.findall(r"\$\{(\d):([^}]*)\}", text):
                    text = text.replace(f"${{{number}:{default}}}", default)
                    text = text.replace(f"${{{number}}}", default)
                text = text.replace("$0", "").replace("\\\\", "\\")
                self.assertNotIn("$", text)
                program = text if "main" in text else around + text + "\n}\n"
                (pathlib.Path(directory) / "program.krl").write_text(program, encoding="utf-8")
                self.assertEqual(krel("build", "program.krl", cwd=directory),
                                 ['Compiled "program.krl" to "program".'])


class Problems(unittest.TestCase):
    """The patterns find every problem in what krel says, and nothing else."""

    def found(self, name, lines):
        pattern = next(entry for entry in PACKAGE["contributes"]["problemPatterns"]
                       if entry["name"] == name)
        found = []
        for line in lines:
            match = re.match(pattern["regexp"], line)
            if match:
                found.append({key: match.group(pattern[key]) for key in
                              ("file", "line", "column", "severity", "code", "message")
                              if key in pattern})
        return found

    def test_compiler(self):
        with tempfile.TemporaryDirectory() as name:
            program = pathlib.Path(name) / "my program.krl"
            program.write_text("void main() {\n int x = 2.5;\n print(y);\n}\n", encoding="utf-8")
            lines = krel("run", program.name, cwd=name)
            program.write_text("void main() {\n int x = @;\n}\n", encoding="utf-8")
            lines += krel("run", program.name, cwd=name)
        said = [("Semantic error", "2", "Cannot assign value of type 'double' to type 'int'."),
                ("Semantic error", "3", "Undeclared identifier: 'y'."),
                ("Lexer error", "2", "illegal character '@'")]
        found = self.found("krelcc", lines)
        self.assertEqual(found[:3], [{"file": "my program.krl", "line": line, "code": kind,
                                      "message": message} for kind, line, message in said])
        self.assertEqual([entry["code"] for entry in found[3:]], ["Syntax error"])
        self.assertEqual(len(lines), 4)

    def test_check(self):
        with tempfile.TemporaryDirectory() as name:
            program = pathlib.Path(name) / "my program.krl"
            program.write_text(FAULTY, encoding="utf-8")
            lines = krel("check", str(program), cwd=name)
        problems = self.found("krel-check", lines)
        self.assertIn({"file": str(program), "line": "2", "column": "19", "severity": "error",
                       "code": "missing-token", "message": "a semicolon is missing here"}, problems)
        self.assertIn({"file": str(program), "line": "3", "column": "9", "severity": "warning",
                       "code": "unused-variable", "message": "`unused` is never used"}, problems)
        hints = self.found("krel-hint", lines)
        places = [line for line in lines if line.startswith(str(program))]
        self.assertEqual(len(problems) + len(hints), len(places))
        self.assertEqual([entry for entry in problems if entry["severity"] == "hint"], [])

    def test_matchers_have_their_patterns(self):
        patterns = {entry["name"] for entry in PACKAGE["contributes"]["problemPatterns"]}
        for matcher in PACKAGE["contributes"]["problemMatchers"]:
            self.assertIn(matcher["pattern"].lstrip("$"), patterns)


@needs_packages
class Grammar(unittest.TestCase):
    maxDiff = None

    def tokens(self, texts):
        done = run(["node", HERE / "scopes.js", GRAMMAR], input=json.dumps(texts),
                   env={**os.environ, "NODE_PATH": str(MODULES)})
        self.assertEqual(done.stderr, "")
        return json.loads(done.stdout)

    def test_marked_programs(self):
        programs = sorted((HERE / "grammar").glob("*.krl"))
        done = run([MODULES / ".bin" / "vscode-tmgrammar-test", "-g", GRAMMAR, *programs])
        self.assertEqual((done.returncode, done.stderr), (0, ""), done.stdout)
        for program in programs:
            self.assertIn(program.name, done.stdout)

    def test_words(self):
        texts = [(group, text) for group, texts in WORDS.items() for text in texts]
        for (group, text), tokens in zip(texts, self.tokens([text for _, text in texts])):
            with self.subTest(text=text):
                self.assertEqual([token for token, _ in tokens], [text])
                self.assertTrue(tokens[0][1].startswith(WORD_SCOPES[group]), tokens)

    def test_names_that_resemble_words(self):
        words = [text for texts in WORDS.values() for text in texts if text.isalpha()]
        names = [name for word in words
                 for name in (word + "s", word + "_", word + "1", "_" + word, word.upper())]
        names = [name for name in names if name not in words]
        for name, tokens in zip(names, self.tokens(names)):
            self.assertEqual(tokens, [[name, "variable.other.krel"]])

    def test_no_other_words(self):
        listed = set()
        for pattern in json.loads(GRAMMAR.read_text(encoding="utf-8"))["repository"]["words"][
                "patterns"]:
            listed |= set(re.search(r"\(\?:([a-z|]+)\)\\b$", pattern["match"]).group(1).split("|"))
        self.assertEqual(listed, {text for texts in WORDS.values() for text in texts
                                  if text.isalpha()})


@needs_packages
class Extension(unittest.TestCase):
    maxDiff = None

    def play(self, command):
        with tempfile.TemporaryDirectory() as name:
            program = pathlib.Path(name) / "program.krl"
            program.write_text(FAULTY, encoding="utf-8")
            done = run(["node", HERE / "activate.js", FOLDER, command, program], cwd=name)
        self.assertEqual(done.stderr, "")
        return json.loads(done.stdout)

    def test_session(self):
        seen = self.play(KREL)
        self.assertEqual(seen["commands"], sorted(
            entry["command"] for entry in PACKAGE["contributes"]["commands"]))
        self.assertEqual(seen["languages"], [["krel", "file"], ["krel", "untitled"]])
        # A client that goes without a word.
        self.assertEqual((seen["serverStatus"], seen["running"]), (1, 0))
        check, execution = seen["tasks"]
        self.assertEqual((check["name"], check["problems"]),
                         ("Check program.krl", ["$krel-check", "$krel-hint"]))
        self.assertIn("[missing-token]", check["output"])
        self.assertEqual((execution["name"], execution["problems"]),
                         ("Run program.krl", ["$krelcc"]))
        self.assertIn("Syntax error in program.krl at line 3", execution["output"])
        self.assertEqual(seen["saved"], 3)
        launch = {"type": "krel", "request": "launch", "name": "Debug",
                  "program": seen["debugged"]["resolved"]["program"]}
        self.assertEqual(seen["debugged"]["resolved"], launch)
        self.assertEqual(seen["withoutConfiguration"], launch)
        self.assertIsNone(seen["debuggedWithoutProgram"])
        # The program is refused, and the adapter says so.
        self.assertIn("Syntax error in program.krl at line 3", seen["debugged"]["messages"])
        matchers = {"$" + entry["name"] for entry in PACKAGE["contributes"]["problemMatchers"]}
        self.assertEqual(matchers, {*check["problems"], *execution["problems"]})
        self.assertEqual(seen["provided"], ["run", "check", "build"])
        self.assertEqual((seen["resolved"][:2], seen["refused"]), ([True, "check"], None))
        self.assertEqual(seen["providedWithoutProgram"], [])
        self.assertEqual(seen["errors"], ["Krel: save this as a file that ends in .krl first."])

    def test_without_krel(self):
        seen = self.play("/nowhere/krel")
        self.assertIn('"/nowhere/krel lsp" does not start', seen["errors"][0])
        self.assertIn("krel.path", seen["errors"][0])


@needs_packages
class Package(unittest.TestCase):
    def test_package(self):
        with tempfile.TemporaryDirectory() as name:
            file, again = (pathlib.Path(name) / each for each in ("krel.vsix", "again.vsix"))
            for package in (file, again):
                done = run([ROOT / "script" / "package-vscode", package],
                           env={**os.environ, "KREL_NODE": str(NODE),
                                "SOURCE_DATE_EPOCH": "1700000000"})
                self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
            self.assertEqual(file.read_bytes(), again.read_bytes())
            with zipfile.ZipFile(file) as package:
                names = package.namelist()
        ours = {name for name in names if "/node_modules/" not in name}
        self.assertEqual(ours, {
            "[Content_Types].xml", "extension.vsixmanifest", "extension/LICENSE.txt",
            "extension/extension.js", "extension/language-configuration.json",
            "extension/package.json", "extension/README.md", "extension/snippets/krel.json",
            "extension/syntaxes/krel.tmLanguage.json"})
        self.assertIn("extension/node_modules/vscode-languageclient/node.js", names)
        for tool in ("@vscode/vsce", "vscode-tmgrammar-test"):
            self.assertFalse([name for name in names if f"/node_modules/{tool}/" in name])


if __name__ == "__main__":
    unittest.main()
