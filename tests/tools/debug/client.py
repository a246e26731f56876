"""A client of `krel debug` for the tests: sends requests, waits for answers, keeps events.

The tests take krelcc's path from the environment variable KRELCC, and krel is the one beside it:
    KRELCC=build/release/krelcc python3 tests/tools/debug/test_adapter.py
"""

import os
import pathlib
import sys
import tempfile

sys.path.append(str(pathlib.Path(__file__).resolve().parents[1]))

from messages import Server, framed  # noqa: E402 (after the path is known)

KREL = pathlib.Path(os.environ["KRELCC"]).resolve().with_name("krel")
TIMEOUT_SECONDS = 120


class Refused(Exception):
    """A request was answered by a failure."""


class Client(Server):
    """An adapter, and what it has said. To be closed."""

    def __init__(self, text=None, *words):
        self.directory = tempfile.TemporaryDirectory()
        self.path = str(pathlib.Path(self.directory.name) / "program.krl")
        if text is not None:
            self.write(text)
        super().__init__([KREL, "debug", *words], TIMEOUT_SECONDS)
        self.events = []
        self.last_number = 0
        self.output = ""
        self.said = ""  # on the console

    def write(self, text):
        data = text if isinstance(text, bytes) else text.encode()
        pathlib.Path(self.path).write_bytes(data)

    def close(self):
        super().close()
        self.directory.cleanup()

    def receive(self):
        """The next message that is no output."""
        while True:
            message = self.messages.get(timeout=TIMEOUT_SECONDS)
            assert message is not None, "the adapter has gone: " + self.complaint()
            if message.get("event") != "output":
                return message
            body = message["body"]
            if body["category"] == "stdout":
                self.output += body["output"]
            else:
                self.said += body["output"]

    def complaint(self):
        self.process.wait(TIMEOUT_SECONDS)
        return self.process.stderr.read().decode()

    def start(self, command, arguments):
        """Sends a request and returns its number."""
        self.last_number += 1
        self.send_bytes(framed({"seq": self.last_number, "type": "request", "command": command,
                                "arguments": arguments}))
        return self.last_number

    def finish(self, number):
        """Waits for the answer to a request."""
        while True:
            message = self.receive()
            if message["type"] == "event":
                self.events.append(message)
                continue
            assert message["request_seq"] == number, message
            if not message["success"]:
                raise Refused(message["message"])
            return message["body"]

    def request(self, command, **arguments):
        return self.finish(self.start(command, arguments))

    def event(self, *names):
        """Waits for an event of one of these names; returns its body with its name."""
        while True:
            for message in self.events:
                if message["event"] in names:
                    self.events.remove(message)
                    return {"event": message["event"], **message["body"]}
            self.events.append(self.receive())

    # Sessions

    def launch(self, breakpoints=(), functions=(), filters=("faults",), **arguments):
        """Begins a session; returns what the adapter says of the breakpoints on lines."""
        self.capabilities = self.request("initialize", adapterID="krel")
        self.request("launch", program=self.path, **arguments)
        self.event("initialized")
        answer = self.breakpoints(*breakpoints)
        if functions:
            self.request("setFunctionBreakpoints", breakpoints=list(functions))
        self.request("setExceptionBreakpoints", filters=list(filters))
        self.request("configurationDone")
        return answer

    def breakpoints(self, *wanted):
        """Sets breakpoints: lines, or whole SourceBreakpoints."""
        return self.request("setBreakpoints", source={"path": self.path}, breakpoints=[
            {"line": each} if isinstance(each, int) else each for each in wanted])["breakpoints"]

    def stopped(self):
        """Waits until the program stands still; returns the event's body."""
        body = self.event("stopped", "terminated")
        assert body["event"] == "stopped", "the program has ended"
        return body

    def go(self, command, **arguments):
        """Goes on, or back; returns the reason for stopping and the line."""
        self.request(command, threadId=1, **arguments)
        return self.stopped()["reason"], self.line()

    def ended(self):
        """Waits for the end of the program; returns its exit status."""
        body = self.event("exited", "stopped")
        assert body["event"] == "exited", body
        self.event("terminated")
        return body["exitCode"]

    def frames(self, **arguments):
        return self.request("stackTrace", threadId=1, **arguments)["stackFrames"]

    def line(self):
        return self.frames(levels=1)[0]["line"]

    def scope(self, name="Variables", frame=1):
        """What a scope holds, as JSON; None when there is no such scope."""
        for scope in self.request("scopes", frameId=frame)["scopes"]:
            if scope["name"] == name:
                return self.children(scope["variablesReference"])
        return None

    def children(self, reference, **arguments):
        return self.request("variables", variablesReference=reference, **arguments)["variables"]

    def variables(self, frame=1):
        """Names and values of the variables of a call."""
        return {each["name"]: each["value"] for each in self.scope(frame=frame)}

    def evaluate(self, expression, frame=1, **arguments):
        return self.request("evaluate", expression=expression, frameId=frame,
                            **arguments)["result"]

    def disconnect(self):
        """Ends the session; returns the exit status."""
        self.request("disconnect")
        return self.process.wait(TIMEOUT_SECONDS)
