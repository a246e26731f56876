"""The native compiler that the tests have their programs built by.

That is the first on the search path. With the environment variable KREL_TEST_NATIVE it is the `gcc`
in the folder that it names: our own native build. What that one does not know, it leaves to the
next compiler, whose executables do their work just as well. So it has to be seen that an executable
is really one of its own: those need no interpreter.
"""

import os
import pathlib
import struct

FOLDER = os.environ.get("KREL_TEST_NATIVE")
if FOLDER is not None:
    FOLDER = str(pathlib.Path(FOLDER).resolve(strict=True))

PT_INTERP = 3


def environment():
    """The environment in which krelcc finds the native compiler."""
    if FOLDER is None:
        return dict(os.environ)
    return {**os.environ, "PATH": f"{FOLDER}:{os.environ['PATH']}"}


def needs_interpreter(executable):
    """Whether a program is started by way of another one, as those of the C library are."""
    content = pathlib.Path(executable).read_bytes()
    table, = struct.unpack_from("<Q", content, 32)
    size, count = struct.unpack_from("<HH", content, 54)
    types = [struct.unpack_from("<I", content, table + size * number)[0] for number in range(count)]
    return PT_INTERP in types


def is_by_other(executable):
    """Whether an executable should come from our own native build, and does not."""
    return FOLDER is not None and needs_interpreter(executable)
