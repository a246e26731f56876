#!/usr/bin/env python3
"""script/release, in a repository of its own whose script/package makes other files at once."""

import hashlib
import os
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
CMAKE = "cmake_minimum_required(VERSION 3.25)\nproject(krelcc VERSION 0.1.0)\n"
CHANGELOG = "## [0.2.0] - Unreleased\n\n- New.\n\n## [0.1.0] - 2026-01-01\n\n- Old.\n"
PACKAGE = """#!/bin/sh
set -e
cd "$(dirname "$0")/.."
mkdir -p build/package/packages
head -2 CMakeLists.txt >build/package/packages/krelcc.deb
echo "$SOURCE_DATE_EPOCH" >>build/package/packages/krelcc.deb
"""
IDENTITY = {f"GIT_{who}_{what}": "test" for who in ("AUTHOR", "COMMITTER")
            for what in ("NAME", "EMAIL")}


class Release(unittest.TestCase):
    def setUp(self):
        place = tempfile.TemporaryDirectory()
        self.addCleanup(place.cleanup)
        self.folder = Path(place.name)
        self.write("CMakeLists.txt", CMAKE)
        self.write("CHANGELOG.md", CHANGELOG)
        self.write(".gitignore", "/build/\n")
        self.write("script/package", PACKAGE)
        (self.folder / "script/package").chmod(0o755)
        shutil.copy(ROOT / "script/release", self.folder / "script/release")
        self.git("init", "-q")
        self.commit()

    def write(self, name, text):
        path = self.folder / name
        path.parent.mkdir(exist_ok=True)
        path.write_text(text)

    def git(self, *words):
        return subprocess.run(["git", *words], cwd=self.folder, check=True, capture_output=True,
                              text=True, env=os.environ | IDENTITY).stdout

    def commit(self):
        self.git("add", "-A")
        self.git("commit", "-q", "-m", "some")

    def release(self, *words):
        return subprocess.run([self.folder / "script/release", *words], capture_output=True,
                              text=True, check=False, env=os.environ | IDENTITY)

    def assert_refused(self, message, *words):
        before = self.git("rev-parse", "HEAD"), self.git("tag"), self.git("status", "--porcelain")
        run = self.release(*words)
        self.assertEqual(run.returncode, 1)
        self.assertIn(message, run.stderr)
        self.assertEqual(before, (self.git("rev-parse", "HEAD"), self.git("tag"),
                                  self.git("status", "--porcelain")))

    def test_a_release(self):
        run = self.release("0.2.0")
        self.assertEqual(run.returncode, 0, run.stderr)
        day = self.git("log", "-1", "--format=%cs", "--date=iso").strip()
        self.assertIn("project(krelcc VERSION 0.2.0)", (self.folder / "CMakeLists.txt").read_text())
        self.assertEqual((self.folder / "CHANGELOG.md").read_text(),
                         CHANGELOG.replace("Unreleased", day))
        self.assertEqual(self.git("tag"), "v0.2.0\n")
        self.assertEqual(self.git("status", "--porcelain"), "")
        target = self.folder / "build/release-0.2.0"
        self.assertEqual(sorted(path.name for path in target.iterdir()),
                         ["SHA256SUMS", "krelcc.deb"])
        package = (target / "krelcc.deb").read_bytes()
        self.assertIn(b"VERSION 0.2.0", package)
        self.assertEqual((target / "SHA256SUMS").read_text(),
                         f"{hashlib.sha256(package).hexdigest()}  krelcc.deb\n")

    def test_the_first_release_keeps_the_version(self):
        self.write("CHANGELOG.md", "## [0.1.0] - Unreleased\n")
        self.commit()
        self.assertEqual(self.release("0.1.0").returncode, 0)
        self.assertEqual(self.git("tag"), "v0.1.0\n")

    def test_wrong_versions(self):
        for words in ((), ("",), ("0.2",), ("v0.2.0",), ("0.2.0-rc1",), ("0.2.0", "0.3.0")):
            with self.subTest(words=words):
                self.assert_refused("three numbers", *words)

    def test_a_version_without_a_section(self):
        self.assert_refused("no section '## [0.3.0] - Unreleased'", "0.3.0")

    def test_a_version_that_was_released(self):
        self.git("tag", "v0.2.0")
        self.assert_refused("v0.2.0 is there already", "0.2.0")

    def test_changes_that_are_not_committed(self):
        self.write("CMakeLists.txt", CMAKE + "# more\n")
        self.assert_refused("not committed", "0.2.0")
        self.commit()
        self.write("new", "some\n")
        self.assert_refused("not committed", "0.2.0")

    def test_a_build_that_fails(self):
        self.write("script/package", "#!/bin/sh\necho some fault; exit 1\n")
        self.commit()
        self.assert_refused("some fault", "0.2.0")

    def test_builds_that_differ(self):
        self.write("script/package", PACKAGE + "pwd >>build/package/packages/krelcc.deb\n")
        self.commit()
        self.assert_refused("two builds of the same sources differ", "0.2.0")


if __name__ == "__main__":
    unittest.main()
