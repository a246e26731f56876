"""Runs krelcc on many small sources, for what it says about them.

The tests take krelcc's path from the environment variable KRELCC.
"""

import concurrent.futures
import os
import pathlib
import subprocess
import tempfile

KRELCC = pathlib.Path(os.environ["KRELCC"]).resolve()
SOURCE = "input.krl"
TIMEOUT_SECONDS = 120


def diagnostics(sources):
    """The exit status and the lines on standard error that krelcc gives for each source, in order.

    A character of a source, or of a line, stands for one byte.
    """
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        return list(pool.map(diagnose, sources))


def diagnose(source):
    with tempfile.TemporaryDirectory() as name:
        directory = pathlib.Path(name)
        (directory / SOURCE).write_bytes(source.encode("latin-1"))
        # krelcc asks for a native compiler first of all; most sources do not get as far as that.
        (directory / "gcc").touch(0o755)
        environment = {"PATH": name, "LC_ALL": "C", "ASAN_OPTIONS": "detect_leaks=0"}
        result = subprocess.run([str(KRELCC), SOURCE], cwd=directory, env=environment,
                                stdin=subprocess.DEVNULL, capture_output=True,
                                timeout=TIMEOUT_SECONDS, check=False)
    return result.returncode, result.stderr.decode("latin-1").split("\n")[:-1]


def syntax_error(line, text):
    return f"Syntax error in {SOURCE} at line {line}: {text}"
