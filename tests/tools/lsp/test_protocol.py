#!/usr/bin/env python3
"""The server and clients that are odd, wrong or gone: messages, order, ends, cancelling."""

import json
import os
import pathlib
import subprocess
import tempfile
import unittest

from client import ABILITIES, KREL, TIMEOUT_SECONDS, URI, Client, Refused, edited, framed

PARSE_ERROR = -32700
INVALID_REQUEST = -32600
METHOD_NOT_FOUND = -32601
INVALID_PARAMS = -32602
NOT_INITIALIZED = -32002
CANCELLED = -32800

PROGRAM = "void main() {\n    int x;\n    print(x, \"\\n\");\n}\n"
HOVER = {"textDocument": {"uri": URI}, "position": {"line": 1, "character": 9}}


class ProtocolTest(unittest.TestCase):
    maxDiff = None

    def client(self, abilities=None, **parameters):
        client = Client(abilities, **parameters)
        self.addCleanup(client.close)
        return client

    def ready(self, **parameters):
        return self.client(ABILITIES, **parameters)

    def assert_refused(self, client, method, parameters, code):
        with self.assertRaises(Refused) as refused:
            client.request(method, parameters)
        self.assertEqual(refused.exception.code, code, refused.exception)

    def assert_error(self, message, number, code):
        self.assertEqual((message["id"], message["error"]["code"]), (number, code))
        self.assertTrue(message["error"]["message"])


class Order(ProtocolTest):
    def test_session_that_ends_orderly(self):
        client = self.ready()
        self.assertEqual(client.end(), 0)
        self.assertEqual(client.process.stderr.read(), b"")

    def test_exit_without_shutdown(self):
        client = self.ready()
        client.notify("exit", None)
        self.assertEqual(client.process.wait(TIMEOUT_SECONDS), 1)

    def test_exit_before_initialize(self):
        client = self.client()
        client.notify("exit", None)
        self.assertEqual(client.process.wait(TIMEOUT_SECONDS), 1)

    def test_requests_before_initialize(self):
        client = self.client()
        self.assert_refused(client, "textDocument/hover", HOVER, NOT_INITIALIZED)
        self.assert_refused(client, "shutdown", None, NOT_INITIALIZED)
        client.open(PROGRAM)  # is not heard
        client.request("initialize", {"capabilities": ABILITIES})
        self.assert_refused(client, "textDocument/hover", HOVER, INVALID_PARAMS)

    def test_second_initialize(self):
        client = self.ready()
        self.assert_refused(client, "initialize", {"capabilities": {}}, INVALID_REQUEST)

    def test_requests_after_shutdown(self):
        client = self.ready()
        client.request("shutdown", None)
        self.assert_refused(client, "textDocument/hover", HOVER, INVALID_REQUEST)
        client.notify("exit", None)
        self.assertEqual(client.process.wait(TIMEOUT_SECONDS), 0)

    def test_client_without_abilities(self):
        client = self.client({})
        self.assertEqual(client.abilities["positionEncoding"], "utf-16")
        client.open(PROGRAM)
        client.diagnostics()
        edit = client.ask("rename", position=HOVER["position"], newName="y")
        self.assertEqual(list(edit), ["changes"])
        self.assertEqual(len(edit["changes"][URI]), 2)
        [symbol] = client.ask("documentSymbol")
        self.assertEqual((symbol["name"], symbol["location"]["uri"]), ("main", URI))
        items = client.ask("completion", position={"line": 2, "character": 4})["items"]
        self.assertEqual([each for each in items if "insertTextFormat" in each], [])


