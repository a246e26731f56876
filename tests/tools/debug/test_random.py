#!/usr/bin/env python3
"""Random programs, stepped forward and back: what one sees at a place is the same both ways, each
line is one that can have done what was done there, and the output comes once.

    KREL_SEED=5000 KREL_PROGRAMS=500 KREL_STEPS=200 python3 tests/tools/debug/test_random.py
"""

import os
import pathlib
import random
import re
import subprocess
import sys
import unittest

from client import KREL, TIMEOUT_SECONDS, Client

HERE = pathlib.Path(__file__).resolve().parent
sys.path.append(str(HERE.parents[1] / "soak"))

import generator  # noqa: E402 (after the path is known)

SEED = int(os.environ.get("KREL_SEED", "0"))
PROGRAMS = int(os.environ.get("KREL_PROGRAMS", "25"))
STEPS = int(os.environ.get("KREL_STEPS", "120"))


def answers(path, commands):
    """What a terminal session answers to each of these commands."""
    ran = subprocess.run([KREL, "debug", "--tty", "--allow=all", path],
                         input="\n".join(commands).encode() + b"\n",
                         capture_output=True, timeout=TIMEOUT_SECONDS, check=True)
    parts = ran.stdout.decode("latin-1").split("(krel) ")[1:]
    return [part.split("\n", 1)[1] if "\n" in part else "" for part in parts[:-1]]


class RandomPrograms(unittest.TestCase):
    def client(self, text):
        client = Client(text)
        self.addCleanup(client.close)
        return client

    def test_lines_forward_and_back(self):
        for number in range(SEED, SEED + PROGRAMS):
            source, _ = generator.generate(number)
            client = self.client(source)
            look = ["vars", "stack"]
            found = answers(client.path, ["start", *look] + ["step", *look] * STEPS
                            + ["rstep", *look] * STEPS)
            client.close()
            looks = list(zip(found[1::3], found[2::3]))
            forward, back = looks[:STEPS + 1], looks[STEPS + 1:]
            if "the program has ended" in "".join(found[::3]):
                ends = [index for index, answer in enumerate(found[::3])
                        if "the program has ended" in answer]
                forward = forward[:ends[0]]
                self.assertEqual(back[:len(forward)], forward[::-1], f"seed {number}")
            else:
                self.assertEqual(back, forward[-2::-1], f"seed {number}")
            self.check_lines(source.decode("latin-1").split("\n"), forward, number)

    def check_lines(self, lines, looks, number):
        """From one stop to the next of the same call only what its line names can have changed.
        Behind a return the function may have been called once more."""
        before = None
        for variables, stack in looks:
            line = int(re.match(r"> 0 \w+ at .*:(\d+)\n", stack).group(1))
            text = lines[line - 1]
            self.assertTrue(text.strip(), f"seed {number}: line {line} is empty")
            values = dict(re.findall(r"(?m)^\S+ (\w+) = (.*)$", variables))
            calls = stack.split("\n", 1)[1]
            function = stack.split()[2]
            left = before is None or before[3].strip().startswith(("return", "}"))
            if not left and before[:2] == (function, calls):
                for name, value in values.items():
                    if value != before[2].get(name):
                        self.assertRegex(before[3], rf"\b{name}\b",
                                         f"seed {number}: {name} has changed before line {line}")
            before = (function, calls, values, text)

    def test_instructions_forward_and_back(self):
        for number in range(SEED, SEED + PROGRAMS // 5):
            source, expected = generator.generate(number)
            client = self.client(source)
            client.launch(stopOnEntry=True, allow=["all"])
            client.stopped()
            chance = random.Random(number)
            places = []
            for _ in range(STEPS // 4):
                places.append(self.look(client))
                client.request("stepIn", threadId=1, granularity="instruction")
                client.stopped()
            for _ in range(10):
                # Back by some, on by some, and back to where all of them are known.
                back = chance.randrange(1, len(places) + 1)
                for place in places[:-back - 1:-1]:
                    client.request("stepBack", threadId=1, granularity="instruction")
                    client.stopped()
                    self.assertEqual(self.look(client), place, f"seed {number}")
                for place in places[len(places) - back:]:
                    self.assertEqual(self.look(client), place, f"seed {number}")
                    client.request("stepIn", threadId=1, granularity="instruction")
                    client.stopped()
            client.request("continue", threadId=1)
            self.assertEqual(client.ended(), 0, f"seed {number}")
            self.assertEqual(client.output, expected.decode(errors="replace"), f"seed {number}")
            client.close()

    @staticmethod
    def look(client):
        frames = client.frames()
        return ([(frame["name"], frame["line"], frame["instructionPointerReference"])
                 for frame in frames], client.variables(),
                {each["name"]: each["value"] for each in client.scope("Temporaries")})

    def test_breakpoints_forward_and_back(self):
        """Hits are found in the opposite order on the way back."""
        for number in range(SEED, SEED + PROGRAMS // 5):
            source, expected = generator.generate(number)
            client = self.client(source)
            chance = random.Random(number)
            count = source.count(b"\n")
            client.launch(breakpoints=[chance.randrange(1, count) for _ in range(4)],
                          stopOnEntry=True, allow=["all"])
            client.stopped()
            seen = []
            ended = False
            while len(seen) < STEPS // 4 and not ended:
                client.request("continue", threadId=1)
                body = client.event("stopped", "exited")
                ended = body["event"] == "exited"
                if not ended:
                    seen.append(self.look(client))
            if not ended:
                for place in seen[-2::-1]:
                    client.request("reverseContinue", threadId=1)
                    client.stopped()
                    self.assertEqual(self.look(client), place, f"seed {number}")
                client.breakpoints()
                client.request("continue", threadId=1)
                self.assertEqual(client.ended(), 0)
            self.assertEqual(client.output, expected.decode(errors="replace"), f"seed {number}")
            client.close()


if __name__ == "__main__":
    unittest.main()
