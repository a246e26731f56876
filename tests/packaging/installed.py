"""An installation of its own for tests: what cmake --install puts below a prefix."""

import subprocess
import tempfile
from pathlib import Path

import commands

ROOT = Path(__file__).resolve().parents[2]
SAMPLES = ROOT / "examples" / "build-rules"


class Installation:
    """The prefix of an installation in a temporary folder, which ends with the test class."""

    def __init__(self, test_class):
        place = tempfile.TemporaryDirectory()
        test_class.addClassCleanup(place.cleanup)
        self.prefix = Path(place.name) / "prefix"
        subprocess.run(["cmake", "--install", commands.KREL.parent, "--prefix", self.prefix],
                       check=True, capture_output=True)
