"""Plays an editor for `krel lsp`: how long it takes from an edit to the diagnostics, and what the
server's memory does while one goes on typing. Times are wall time, as the user feels it.
"""

import collections
import json
import os
import pathlib
import random
import statistics
import subprocess
import time

import program

# Milliseconds until the program was open, and of each edit; CPU milliseconds of an edit on average;
# KB of memory after a tenth of the edits, and at the end.
Session = collections.namedtuple("Session", "opening times cpu early late")

URI = "file:///program.krl"
SEED = 1


class Editor:
    """A server with one program open. To be closed."""

    def __init__(self, krel, text):
        self.lines = text.split("\n")
        self.server = subprocess.Popen([krel, "lsp"], stdin=subprocess.PIPE,
                                       stdout=subprocess.PIPE)
        self.version = 0
        self.send("initialize", {"processId": None, "rootUri": None, "capabilities": {
            "general": {"positionEncodings": ["utf-16"]}}}, number=1)
        self.receive()
        self.send("initialized", {})
        self.opening = self.timed("textDocument/didOpen", {"textDocument": {
            "uri": URI, "languageId": "krel", "version": 0, "text": text}})

    def close(self):
        self.server.stdin.close()
        self.server.stdout.close()
        self.server.wait()

    def send(self, method, parameters, number=None):
        message = {"jsonrpc": "2.0", "method": method, "params": parameters}
        if number is not None:
            message["id"] = number
        body = json.dumps(message).encode()
        self.server.stdin.write(b"Content-Length: %d\r\n\r\n%s" % (len(body), body))
        self.server.stdin.flush()

    def receive(self):
        length = 0
        for line in iter(self.server.stdout.readline, b"\r\n"):
            name, value = line.split(b":")
            length = int(value) if name == b"Content-Length" else length
        return self.server.stdout.read(length)

    def timed(self, method, parameters):
        """Milliseconds from the notification to the diagnostics of this version."""
        start = time.perf_counter()
        self.send(method, parameters)
        answer = self.receive()
        took = (time.perf_counter() - start) * 1e3
        message = json.loads(answer)
        if message["params"].get("version") != self.version:
            raise RuntimeError(f"krel lsp answered {answer[:500]}")
        return took

    def replace(self, line, begin, end, text):
        """Types over a piece of a line; gives the milliseconds until the diagnostics are there."""
        old = self.lines[line]
        self.lines[line] = old[:begin] + text + old[end:]
        self.version += 1
        return self.timed("textDocument/didChange", {
            "textDocument": {"uri": URI, "version": self.version},
            "contentChanges": [{"range": {"start": {"line": line, "character": begin},
                                          "end": {"line": line, "character": end}},
                                "text": text}]})

    def cpu(self):
        """The milliseconds of CPU time that the server has taken."""
        fields = pathlib.Path(f"/proc/{self.server.pid}/stat").read_text(encoding="ascii")
        user, system = fields.rpartition(")")[2].split()[11:13]
        return (int(user) + int(system)) * 1e3 / os.sysconf("SC_CLK_TCK")

    def memory(self):
        """What the server holds, in KB."""
        status = pathlib.Path(f"/proc/{self.server.pid}/status").read_text(encoding="ascii")
        return next(int(line.split()[1]) for line in status.splitlines()
                    if line.startswith("VmRSS:"))


def type_somewhere(editor, generator):
    """Four edits at a random statement: its semicolon goes, a digit is in its place, that goes, and
    the semicolon is there again. Gives the milliseconds of each."""
    while True:
        line = generator.randrange(len(editor.lines))
        at = editor.lines[line].find(";")
        if at >= 0:
            break
    return [editor.replace(line, at, at + 1, ""), editor.replace(line, at, at, "1"),
            editor.replace(line, at, at + 1, ""), editor.replace(line, at, at, ";")]


def session(krel, lines, edits):
    """So many edits of a program."""
    text, _ = program.generate(lines=lines, seed=SEED)
    editor = Editor(krel, text)
    try:
        generator = random.Random(SEED)
        times = []
        early = None
        before = editor.cpu()
        while len(times) < edits:
            times += type_somewhere(editor, generator)
            if early is None and len(times) * 10 >= edits:
                early = editor.memory()
        return Session(editor.opening, times, (editor.cpu() - before) / len(times), early,
                       editor.memory())
    finally:
        editor.close()


def median_and_p95(times):
    return statistics.median(times), statistics.quantiles(times, n=20)[-1]