class Messages(ProtocolTest):
    def test_unknown_methods(self):
        client = self.ready()
        self.assert_refused(client, "textDocument/moniker", HOVER, METHOD_NOT_FOUND)
        client.notify("$/setTrace", {"value": "off"})
        client.notify("workspace/didChangeConfiguration", {"settings": None})
        self.assertEqual(client.end(), 0)
        self.assertEqual(client.notifications, [])

    def test_bodies_that_are_no_requests(self):
        for body, code in (("{", PARSE_ERROR), (b"\"\xff\"", PARSE_ERROR), ("", PARSE_ERROR),
                           ("[]", INVALID_REQUEST), ("7", INVALID_REQUEST),
                           ("{}", INVALID_REQUEST), ('{"id": 1}', INVALID_REQUEST),
                           ('{"id": {}, "method": "shutdown"}', INVALID_REQUEST),
                           ('{"id": null, "method": "shutdown"}', INVALID_REQUEST),
                           ('{"id": 1, "method": 2}', INVALID_REQUEST),
                           ("[" * 100000, PARSE_ERROR)):
            with self.subTest(body=body[:40]):
                client = self.ready()
                client.send(body)
                self.assert_error(client.receive(), None, code)
                self.assertEqual(client.end(), 0)

    def test_answers_to_nothing_are_ignored(self):
        client = self.ready()
        client.send({"jsonrpc": "2.0", "id": 7, "result": None})
        client.send({"jsonrpc": "2.0", "id": 8, "error": {"code": 1, "message": ""}})
        self.assertEqual(client.end(), 0)

    def test_parameters_that_are_wrong(self):
        client = self.ready()
        client.open(PROGRAM)
        client.diagnostics()
        document = {"uri": URI}
        for parameters in (None, [], {}, {"textDocument": document},
                           {"textDocument": document, "position": 1},
                           {"textDocument": {"uri": "file:///other"},
                            "position": HOVER["position"]},
                           {"textDocument": document, "position": {"line": -1, "character": 0}},
                           {"textDocument": document, "position": {"line": 0.5, "character": 0}},
                           {"textDocument": document, "position": {"line": "1", "character": 0}}):
            with self.subTest(parameters=parameters):
                self.assert_refused(client, "textDocument/hover", parameters, INVALID_PARAMS)

    def test_notifications_that_are_wrong(self):
        client = self.ready()
        for method in ("didOpen", "didChange", "didClose"):
            client.notify("textDocument/" + method, {"textDocument": {"uri": URI}})
            self.assertEqual(client.receive()["method"], "window/logMessage")
        self.assertEqual(client.end(), 0)

    def test_places_behind_the_text(self):
        client = self.ready()
        client.open(PROGRAM)
        for line, character in ((1, 10 ** 6), (10 ** 6, 0), (2 ** 63, 2 ** 63)):
            place = {"line": line, "character": character}
            self.assertIsNone(client.ask("hover", position=place))
            client.ask("completion", position=place)
        self.assertEqual(client.end(), 0)

    def test_headers(self):
        client = self.ready()
        body = json.dumps({"jsonrpc": "2.0", "id": "a", "method": "shutdown"}).encode()
        client.send_bytes(b"Content-Type: application/vscode-jsonrpc; charset=utf-8\r\n"
                          b"content-length:  %d \r\n\r\n%s" % (len(body), body))
        self.assertEqual(client.receive(), {"jsonrpc": "2.0", "id": "a", "result": None})

    def test_headers_that_make_no_sense(self):
        for headers in (b"Content-Length: many\r\n\r\n", b"Content-Length: -1\r\n\r\n",
                        b"Content-Length: 7x\r\n\r\n", b"Content-Length:\r\n\r\n",
                        b"Content-Length: 999999999999999999999999\r\n\r\n",
                        b"Content-Length: 999999999999\r\n\r\n", b"Content-Type: x\r\n\r\n",
                        b"\r\n\r\n", b"no colon\r\n\r\n", b"x" * 100000):
            with self.subTest(headers=headers[:40]):
                client = self.ready()
                try:
                    client.send_bytes(headers)
                except BrokenPipeError:
                    pass  # it has read enough
                self.assert_error(client.receive(), None, PARSE_ERROR)
                self.assertEqual(client.process.wait(TIMEOUT_SECONDS), 1)
                self.assertRegex(client.process.stderr.read(), rb"\Akrel: [^\n]+\n\Z")

    def test_messages_in_pieces(self):
        client = self.ready()
        message = framed({"jsonrpc": "2.0", "id": 5, "method": "shutdown", "params": None})
        for at in range(len(message)):
            client.send_bytes(message[at:at + 1])
        self.assertEqual(client.receive()["id"], 5)


class Gone(ProtocolTest):
    def test_end_of_input(self):
        client = self.ready()
        client.process.stdin.close()
        self.assertEqual(client.process.wait(TIMEOUT_SECONDS), 1)
        self.assertEqual(client.process.stderr.read(), b"")

    def test_end_within_a_message(self):
        for data in (b"Content-Le", b"Content-Length: 10\r\n\r\n{"):
            client = self.ready()
            client.send_bytes(data)
            client.process.stdin.close()
            self.assertEqual(client.process.wait(TIMEOUT_SECONDS), 1)
            self.assertIn(b"within a message", client.process.stderr.read())

    def test_requests_before_the_end_are_answered(self):
        client = self.ready()
        client.send_bytes(framed({"jsonrpc": "2.0", "id": 2, "method": "shutdown"}))
        client.process.stdin.close()
        self.assertEqual(client.receive()["id"], 2)
        self.assertEqual(client.process.wait(TIMEOUT_SECONDS), 1)

    def test_nobody_reads_the_answers(self):
        reading, writing = os.pipe()
        os.close(reading)
        message = framed({"jsonrpc": "2.0", "id": 1, "method": "shutdown"})
        server = subprocess.run([KREL, "lsp"], input=message, stdout=writing,
                                stderr=subprocess.PIPE, check=False, timeout=TIMEOUT_SECONDS)
        os.close(writing)
        self.assertEqual(server.returncode, 1)
        self.assertRegex(server.stderr, rb"\Akrel: cannot write[^\n]+\n\Z")


