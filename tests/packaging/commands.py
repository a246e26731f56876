"""What the programs say themselves about their commands and options."""

import os
import re
import subprocess
from pathlib import Path

KRELCC = Path(os.environ["KRELCC"])
KREL = KRELCC.parent / "krel"


def output_of(*command):
    return subprocess.run(command, capture_output=True, text=True, check=True).stdout


def names():
    """The commands of krel."""
    section = output_of(KREL, "--help").split("Commands:\n")[1].split("\n\n")[0]
    return re.findall(r"^  (\w+)", section, re.MULTILINE)


def options(name):
    """The options of a command of krel, long and short."""
    section = output_of(KREL, name, "--help").split("Options:\n")[1]
    return {option for line in re.findall(r"^  (-.*)", section, re.MULTILINE)
            for option in re.findall(r"(?:^|[\s,])(--?[a-z-]+)", re.split(r"  +", line)[0])}


def long_options(name):
    return {option for option in options(name) if option.startswith("--")}


def long_options_of_krelcc():
    """The options of krelcc, which shows its usage when it is called without anything."""
    usage = subprocess.run([KRELCC], capture_output=True, text=True, check=False)
    return set(re.findall(r"--[a-z-]+", usage.stdout + usage.stderr))
