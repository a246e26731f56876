#!/usr/bin/env python3
"""The Debian package and the tarball, made of this build: what is in them, and that it works where
it was unpacked. In systems of their own, script/package-test tries them."""

import os
import re
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

import commands

ROOT = Path(__file__).resolve().parents[2]
BUILD = commands.KREL.parent

# What has to be in both, below the prefix; "*" stands for more.
CONTENTS = """
bin/krel bin/krelcc
lib/krelcc/krel lib/krelcc/krelcc lib/krelcc/native/gcc lib/krelcc/codegen/runtime.o
lib/cmake/krel/krelConfig.cmake share/krelcc/krel.mk share/krelcc/krel.ninja
share/man/man1/krelcc.1.gz share/man/man1/krel.1.gz share/man/man1/krel-check.1.gz
share/man/man7/krel.7.gz
share/bash-completion/completions/krel share/bash-completion/completions/krelcc
share/zsh/vendor-completions/_krel share/zsh/vendor-completions/_krelcc
share/fish/vendor_completions.d/krel.fish share/fish/vendor_completions.d/krelcc.fish
share/vim/vimfiles/syntax/krel.vim share/vim/vimfiles/ftdetect/krel.vim
share/nvim/site/ftplugin/krel.lua share/nvim/site/lua/krel.lua
share/doc/krelcc/README.md share/doc/krelcc/docs/language.md
share/doc/krelcc/examples/primes.krl share/doc/krelcc/examples/expected/primes.out
share/doc/krelcc/examples/build-rules/cmake/CMakeLists.txt
""".split()


def reason_to_skip():
    cache = (BUILD / "CMakeCache.txt").read_text()
    if re.search(r"(?m)^KREL_(SANITIZE|COVERAGE):BOOL=ON$", cache):
        return "this build is not one to hand out"
    return None


class Package(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        if reason := reason_to_skip():
            raise unittest.SkipTest(reason)
        place = tempfile.TemporaryDirectory()
        cls.addClassCleanup(place.cleanup)
        cls.folder = Path(place.name)
        subprocess.run(["cpack", "--config", BUILD / "CPackConfig.cmake", "-B", cls.folder,
                        "-D", f"CPACK_OUTPUT_FILE_PREFIX={cls.folder}"],
                       check=True, capture_output=True, cwd=cls.folder, umask=0o022,
                       env=os.environ | {"SOURCE_DATE_EPOCH": "1700000000"})
        cls.package = next(cls.folder.glob("*.deb"))
        cls.tarball = next(cls.folder.glob("*.tar.gz"))
        cls.from_package = cls.unpacked("dpkg-deb", "-x", cls.package) / "usr"
        cls.from_tarball = cls.unpacked("tar", "--strip-components=1", "-xzf", cls.tarball, "-C")

    @classmethod
    def unpacked(cls, *command):
        folder = cls.folder / command[0]
        folder.mkdir()
        subprocess.run([*command, folder], check=True)
        return folder

    def test_contents(self):
        for prefix in (self.from_package, self.from_tarball):
            for name in CONTENTS:
                with self.subTest(prefix=prefix.name, name=name):
                    self.assertTrue((prefix / name).is_file())

    def test_license(self):
        self.assertIn("Permission is hereby granted",
                      (self.from_tarball / "share/doc/krelcc/LICENSE").read_text())
        copyright_file = (self.from_package / "share/doc/krelcc/copyright").read_text()
        self.assertIn("License: Expat\n Permission is hereby granted", copyright_file)
        self.assertIn("\n .\n The above copyright notice", copyright_file)

    def test_they_work(self):
        for prefix in (self.from_package, self.from_tarball):
            with self.subTest(prefix=prefix.name):
                run = subprocess.run([ROOT / "packaging/try-out", prefix], capture_output=True,
                                     text=True, check=False,
                                     env=os.environ | {"PATH": f"{prefix}/bin:/usr/bin:/bin"})
                self.assertEqual((run.returncode, run.stdout, run.stderr), (0, "", ""))

    @unittest.skipUnless(shutil.which("emacs"), "there is no emacs")
    def test_emacs_finds_its_mode(self):
        folder = self.from_package / "share/emacs/site-lisp/elpa"
        shown = self.output_of(
            "emacs", "-Q", "--batch", "--eval",
            f"(progn (require 'package) (setq package-directory-list '(\"{folder}\"))"
            "(package-initialize) (find-file \"some.krl\") (princ major-mode))")
        self.assertEqual(shown, "krel-mode")

    def test_vim_and_neovim_find_their_files(self):
        for editor, folder in (("vim", "vim/vimfiles"), ("nvim", "nvim/site")):
            if not shutil.which(editor):
                continue
            with self.subTest(editor=editor):
                result = self.folder / editor
                self.output_of(
                    editor, "-u", "NONE", "-i", "NONE", "-es", "-n", "--not-a-term"
                    if editor == "vim" else "--headless",
                    "--cmd", f"set nocompatible rtp^={self.from_package}/share/{folder}",
                    "-c", "filetype plugin indent on", "-c", "syntax on", "-c", "edit some.krl",
                    "-c", f"call writefile([&filetype, b:current_syntax], '{result}')",
                    "-c", "qa!")
                self.assertEqual(result.read_text().split(), ["krel", "krel"])

    def output_of(self, *command):
        return subprocess.run(command, check=True, capture_output=True, text=True,
                              cwd=self.folder, env=os.environ | {"HOME": str(self.folder)},
                              stdin=subprocess.DEVNULL, timeout=60).stdout

    def test_lintian(self):
        run = subprocess.run(["lintian", "--allow-root", "--fail-on", "error,warning,info",
                              self.package], capture_output=True, text=True, check=False)
        self.assertEqual((run.returncode, run.stdout), (0, ""), run.stderr)

    def test_what_it_needs(self):
        fields = subprocess.run(["dpkg-deb", "-f", self.package], check=True, capture_output=True,
                                text=True).stdout
        self.assertNotIn("\nDepends:", fields)
        self.assertIn("\nRecommends: gcc | clang\n", fields)

    def test_files_bear_the_time_they_are_given(self):
        for prefix in (self.from_package, self.from_tarball):
            for path in prefix.rglob("*"):
                if path.is_file() and not path.is_symlink():
                    self.assertEqual(path.stat().st_mtime, 1700000000, path)


if __name__ == "__main__":
    unittest.main()