class Cancelling(ProtocolTest):
    def send_together(self, client, *messages):
        client.send_bytes(b"".join(framed({"jsonrpc": "2.0", **each}) for each in messages))

    def test_request_that_waits(self):
        client = self.ready()
        client.open(PROGRAM)
        client.diagnostics()
        hover = {"method": "textDocument/hover", "params": HOVER}
        self.send_together(client, {"id": "first", **hover}, {"id": "second", **hover},
                           {"id": "third", **hover},
                           {"method": "$/cancelRequest", "params": {"id": "second"}})
        answers = {}
        for _ in range(3):
            answer = client.receive()
            answers[answer["id"]] = answer
        self.assertEqual(set(answers), {"first", "second", "third"})
        self.assert_error(answers["second"], "second", CANCELLED)
        self.assertIn("result", answers["first"])
        self.assertIn("result", answers["third"])

    def test_nothing_to_cancel(self):
        client = self.ready()
        for parameters in ({"id": 7}, {}, None, [], {"id": None}):
            client.notify("$/cancelRequest", parameters)
        self.assertEqual(client.end(), 0)


class DocumentsTest(ProtocolTest):
    def test_diagnostics(self):
        client = self.ready()
        client.open(PROGRAM)
        self.assertEqual(client.diagnostics(), [{
            "range": {"start": {"line": 1, "character": 8}, "end": {"line": 1, "character": 9}},
            "severity": 1, "code": "initial-value", "source": "krel",
            "message": "`x` has no initial value\nhelp: write `x = 0`"}])

    def test_edits_that_arrive_together_are_checked_together(self):
        client = self.ready()
        document = {"uri": URI, "languageId": "krel", "version": 1, "text": PROGRAM}
        messages = [("didOpen", {"textDocument": document})]
        for version in (2, 3):
            messages.append(("didChange", {"textDocument": {"uri": URI, "version": version},
                                           "contentChanges": [{"text": PROGRAM}]}))
        # A pipe hands so few bytes over at once.
        client.send_bytes(b"".join(
            framed({"jsonrpc": "2.0", "method": "textDocument/" + method, "params": parameters})
            for method, parameters in messages))
        self.assertEqual(client.receive()["params"]["version"], 3)
        self.assertEqual(client.end(), 0)
        self.assertEqual(client.notifications, [])

    def test_several_documents(self):
        client = self.ready()
        other = "file:///other.krl"
        client.open(PROGRAM)
        client.open("void main() {\n}\n", other)
        self.assertEqual(len(client.diagnostics()), 1)
        self.assertEqual(client.diagnostics(other), [])
        client.change([{"text": PROGRAM + "int f() { return 1; }\n"}], other)
        self.assertEqual(len(client.diagnostics(other)), 2)
        symbols = [each["name"] for each in client.ask("documentSymbol")]
        self.assertEqual(symbols, ["main"])
        found = client.request("workspace/symbol", {"query": "F"})
        self.assertEqual([(each["name"], each["location"]["uri"]) for each in found],
                         [("f", other)])

    def test_closed_documents(self):
        client = self.ready()
        client.open(PROGRAM)
        self.assertEqual(len(client.diagnostics()), 1)
        client.notify("textDocument/didClose", {"textDocument": {"uri": URI}})
        del client.versions[URI]
        self.assertEqual(client.diagnostics(), [])
        self.assert_refused(client, "textDocument/hover", HOVER, INVALID_PARAMS)
        client.open("void main() { }\n")
        self.assertEqual(client.diagnostics(), [])

    def test_unnecessary_code_is_marked(self):
        client = self.ready()
        client.open("void main() {\n    int x = 1;\n}\n")
        [diagnostic] = client.diagnostics()
        self.assertEqual((diagnostic["code"], diagnostic["tags"]), ("unused-variable", [1]))

    def test_repair_of_everything(self):
        client = self.ready()
        client.open(PROGRAM)
        client.diagnostics()
        top = {"start": {"line": 0, "character": 0}, "end": {"line": 0, "character": 0}}
        [action] = client.ask("codeAction", range=top, context={"diagnostics": []})
        self.assertEqual(action["kind"], "source.fixAll")
        [change] = action["edit"]["documentChanges"]
        self.assertEqual(edited(PROGRAM, change["edits"], "utf-16"),
                         PROGRAM.replace("int x;", "int x = 0;"))

    def repairs_of_all(self, text):
        """The titles of what is offered when everything is selected."""
        client = self.ready()
        client.open(text)
        everything = {"start": {"line": 0, "character": 0},
                      "end": {"line": text.count("\n") + 1, "character": 0}}
        actions = client.ask("codeAction", range=everything,
                             context={"diagnostics": [], "only": ["quickfix"]})
        self.assertEqual(client.end(), 0)
        return [action["title"] for action in actions]

    def test_repairs_of_many_findings_are_bounded(self):
        """Each repair is tried, which takes a check; so only some of them are, and then all at
        once is offered."""
        def program(findings, comment=0):
            lines = "".join(f"    int x{number};\n    print(x{number});\n"
                            for number in range(findings))
            return f"# {'c' * comment}\nvoid main() {{\n{lines}}}\n"

        few = self.repairs_of_all(program(99))
        self.assertEqual(few, [*(f"Repair: write `x{number} = 0`" for number in range(99)),
                               "Repair everything"])
        self.assertEqual(self.repairs_of_all(program(1000)),
                         [*few[:99], "Repair: write `x99 = 0`", "Repair everything"])
        # 20 MB are tried at most, one repair at least.
        self.assertEqual(self.repairs_of_all(program(99, 6_000_000)), [*few[:3], few[-1]])
        self.assertEqual(self.repairs_of_all(program(99, 21_000_000)), [few[0], few[-1]])

    def test_surprises_are_not_repaired_by_themselves(self):
        client = self.ready()
        text = "void main() {\n    double d = 1.5;\n    print(d > 0.5, \"\\n\");\n}\n"
        client.open(text)
        self.assertEqual([each["severity"] for each in client.diagnostics()], [2])
        line = {"start": {"line": 2, "character": 10}, "end": {"line": 2, "character": 17}}
        actions = client.ask("codeAction", range=line, context={"diagnostics": []})
        self.assertEqual([each["kind"] for each in actions], ["quickfix", "quickfix"])
        self.assertIn("may change what the program does", actions[1]["title"])
        self.assertEqual(client.ask("codeAction", range=line, context={
            "diagnostics": [], "only": ["source.fixAll"]}), [])
        self.assertEqual(client.ask("codeAction", range=line, context={
            "diagnostics": [], "only": ["refactor"]}), [])

    def test_odd_characters_in_messages(self):
        client = self.ready()
        client.open("void main() {\n    int é = 1;\n    int \0 = 2;\n}\n")
        self.assertGreater(len(client.diagnostics()), 0)
        self.assertEqual(client.end(), 0)

    def test_deeply_nested_text(self):
        client = self.ready()
        client.open("void main() { int x = " + "(" * 20000 + "1" + ")" * 20000 + "; }\n")
        client.diagnostics()
        place = {"line": 0, "character": 20022}
        self.assertEqual(len(client.ask("selectionRange", positions=[place])), 1)
        client.ask("hover", position=place)
        self.assertEqual(client.end(), 0)


