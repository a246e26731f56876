"""A client of `krel lsp` for the tests: sends requests, waits for answers, keeps notifications.

The tests take krelcc's path from the environment variable KRELCC, and krel is the one beside it:
    KRELCC=build/release/krelcc python3 tests/tools/lsp/test_sessions.py
"""

import os
import pathlib
import sys

sys.path.append(str(pathlib.Path(__file__).resolve().parents[1]))

from messages import Server, framed  # noqa: E402 (after the path is known)

KREL = pathlib.Path(os.environ["KRELCC"]).resolve().with_name("krel")
TIMEOUT_SECONDS = 120
URI = "file:///program.krl"


class Refused(Exception):
    """A request was answered by an error."""

    def __init__(self, error):
        super().__init__(error["message"])
        self.code = error["code"]


ABILITIES = {
    "general": {"positionEncodings": ["utf-16"]},
    "workspace": {"workspaceEdit": {"documentChanges": True}},
    "textDocument": {
        "completion": {"completionItem": {"snippetSupport": True}},
        "documentSymbol": {"hierarchicalDocumentSymbolSupport": True},
        "codeAction": {"codeActionLiteralSupport": {"codeActionKind": {"valueSet": []}}},
    },
}


class Client(Server):
    """A server, and what it has said. To be closed."""

    def __init__(self, abilities=None, environment=None, **parameters):
        super().__init__([KREL, "lsp"], TIMEOUT_SECONDS, {**os.environ, **(environment or {})})
        self.notifications = []
        self.last_id = 0
        self.versions = {}
        if abilities is not None:
            self.abilities = self.request("initialize", {
                "processId": None, "rootUri": None, "capabilities": abilities, **parameters,
            })["capabilities"]
            self.notify("initialized", {})

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def send(self, message):
        self.send_bytes(framed(message))

    def receive(self):
        return self.messages.get(timeout=TIMEOUT_SECONDS)

    def start(self, method, parameters):
        """Sends a request and returns its number."""
        self.last_id += 1
        self.send({"jsonrpc": "2.0", "id": self.last_id, "method": method, "params": parameters})
        return self.last_id

    def finish(self, number):
        """Waits for the answer to a request."""
        while True:
            message = self.receive()
            assert message is not None, "the server has gone"
            if "method" in message:
                self.notifications.append(message)
                continue
            assert message["id"] == number, message
            if "error" in message:
                raise Refused(message["error"])
            return message["result"]

    def request(self, method, parameters):
        return self.finish(self.start(method, parameters))

    def notify(self, method, parameters):
        self.send({"jsonrpc": "2.0", "method": method, "params": parameters})

    # Documents

    def open(self, text, uri=URI):
        self.versions[uri] = 1
        self.notify("textDocument/didOpen", {"textDocument": {
            "uri": uri, "languageId": "krel", "version": 1, "text": text}})

    def change(self, changes, uri=URI):
        self.versions[uri] += 1
        self.notify("textDocument/didChange", {
            "textDocument": {"uri": uri, "version": self.versions[uri]},
            "contentChanges": changes})

    def diagnostics(self, uri=URI):
        """The diagnostics of a document's last version."""
        while True:
            for message in self.notifications:
                parameters = message["params"]
                if (message["method"] == "textDocument/publishDiagnostics"
                        and parameters["uri"] == uri
                        and parameters.get("version") == self.versions.get(uri)):
                    self.notifications.remove(message)
                    return parameters["diagnostics"]
            message = self.receive()
            assert message is not None, "the server has gone"
            assert "method" in message, message
            self.notifications.append(message)

    def ask(self, method, uri=URI, **parameters):
        """A request about a document."""
        return self.request("textDocument/" + method,
                            {"textDocument": {"uri": uri}, **parameters})

    def end(self):
        """Ends the session as the protocol says; returns the exit status."""
        self.request("shutdown", None)
        self.notify("exit", None)
        return self.process.wait(TIMEOUT_SECONDS)


# Places. They are computed here in another way than in the server: from the text itself.

def units(text, encoding):
    """How many columns a piece of a line takes."""
    if encoding == "utf-16":
        return len(text.encode("utf-16-le")) // 2
    return len(text.encode()) if encoding == "utf-8" else len(text)


def position_of(text, index, encoding):
    """The place of the character of that number."""
    before = text[:index]
    line = before.count("\n")
    return {"line": line,
            "character": units(before[before.rfind("\n") + 1:], encoding)}


def range_of(text, begin, end, encoding):
    return {"start": position_of(text, begin, encoding),
            "end": position_of(text, end, encoding)}


def index_of(text, position, encoding):
    """The number of the character at a place."""
    begin = 0
    for _ in range(position["line"]):
        begin = text.index("\n", begin) + 1
    end = begin
    while units(text[begin:end], encoding) < position["character"]:
        end += 1
    return end


def edited(text, edits, encoding):
    """A text with TextEdits carried out."""
    places = sorted(((index_of(text, edit["range"]["start"], encoding),
                      index_of(text, edit["range"]["end"], encoding), edit["newText"])
                     for edit in edits), reverse=True)
    for begin, end, new in places:
        text = text[:begin] + new + text[end:]
    return text
