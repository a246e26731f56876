#!/usr/bin/env python3
"""Makes the package of the extension for VS Code, which is the same for the same sources.

Usage: extension.py VERSION OUTPUT.vsix

npm's packages come from the folder that the environment variable KREL_NODE names, or from
build/editors/node, where script/bootstrap puts them: those that are only for tests and for
packaging are left out. The files in the package bear the time that SOURCE_DATE_EPOCH says.
"""

import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import time
import zipfile

ROOT = pathlib.Path(__file__).resolve().parents[1]
NODE = pathlib.Path(os.environ.get("KREL_NODE", ROOT / "build" / "editors" / "node"))
MODULES = NODE.absolute() / "node_modules"


def pack(version, output):
    """Lets the packager make the package of a copy: it takes all that lies below a folder."""
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name, "extension")
        shutil.copytree(ROOT / "editors" / "vscode", folder)
        shutil.copy(ROOT / "LICENSE", folder)
        shutil.copytree(MODULES, folder / "node_modules", symlinks=True)
        subprocess.run([MODULES / ".bin" / "vsce", "package", version, "--no-git-tag-version",
                        "--no-update-package-json", "--allow-missing-repository",
                        "--out", output.absolute()], cwd=folder, check=True, stdout=sys.stderr)


def set_times(package, seconds):
    """Gives all files in an archive the same time, which must not lie before 1980."""
    moment = time.gmtime(seconds)[:6]
    with zipfile.ZipFile(package) as archive:
        files = [(info.filename, archive.read(info)) for info in archive.infolist()]
    with zipfile.ZipFile(package, "w", zipfile.ZIP_DEFLATED) as archive:
        for name, content in sorted(files):
            info = zipfile.ZipInfo(name, moment)
            info.compress_type = zipfile.ZIP_DEFLATED
            info.external_attr = 0o644 << 16
            archive.writestr(info, content)


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    if not (MODULES / ".complete").exists():
        sys.exit("extension.py: npm's packages are missing; script/bootstrap vscode tells why")
    output = pathlib.Path(sys.argv[2])
    pack(sys.argv[1], output)
    set_times(output, int(os.environ.get("SOURCE_DATE_EPOCH", time.time())))


if __name__ == "__main__":
    main()