class Workspace(ProtocolTest):
    def test_functions_of_files_that_are_not_open(self):
        with tempfile.TemporaryDirectory(prefix="größe ") as name:
            folder = pathlib.Path(name)
            (folder / "one.krl").write_text("int oneFunction() { return 1; }\n")
            (folder / "two.krl").write_text("int twoFunction() { return 1; }\n")
            (folder / "odd.krl").write_bytes(b"int oddFunction() { return 1; } # \xff\n")
            for parameters in ({"rootUri": folder.as_uri()},
                               {"workspaceFolders": [{"uri": folder.as_uri(), "name": "x"}]}):
                client = self.ready(**parameters)
                client.open("int changedFunction() { return 1; }\n",
                            (folder / "two.krl").as_uri())
                found = client.request("workspace/symbol", {"query": "func"})
                self.assertEqual({(each["name"], each["location"]["uri"]) for each in found},
                                 {("changedFunction", (folder / "two.krl").as_uri()),
                                  ("oddFunction", (folder / "odd.krl").as_uri()),
                                  ("oneFunction", (folder / "one.krl").as_uri())})
                client.close()

    def test_folder_that_is_gone(self):
        client = self.ready(rootUri="file:///no/such/folder")
        self.assertEqual(client.request("workspace/symbol", {"query": ""}), [])


if __name__ == "__main__":
    unittest.main()
