"""Plays an editor for `krel debug`: how long steps take, forward and back. Times are wall time, as
the user feels it, from the request to the event that says where the program stands.
"""

import json
import pathlib
import statistics
import subprocess
import tempfile
import time

import program

LINES = 1_000
SEED = 1
STEPS = 200
BACK_STEPS = 40
# Each round of the inner loop takes five lines of the intermediate code.
LONG_ROUNDS = 2_000_000
LONG = f"""int work(int rounds) {{
    int sum = 0;
    int i = 0;
    while (i < rounds) {{
        i = i + 1;
    }}
    return sum;
}}

void main() {{
    int n = 0;
    int i = 0;
    while (i < {LONG_ROUNDS}) {{
        i++;
    }}
    n = 1;
    n = work({LONG_ROUNDS});
    print(n);
}}
"""
AFTER_LOOP, AFTER_CALL = 16, 18


class Editor:
    """An adapter with a program that stands at its first line. To be closed."""

    def __init__(self, krel, text):
        self.adapter = subprocess.Popen([krel, "debug"], stdin=subprocess.PIPE,
                                        stdout=subprocess.PIPE)
        with tempfile.TemporaryDirectory() as name:
            self.path = pathlib.Path(name) / "program.krl"
            self.path.write_text(text, encoding="utf-8")
            self.request("initialize")
            self.request("launch", program=str(self.path), stopOnEntry=True, allow=["all"])
        self.request("setExceptionBreakpoints", filters=[])
        self.wait_until("configurationDone")

    def close(self):
        self.adapter.kill()
        self.adapter.stdin.close()
        self.adapter.stdout.close()
        self.adapter.wait()

    def send(self, command, arguments):
        body = json.dumps({"seq": 1, "type": "request", "command": command,
                           "arguments": arguments}).encode()
        self.adapter.stdin.write(b"Content-Length: %d\r\n\r\n%s" % (len(body), body))
        self.adapter.stdin.flush()

    def receive(self):
        length = 0
        for line in iter(self.adapter.stdout.readline, b"\r\n"):
            name, value = line.split(b":")
            length = int(value) if name == b"Content-Length" else length
        return json.loads(self.adapter.stdout.read(length))

    def request(self, command, **arguments):
        self.send(command, arguments)
        while (message := self.receive())["type"] != "response":
            pass
        if not message["success"]:
            raise RuntimeError(f"krel debug answered {message}")
        return message["body"]

    def wait_until(self, command):
        """Milliseconds from the request until the program stands; None when it has ended."""
        start = time.perf_counter()
        self.send(command, {"threadId": 1})
        while (message := self.receive()).get("event") not in ("stopped", "terminated"):
            pass
        took = (time.perf_counter() - start) * 1e3
        return took if message["event"] == "stopped" else None

    def stop_at(self, line):
        self.request("setBreakpoints", source={"path": str(self.path)},
                     breakpoints=[{"line": line}])

    def line(self):
        return self.request("stackTrace", threadId=1, levels=1)["stackFrames"][0]["line"]

    def peak(self):
        """KB of memory at most."""
        status = pathlib.Path(f"/proc/{self.adapter.pid}/status").read_text(encoding="ascii")
        return int(status.split("VmHWM:")[1].split()[0])


def steps(krel):
    """Milliseconds of steps through a program of 1,000 lines; half of them go into functions."""
    text, _ = program.generate(lines=LINES, seed=SEED)
    editor = Editor(krel, text)
    times = []
    while len(times) < STEPS:
        took = editor.wait_until("stepIn" if len(times) % 2 else "next")
        if took is None:
            break
        times.append(took)
    editor.close()
    return times


def require_line(editor, line):
    if editor.line() != line:
        raise RuntimeError(f"krel debug stands in line {editor.line()} instead of {line}")


def back(krel):
    """(running on, steps back over lines, back over a loop, back over a call): milliseconds after
    10 million steps; and the peak memory."""
    editor = Editor(krel, LONG)
    editor.stop_at(AFTER_LOOP)
    on = editor.wait_until("continue")
    require_line(editor, AFTER_LOOP)
    times = [editor.wait_until("stepBack") for _ in range(BACK_STEPS)]
    require_line(editor, 13 if BACK_STEPS % 2 else 14)
    for _ in range(BACK_STEPS):
        times.append(editor.wait_until("next"))
        times.append(editor.wait_until("stepBack"))
    whole = editor.wait_until("reverseContinue")
    require_line(editor, 11)
    editor.stop_at(AFTER_CALL)
    editor.wait_until("continue")
    call = editor.wait_until("stepBack")
    require_line(editor, AFTER_CALL - 1)
    peak = editor.peak()
    editor.close()
    return on, times, whole, call, peak


def measure(krel):
    """(what, target, milliseconds); the targets are for the slowest."""
    forward = steps(krel)
    on, times, whole, call, peak = back(krel)
    print(f"\nkrel debug: {len(forward)} steps through 1k lines, median"
          f" {statistics.median(forward):.2f} ms; 10 million steps in {on:.0f} ms, {len(times)}"
          f" steps around there, median {statistics.median(times):.2f} ms; back to the beginning"
          f" {whole:.0f} ms; back over a call of 10 million steps {call:.0f} ms;"
          f" peak memory {peak / 1024:.0f} MB", flush=True)
    return [("krel debug, slowest step, 1k lines, ms", 5.0, max(forward)),
            ("krel debug, slowest step back after 10 million, ms", 100.0, max(times)),
            ("krel debug, back over a call of 10 million, ms", None, call)]
