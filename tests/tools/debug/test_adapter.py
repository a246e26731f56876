#!/usr/bin/env python3
"""Sessions with `krel debug`, one for each thing that it can do."""

import pathlib
import unittest

from client import TIMEOUT_SECONDS, Client, Refused, framed

CALLS = """int twice(int n) {
    return n + n;
}

int sum(int a, int b) {
    int left = twice(a);
    int right = twice(b);
    return left + right;
}

void main() {
    int total = 0;
    for (int i = 0; i < 3; i++) {
        total = sum(total, i);
        print("total ", total, "\\n");
    }
    print("end\\n");
}
"""

VALUES = """void main() {
    int n = 7;
    double d = 0.5;
    boolean b = true;
    character c = 'x';
    string s = "a\\n";
    int a[4] = {1, 2};
    string w[2];
    w[1] = "one";
    n++;
    a[0] = 5;
    if (k > 0) { n = 0; }
}
"""

ENDLESS = """void main() {
    int n = 0;
    while (true) {
        n = n + 1;
        if (n > 1000) {
            n = 0;
        }
    }
}
"""

FAULTY = """int half(int n) {
    int none = 0;
    return n / none;
}

void main() {
    print("before\\n");
    int x = half(4);
    print(x);
}
"""


class SessionTest(unittest.TestCase):
    maxDiff = None

    def client(self, text, *words):
        client = Client(text, *words)
        self.addCleanup(client.close)
        return client

    def launched(self, text, **arguments):
        client = self.client(text)
        client.launch(**arguments)
        return client

    def at_entry(self, text, **arguments):
        client = self.launched(text, stopOnEntry=True, **arguments)
        self.assertEqual(client.stopped()["reason"], "entry")
        return client

    def assert_refused(self, client, message, command, **arguments):
        with self.assertRaisesRegex(Refused, message):
            client.request(command, **arguments)


class Beginning(SessionTest):
    def test_runs_to_the_end(self):
        client = self.launched(CALLS)
        self.assertEqual(client.ended(), 0)
        self.assertEqual(client.output, "total 0\ntotal 2\ntotal 8\nend\n")
        self.assertEqual(client.disconnect(), 0)

    def test_stops_on_entry(self):
        client = self.at_entry(CALLS)
        self.assertEqual(client.line(), 12)
        self.assertEqual(client.output, "")

    def test_program_from_the_command_line(self):
        client = self.client(None)
        client.close()
        client = Client(None, str(pathlib.Path(client.path)))
        self.addCleanup(client.close)
        self.assert_refused(client, "cannot (open|read)|No such file", "launch")

    def test_no_program(self):
        client = self.client(CALLS)
        self.assert_refused(client, "names no program", "launch")

    def test_compile_errors_fail_the_launch(self):
        client = self.client("void main() {\n    int x = y;\n}\n")
        client.request("initialize")
        self.assert_refused(client, r"(?s)cannot be run.*y", "launch", program=client.path)
        client.write(CALLS)
        client.launch()
        self.assertEqual(client.ended(), 0)

    def test_without_debugging(self):
        client = self.launched(CALLS, breakpoints=[14], noDebug=True)
        self.assertEqual(client.ended(), 0)

    def test_end_is_a_stop_if_asked_for(self):
        client = self.launched(CALLS, stopOnExit=True)
        self.assertEqual(client.stopped()["reason"], "exit")
        self.assertEqual(client.variables(), {"total": "8", "i": "3"})
        self.assertEqual(client.go("stepBack"), ("step", 17))
        self.assertEqual(client.go("next"), ("step", 18))
        self.assertEqual(client.go("next"), ("exit", 18))
        client.request("next", threadId=1)
        self.assertEqual(client.ended(), 0)
        self.assertEqual(client.output, "total 0\ntotal 2\ntotal 8\nend\n")

    def test_restart_reads_the_program_anew(self):
        client = self.launched(CALLS, breakpoints=[14])
        self.assertEqual(client.stopped()["reason"], "breakpoint")
        client.write("# A line more.\n" + CALLS.replace("end", "new end"))
        client.request("restart")
        changed = client.event("breakpoint")["breakpoint"]
        self.assertEqual((changed["verified"], changed["line"]), (True, 14))
        client.stopped()
        client.breakpoints()
        client.request("continue", threadId=1)
        self.assertEqual(client.ended(), 0)
        self.assertTrue(client.output.endswith("new end\n"), client.output)

    def test_restart_with_errors_ends(self):
        client = self.launched(CALLS, breakpoints=[14])
        client.stopped()
        client.write("void main() {")
        client.request("restart")
        client.event("terminated")
        self.assertIn("cannot be run", client.said)

    def test_terminate_and_what_is_refused_then(self):
        client = self.at_entry(CALLS)
        client.request("terminate")
        client.event("terminated")
        self.assert_refused(client, "has ended", "next", threadId=1)
        self.assertEqual(client.disconnect(), 0)

    def test_requests_without_a_program(self):
        client = self.client(CALLS)
        self.assert_refused(client, "no program is launched", "stackTrace", threadId=1)
        self.assert_refused(client, "no program is launched", "configurationDone")
        self.assert_refused(client, "there is no request dance", "dance")
        self.assertEqual(client.request("threads")["threads"], [{"id": 1, "name": "main"}])

    def test_abilities_are_requests(self):
        client = self.client(CALLS)
        able = client.request("initialize")
        for ability in ("StepBack", "LogPoints", "SetVariable", "DisassembleRequest"):
            self.assertIs(able["supports" + ability], True)


class Breakpoints(SessionTest):
    def test_line_without_code(self):
        client = self.client(CALLS)
        found = client.launch(breakpoints=[10, 14, 99])
        self.assertEqual([each.get("line") for each in found], [12, 14, None])
        self.assertEqual([each["verified"] for each in found], [True, True, False])
        self.assertIn("no code", found[2]["message"])
        self.assertEqual(client.stopped()["hitBreakpointIds"], [found[0]["id"]])
        self.assertEqual(client.line(), 12)
        self.assertEqual(client.go("continue"), ("breakpoint", 14))

    def test_for_header_stops_once(self):
        client = self.launched(CALLS, breakpoints=[13])
        client.stopped()
        self.assertEqual(client.line(), 13)
        client.request("continue", threadId=1)
        self.assertEqual(client.ended(), 0)

    def test_statement_of_several_lines(self):
        client = self.client("void main() {\n    int n = 1\n        + 2;\n    print(n,\n"
                             "          \"\\n\");\n}\n")
        found = client.launch(breakpoints=[2, 3, 4])
        self.assertEqual([each["line"] for each in found], [2, 4, 4])
        client.stopped()
        self.assertEqual(client.line(), 2)
        self.assertEqual(client.go("continue"), ("breakpoint", 4))

    def test_condition(self):
        client = self.launched(CALLS, breakpoints=[{"line": 15, "condition": "i == 2"}])
        client.stopped()
        self.assertEqual(client.variables(), {"total": "8", "i": "2"})
        client.request("continue", threadId=1)
        self.assertEqual(client.ended(), 0)

    def test_wrong_conditions(self):
        client = self.client(CALLS)
        found = client.launch(breakpoints=[
            {"line": 15, "condition": "nobody == 2"}, {"line": 15, "condition": "i =="},
            {"line": 15, "condition": "twice(i) == 2"}, {"line": 15, "hitCondition": "often"},
            {"line": 15, "hitCondition": "0"}])
        messages = [each["message"] for each in found]
        self.assertFalse(any(each["verified"] for each in found))
        for message, part in zip(messages, ("nobody", "no expression", "cannot call", "often",
                                            "which hits")):
            self.assertIn(part, message)
        self.assertEqual(client.ended(), 0)

    def test_condition_that_fails_stops(self):
        client = self.launched(VALUES, breakpoints=[{"line": 10, "condition": "a[3] == 1"}])
        self.assertIn("`a[3]` is read, but nothing has set it", client.stopped()["text"])
        self.assertEqual(client.line(), 10)

    def test_hits(self):
        for rule, hits in (("2", [1]), (">= 2", [1, 2]), ("> 2", [2]), ("% 2", [1]),
                           ("== 3", [2]), ("9", [])):
            with self.subTest(rule=rule):
                client = self.launched(CALLS, breakpoints=[{"line": 15, "hitCondition": rule}])
                for hit in hits:
                    client.stopped()
                    self.assertEqual(client.variables()["i"], str(hit))
                    client.request("continue", threadId=1)
                self.assertEqual(client.ended(), 0)

    def test_hits_are_not_counted_twice(self):
        client = self.launched(CALLS, breakpoints=[{"line": 15, "hitCondition": "2"}])
        client.stopped()
        self.assertEqual(client.go("reverseContinue"), ("entry", 12))
        self.assertEqual(client.go("continue"), ("breakpoint", 15))
        self.assertEqual(client.variables()["i"], "1")

    def test_log_point(self):
        client = self.launched(CALLS, breakpoints=[
            {"line": 15, "logMessage": "i is {i}, twice {twice(i)}; {a}"}])
        self.assertEqual(client.ended(), 0)
        self.assertEqual(client.said, "")  # `a` is no variable: the breakpoint has no place

    def test_log_point_with_values(self):
        client = self.launched(CALLS, breakpoints=[
            {"line": 15, "logMessage": "i is {i}, twice {twice(i)}, {not closed"},
            {"line": 17, "logMessage": "done"}])
        self.assertEqual(client.ended(), 0)
        self.assertEqual(client.said, "".join(
            f"i is {i}, twice {2 * i}, {{not closed\n" for i in range(3)) + "done\n")

    def test_functions(self):
        client = self.client(CALLS)
        client.request("initialize")
        client.request("launch", program=client.path)
        found = client.request("setFunctionBreakpoints", breakpoints=[
            {"name": "twice", "condition": "n == 2"}, {"name": "nowhere"}])["breakpoints"]
        self.assertEqual([each["verified"] for each in found], [True, False])
        client.request("configurationDone")
        self.assertEqual(client.stopped()["reason"], "breakpoint")
        self.assertEqual(client.line(), 2)
        self.assertEqual(client.variables(), {"n": "2"})
        self.assertEqual(client.variables(frame=3), {"total": "2", "i": "2"})

    def test_other_files(self):
        client = self.at_entry(CALLS)
        found = client.request("setBreakpoints", source={"path": "/other.krl"},
                               breakpoints=[{"line": 1}])["breakpoints"]
        self.assertEqual(found, [{"verified": False, "message": "this is not the program"}])

    def test_locations(self):
        client = self.at_entry(CALLS)
        found = client.request("breakpointLocations", source={"path": client.path}, line=1,
                               endLine=11)["breakpoints"]
        self.assertEqual([each["line"] for each in found], [2, 6, 7, 8])

    def test_lines_from_zero(self):
        client = self.client(CALLS)
        client.request("initialize", linesStartAt1=False, columnsStartAt1=False)
        client.request("launch", program=client.path)
        found = client.breakpoints(13)
        self.assertEqual(found[0]["line"], 13)
        client.request("configurationDone")
        client.stopped()
        frame = client.frames()[0]
        self.assertEqual((frame["line"], frame["column"]), (13, 8))


class Steps(SessionTest):
    def test_in_over_and_out(self):
        client = self.at_entry(CALLS)
        self.assertEqual(client.go("next"), ("step", 13))
        self.assertEqual(client.go("next"), ("step", 14))
        self.assertEqual(client.go("stepIn"), ("step", 6))
        self.assertEqual(client.go("stepIn"), ("step", 2))
        self.assertEqual([frame["name"] for frame in client.frames()], ["twice", "sum", "main"])
        self.assertEqual([frame["line"] for frame in client.frames()], [2, 6, 14])
        self.assertEqual(client.go("stepOut"), ("step", 6))
        self.assertEqual(client.go("next"), ("step", 7))
        self.assertEqual(client.go("next"), ("step", 8))
        self.assertEqual(client.variables(), {"a": "0", "b": "0", "left": "0", "right": "0"})
        self.assertEqual(client.go("next"), ("step", 15))
        self.assertEqual(client.go("next"), ("step", 13))
        self.assertEqual(client.output, "total 0\n")

    def test_over_recursion(self):
        client = self.launched("""int down(int n) {
    if (n > 0) {
        int less = down(n - 1);
        return less;
    }
    return 0;
}
void main() {
    int x = down(50);
    print(x);
}
""", breakpoints=[{"line": 3, "condition": "n == 40"}])
        client.stopped()
        self.assertEqual(client.go("next"), ("step", 4))
        self.assertEqual(client.variables(), {"n": "40", "less": "0"})
        self.assertEqual(client.go("stepOut"), ("step", 3))
        self.assertEqual(client.variables()["n"], "41")
        self.assertEqual(client.go("stepBack"), ("step", 3))
        self.assertEqual(client.variables(), {"n": "41", "less": "(unset)"})

    def test_breakpoint_on_the_way(self):
        client = self.at_entry(CALLS, breakpoints=[2])
        client.go("next")
        client.go("next")
        self.assertEqual(client.go("next"), ("breakpoint", 2))

    def test_back(self):
        client = self.launched(CALLS, breakpoints=[17])
        client.stopped()
        seen = []
        for _ in range(7):
            seen.append((client.go("stepBack")[1], client.variables().get("total")))
        self.assertEqual(seen, [(13, "8"), (15, "8"), (14, "2"), (13, "2"), (15, "2"), (14, "0"),
                                (13, "0")])
        self.assertEqual(client.go("stepIn"), ("step", 14))
        self.assertEqual(client.output, "total 0\ntotal 2\ntotal 8\n")
        client.request("continue", threadId=1)
        client.stopped()
        client.request("continue", threadId=1)
        self.assertEqual(client.ended(), 0)
        self.assertEqual(client.output, "total 0\ntotal 2\ntotal 8\nend\n")

    def test_back_out_of_a_function(self):
        client = self.launched(CALLS, functions=[{"name": "twice", "hitCondition": "3"}])
        client.stopped()
        self.assertEqual(client.go("stepBack"), ("step", 6))
        self.assertEqual(client.go("stepBack"), ("step", 14))
        self.assertEqual(client.variables(), {"total": "0", "i": "1"})

    def test_back_at_the_beginning(self):
        client = self.at_entry(CALLS)
        self.assertEqual(client.go("stepBack"), ("entry", 12))
        self.assertEqual(client.go("reverseContinue"), ("entry", 12))

    def test_reverse_continue(self):
        client = self.launched(CALLS, breakpoints=[17, {"line": 14, "condition": "i < 2"}])
        client.stopped()
        client.go("continue")
        self.assertEqual(client.go("continue"), ("breakpoint", 17))
        self.assertEqual(client.go("reverseContinue"), ("breakpoint", 14))
        self.assertEqual(client.variables(), {"total": "0", "i": "1"})
        self.assertEqual(client.go("reverseContinue"), ("breakpoint", 14))
        self.assertEqual(client.variables(), {"total": "0", "i": "0"})
        self.assertEqual(client.go("reverseContinue"), ("entry", 12))

    def test_instructions(self):
        client = self.launched(CALLS, breakpoints=[14])
        client.stopped()
        found = []
        for command in ("next", "next", "next", "next", "stepBack"):
            client.go(command, granularity="instruction")
            frame = client.frames()[0]
            row = client.request("disassemble",
                                 memoryReference=frame["instructionPointerReference"],
                                 instructionCount=1)["instructions"][0]
            found.append((frame["line"], row["instruction"]))
        self.assertEqual(found, [(14, "arg i"), (14, "_t1 = call sum, 2"), (14, "total = _t1"),
                                 (15, "_t2 = inttostring total"), (14, "total = _t1")])

    def test_into_a_call_by_instruction(self):
        client = self.launched(CALLS, breakpoints=[14])
        client.stopped()
        for _ in range(3):
            client.go("stepIn", granularity="instruction")
        self.assertEqual([frame["name"] for frame in client.frames()], ["sum", "main"])


class Looking(SessionTest):
    def test_values_and_types(self):
        client = self.launched(VALUES, breakpoints=[10])
        client.stopped()
        found = {each["name"]: (each["type"], each["value"]) for each in client.scope()}
        self.assertEqual(found, {
            "n": ("int", "7"), "d": ("double", "0.5"), "b": ("boolean", "true"),
            "c": ("character", "'x'"), "s": ("string", '"a\\n"'),
            "a": ("int[4]", "{1, 2, (unset), (unset)}"), "w": ("string[2]", '{(unset), "one"}'),
            "k": ("undeclared", "(unset)")})
        array = next(each for each in client.scope() if each["name"] == "a")
        self.assertEqual(array["indexedVariables"], 4)
        elements = client.children(array["variablesReference"])
        self.assertEqual([(each["name"], each["value"], each["evaluateName"])
                          for each in elements],
                         [("[0]", "1", "a[0]"), ("[1]", "2", "a[1]"), ("[2]", "(unset)", "a[2]"),
                          ("[3]", "(unset)", "a[3]")])
        some = client.children(array["variablesReference"], filter="indexed", start=1, count=2)
        self.assertEqual([each["name"] for each in some], ["[1]", "[2]"])

    def test_references_last_until_the_program_goes_on(self):
        client = self.launched(VALUES, breakpoints=[10])
        client.stopped()
        reference = client.request("scopes", frameId=1)["scopes"][0]["variablesReference"]
        client.go("next")
        self.assert_refused(client, "any more", "variables", variablesReference=reference)
        self.assert_refused(client, "any more", "variables", variablesReference=0)

    def test_what_has_changed(self):
        client = self.launched(VALUES, breakpoints=[10])
        client.stopped()
        client.go("next")
        self.assertEqual([(each["name"], each["value"]) for each in client.scope("Changed")],
                         [("n", "8")])
        client.go("next")
        self.assertEqual([(each["name"], each["value"]) for each in client.scope("Changed")],
                         [("a[0]", "5")])
        changed = [each["name"] for each in client.scope()
                   if "changed" in each.get("presentationHint", {}).get("attributes", [])]
        self.assertEqual(changed, ["a"])

    def test_nothing_has_changed(self):
        client = self.launched(CALLS, breakpoints=[2])
        client.stopped()
        self.assertIsNone(client.scope("Changed"))

    def test_temporaries(self):
        client = self.launched(CALLS, breakpoints=[7])
        client.stopped()
        self.assertEqual({each["name"]: each["value"] for each in client.scope("Temporaries")},
                         {"_t0": "0", "_t1": "(unset)", "_t2": "(unset)"})

    def test_expressions(self):
        client = self.launched(VALUES, breakpoints=[10])
        client.stopped()
        for expression, result in (
                ("n", "7"), ("n * 2 + a[1]", "16"), ("-n", "-7"), ("d * d", "0.25"),
                ("d < 0.75", "true"), ("n == 7 && b", "true"), ("n < 7 || !b", "false"),
                ("c", "'x'"), ("'y'", "'y'"), ("s + \"b\"", '"a\\nb"'), ("w[1]", '"one"'),
                ("b", "true"), ("!b", "false"), ("a", "{1, 2, (unset), (unset)}"), (" a[0] ", "1"),
                ("(n + 1) * (n - 1)", "48"), ("w[1] == \"one\"", "true")):
            with self.subTest(expression=expression):
                self.assertEqual(client.evaluate(expression), result)

    def test_wrong_expressions(self):
        client = self.launched(VALUES, breakpoints=[10])
        client.stopped()
        for expression, message in (
                ("", "no expression"), ("1; n = 2", "no expression"), ("n, n", "no expression"),
                ("n + ", "no expression"), ("(n", "no expression"), ("n)", "no expression"),
                ("} print(1); {", "no expression"), ("n # n", "cannot stand"),
                ("a[9]", "index 9 is outside of `a`"), ("a[2]", "nothing has set it"),
                ("k", "nothing has set it|unset"), ("other", "no variable `other` in main"),
                ("f(1)", "no function `f`"), ("n / 0", "divided by zero"),
                ("n + d", "."), ("1 && f(2)", "cannot call"), ("n = 5", "a change"),
                ("_t0", "no variable")):
            with self.subTest(expression=expression):
                if expression == "k":
                    self.assertEqual(client.evaluate("k"), "(unset)")
                    continue
                self.assert_refused(client, message, "evaluate", expression=expression, frameId=1)

    def test_expressions_in_other_calls(self):
        client = self.launched(CALLS, functions=[{"name": "twice", "condition": "n == 2"}])
        client.stopped()
        self.assertEqual(client.evaluate("total + i", frame=3), "4")
        self.assertEqual(client.evaluate("a", frame=2), "2")
        self.assert_refused(client, "no variable", "evaluate", expression="total", frameId=1)
        self.assert_refused(client, "no such call", "evaluate", expression="n", frameId=4)

    def test_calls_in_expressions(self):
        client = self.launched(CALLS, breakpoints=[15])
        client.stopped()
        self.assertEqual(client.evaluate("sum(3, twice(4)) + 1"), "23")
        self.assertEqual(client.variables(), {"total": "0", "i": "0"})
        self.assert_refused(client, "for a look", "evaluate", expression="twice(1)", frameId=1,
                            context="hover")

    def test_calls_that_do_not_come_back(self):
        client = self.at_entry("int away() { exit(); return 1; }\n"
                               "int forever() { while (true) { } return 1; }\n"
                               "int down(int n) { int m = down(n + 1); return m; }\n"
                               "void main() {\n    print(\"main\\n\");\n}\n")
        for call, message in (("away()", "ended the program"), ("forever()", "too long"),
                              ("down(0)", "stack is full")):
            self.assert_refused(client, message, "evaluate", expression=call, frameId=1)
        client.request("continue", threadId=1)
        self.assertEqual(client.ended(), 0)
        self.assertEqual(client.output, "main\n")

    def test_columns_count_utf_16(self):
        client = self.launched("void main() {\n    print(\"é😀\"); print(1);\n}\n",
                               stopOnEntry=True)
        client.stopped()
        frame = client.frames()[0]
        self.assertEqual((frame["column"], frame["endColumn"]), (5, 17))

    def test_completions(self):
        client = self.launched(CALLS, breakpoints=[7])
        client.stopped()
        found = client.request("completions", text="a + le", column=7, frameId=1)["targets"]
        self.assertEqual([each["label"] for each in found], ["left"])

    def test_source(self):
        client = self.at_entry(CALLS)
        sources = client.request("loadedSources")["sources"]
        self.assertEqual(sources, [{"name": "program.krl", "path": client.path}])
        self.assertEqual(client.request("source", sourceReference=0)["content"], CALLS)


class Changing(SessionTest):
    def test_variables(self):
        client = self.launched(CALLS, breakpoints=[15])
        client.stopped()
        reference = client.request("scopes", frameId=1)["scopes"][0]["variablesReference"]
        answer = client.request("setVariable", variablesReference=reference, name="total",
                                value="40 + twice(1)")
        self.assertEqual((answer["value"], answer["type"]), ("42", "int"))
        client.go("continue")
        self.assertEqual(client.variables(), {"total": "86", "i": "1"})
        self.assertEqual(client.output, "total 42\n")

    def test_changes_stay_when_going_back(self):
        client = self.launched(CALLS, breakpoints=[15])
        client.stopped()
        client.evaluate("total = 42", context="repl")
        client.go("continue")
        self.assertEqual(client.go("stepBack"), ("step", 14))
        self.assertEqual(client.variables()["total"], "42")
        for _ in range(2):
            client.go("stepBack")
        self.assertEqual(client.line(), 15)
        self.assertEqual(client.variables()["total"], "42")
        client.go("stepBack")
        self.assertEqual(client.variables()["total"], "0")
        self.assertEqual(client.go("next"), ("breakpoint", 15))
        self.assertEqual(client.variables()["total"], "42")

    def test_output_after_a_change_is_new(self):
        client = self.launched(CALLS, breakpoints=[17])
        client.stopped()
        self.assertEqual(client.output, "total 0\ntotal 2\ntotal 8\n")
        client.go("stepBack")
        client.go("stepBack")
        client.evaluate("total = 9", context="repl")
        client.go("continue")
        self.assertEqual(client.output, "total 0\ntotal 2\ntotal 8\ntotal 9\n")

    def test_elements_and_strings(self):
        client = self.launched(VALUES, breakpoints=[10])
        client.stopped()
        for target, value, shown in (("a[3]", "a[0] + 9", "10"), ("w[0]", "\"x\" + s", '"xa\\n"'),
                                     ("w[1]", "\"a\\n\"", '"a\\n"'), ("c", "'q'", "'q'"),
                                     ("b", "false", "false"), ("d", "d + d", "1")):
            with self.subTest(target=target):
                answer = client.request("setExpression", expression=target, value=value, frameId=1)
                self.assertEqual(answer["value"], shown)
        # A literal of the program keeps its address, by which strings are compared.
        self.assertEqual(client.evaluate("w[1] == s"), "true")
        array = next(each for each in client.scope() if each["name"] == "a")
        client.request("setVariable", variablesReference=array["variablesReference"], name="[2]",
                       value="3")
        self.assertEqual(client.variables()["a"], "{1, 2, 3, 10}")
        client.evaluate("n++", context="repl")
        client.evaluate("a[1] += n", context="repl")
        self.assertEqual(client.variables()["a"], "{1, 10, 3, 10}")

    def test_wrong_values(self):
        client = self.launched(VALUES, breakpoints=[10])
        client.stopped()
        reference = client.request("scopes", frameId=1)["scopes"][0]["variablesReference"]
        for name, value in (("n", "0.5"), ("n", "\"text\""), ("s", "1"), ("nothing", "1"),
                            ("n", ""), ("n", "d = 0.5"), ("n", "1; n = 2"), ("a[7]", "1")):
            with self.subTest(name=name, value=value):
                self.assert_refused(client, ".", "setVariable", variablesReference=reference,
                                    name=name, value=value)
        self.assertEqual(client.variables()["n"], "7")

    def test_change_in_a_caller(self):
        client = self.launched(CALLS, functions=[{"name": "twice", "condition": "n == 2"}])
        client.stopped()
        client.request("setExpression", expression="b", value="10", frameId=2)
        client.go("stepOut")
        client.go("next")
        client.go("next")
        client.go("stepBack")
        client.go("next")
        self.assertEqual(client.variables(), {"a": "2", "b": "10", "left": "4", "right": "20"})


class Faults(SessionTest):
    def test_stops_at_a_fault(self):
        client = self.launched(FAULTY)
        body = client.stopped()
        self.assertEqual((body["reason"], body["text"]), ("exception", "4 is divided by zero"))
        self.assertEqual([frame["line"] for frame in client.frames()], [3, 8])
        self.assertEqual(client.variables(), {"n": "4", "none": "0"})
        info = client.request("exceptionInfo", threadId=1)
        self.assertEqual(info["exceptionId"], "division-by-zero")
        self.assert_refused(client, "go back first", "evaluate", expression="none = 2", frameId=1,
                            context="repl")
        self.assertEqual(client.go("stepBack"), ("step", 3))
        client.evaluate("none = 2", context="repl")
        client.request("continue", threadId=1)
        self.assertEqual(client.ended(), 0)
        self.assertEqual(client.output, "before\n2")

    def test_going_on_from_a_fault(self):
        client = self.launched(FAULTY)
        client.stopped()
        client.request("continue", threadId=1)
        self.assertEqual(client.ended(), 134)
        self.assertIn("program.krl:3:12", client.said)

    def test_not_stopping_at_faults(self):
        client = self.launched(FAULTY, filters=())
        self.assertEqual(client.ended(), 134)
        self.assertIn("division-by-zero", client.said)

    def test_allowed_rules(self):
        text = "void main() {\n    int n = 2147483647;\n    while (n > 0) {\n" \
               "        n = n * 2;\n    }\n    print(n);\n}\n"
        client = self.launched(text)
        self.assertIn("does not fit", client.stopped()["text"])
        client = self.launched(text, allow=["overflow"])
        self.assertEqual(client.ended(), 0)
        client = self.client(text)
        self.assert_refused(client, "no rule 'overflows'", "launch", program=client.path,
                            allow=["overflows"])
        client = self.client(text, "--allow=overflow")
        client.launch()
        self.assertEqual(client.ended(), 0)

    def test_unset_and_endless(self):
        client = self.launched(VALUES)
        self.assertEqual(client.stopped()["reason"], "exception")
        self.assertEqual(client.line(), 12)
        client = self.launched("int f(int n) {\n    int m = f(n + 1);\n    return m;\n}\n"
                               "void main() {\n    int x = f(0);\n}\n")
        self.assertIn("stack is full", client.stopped()["text"])
        trace = client.request("stackTrace", threadId=1, startFrame=5, levels=2)
        self.assertEqual([frame["id"] for frame in trace["stackFrames"]], [6, 7])
        self.assertGreater(trace["totalFrames"], 10000)
        self.assertEqual(client.go("stepBack"), ("step", 2))

    def test_end_by_exit(self):
        client = self.launched("void stop() {\n    exit();\n}\nvoid main() {\n    print(5);\n"
                               "    stop();\n}\n", stopOnExit=True)
        self.assertEqual(client.stopped()["reason"], "exit")
        self.assertEqual(client.line(), 2)
        client.request("continue", threadId=1)
        self.assertEqual(client.ended(), 0)
        self.assertEqual(client.output, "5")


class Running(SessionTest):
    def test_endless_program_can_be_paused(self):
        client = self.launched(ENDLESS)
        client.request("pause", threadId=1)
        self.assertEqual(client.stopped()["reason"], "pause")
        n = int(client.variables()["n"])
        self.assertTrue(0 <= n <= 1001, n)
        client.go("next")
        client.request("continue", threadId=1)
        self.assert_refused(client, "not stopped", "stackTrace", threadId=1)
        self.assert_refused(client, "not stopped", "next", threadId=1)
        found = client.breakpoints({"line": 6, "condition": "n == 1001"})
        self.assertTrue(found[0]["verified"])
        self.assertEqual(client.stopped()["reason"], "breakpoint")
        client.breakpoints()
        client.request("continue", threadId=1)
        client.request("restart")
        client.request("pause", threadId=1)
        client.stopped()
        client.request("continue", threadId=1)
        client.request("terminate")
        client.event("terminated")
        self.assertEqual(client.disconnect(), 0)

    def test_disconnect_while_running(self):
        client = self.launched(ENDLESS)
        self.assertEqual(client.disconnect(), 0)

    def test_client_goes_while_running(self):
        client = self.launched(ENDLESS)
        client.process.stdin.close()
        self.assertEqual(client.process.wait(TIMEOUT_SECONDS), 1)

    def test_one_line_that_never_ends(self):
        client = self.at_entry("void main() {\n    int n = 0;\n"
                               "    for (n = 1; n > 0; n = n) { n = 1; }\n}\n")
        client.go("next")
        client.request("next", threadId=1)
        client.request("pause", threadId=1)
        self.assertEqual(client.stopped()["reason"], "pause")
        self.assertEqual(client.go("stepBack"), ("step", 3))
        self.assertEqual(client.go("stepBack"), ("entry", 2))

    def test_much_output(self):
        client = self.launched("void main() {\n    for (int i = 0; i < 20000; i++) {\n"
                               "        print(i, \"\\n\");\n    }\n}\n")
        self.assertEqual(client.ended(), 0)
        self.assertEqual(client.output, "".join(f"{i}\n" for i in range(20000)))

    def test_odd_bytes(self):
        client = self.launched(b"void main() {\n    for (int i = 0; i < 9000; i++) {\n"
                               b"        print(\"\xc3\");\n        print(\"\xa9\");\n    }\n"
                               b"    print(\"\xff!\");\n}\n")
        self.assertEqual(client.ended(), 0)
        self.assertEqual(client.output, "é" * 9000 + "\ufffd!")


class Code(SessionTest):
    def test_disassembly(self):
        client = self.launched(CALLS, breakpoints=[2])
        client.stopped()
        address = client.frames()[0]["instructionPointerReference"]
        rows = client.request("disassemble", memoryReference=address, instructionOffset=-2,
                              instructionCount=8)["instructions"]
        self.assertEqual(len(rows), 8)
        self.assertEqual(len({row["address"] for row in rows}), 8)
        here = next(row for row in rows if row["address"] == address)
        self.assertEqual((here["instruction"], here["line"]), ("_t0 = n + n", 2))
        after = rows[rows.index(here) + 1]
        self.assertRegex(after["instruction"], r"^    mov")
        first = client.request("disassemble", memoryReference=address, instructionOffset=-50,
                               instructionCount=100)["instructions"]
        self.assertEqual(len(first), 100)
        self.assertEqual(first[0]["presentationHint"], "invalid")
        named = [row["instruction"] for row in first if row.get("symbol") == "twice"]
        self.assertEqual(named, ["param int n"])

    def test_breakpoint_on_an_instruction(self):
        client = self.launched(CALLS, breakpoints=[2])
        client.stopped()
        address = client.frames()[0]["instructionPointerReference"]
        rows = client.request("disassemble", memoryReference=address,
                              instructionCount=20)["instructions"]
        target = next(row for row in rows if row["instruction"] == "return _t0")
        found = client.request("setInstructionBreakpoints", breakpoints=[
            {"instructionReference": target["address"]}])["breakpoints"]
        self.assertTrue(found[0]["verified"])
        self.assertEqual(client.go("continue"), ("breakpoint", 2))
        self.assertEqual(client.frames()[0]["instructionPointerReference"], target["address"])

    def test_wrong_addresses(self):
        client = self.at_entry(CALLS)
        self.assert_refused(client, "no address", "disassemble", memoryReference="there",
                            instructionCount=1)
        self.assert_refused(client, "no code", "setInstructionBreakpoints",
                            breakpoints=[{"instructionReference": "0x0"}])


class Messages(SessionTest):
    def test_what_is_no_request(self):
        client = self.at_entry(CALLS)
        for body in (b"no json", b"[1, 2]", b"null", {"seq": 1}, {"type": "request"},
                     {"type": "request", "command": 5, "seq": 1},
                     {"type": "request", "command": "threads", "seq": "x"}):
            client.send_bytes(framed(body))
        client.send_bytes(framed({"type": "response", "request_seq": 1}))
        self.assertEqual(client.line(), 12)
        self.assertEqual(client.said.count("a message is no JSON object"), 3)
        self.assertEqual(client.said.count("a message is no request"), 1)
        self.assertEqual(client.said.count("no command or no number"), 3)

    def test_arguments_of_wrong_types(self):
        client = self.at_entry(CALLS)
        for command, arguments in (
                ("evaluate", {}), ("evaluate", {"expression": 5}), ("variables", {}),
                ("variables", {"variablesReference": "x"}), ("setFunctionBreakpoints", {}),
                ("setBreakpoints", {"source": {"path": client.path}, "breakpoints": [{}]}),
                ("setVariable", {"variablesReference": 1}), ("disassemble", {}),
                ("stackTrace", {"startFrame": "x"}), ("completions", {}),
                ("scopes", {"frameId": 99}), ("exceptionInfo", {})):
            with self.subTest(command=command):
                self.assert_refused(client, ".", command, **arguments)
        client.send_bytes(framed({"type": "request", "seq": 500, "command": "threads",
                                  "arguments": [1]}))
        self.assertTrue(client.receive()["success"])
        self.assertEqual(client.line(), 12)

    def test_headers_without_sense(self):
        client = self.at_entry(CALLS)
        client.send_bytes(b"Content-Length: many\r\n\r\n")
        self.assertEqual(client.process.wait(TIMEOUT_SECONDS), 1)
        self.assertIn(b"krel: the Content-Length", client.process.stderr.read())

    def test_client_goes_within_a_message(self):
        client = self.at_entry(CALLS)
        client.send_bytes(b"Content-Length: 100\r\n\r\n{")
        client.process.stdin.close()
        self.assertEqual(client.process.wait(TIMEOUT_SECONDS), 1)

    def test_messages_are_numbered(self):
        client = self.client(CALLS)
        client.send_bytes(framed({"type": "request", "seq": 1, "command": "threads"}) * 3)
        numbers = [client.receive()["seq"] for _ in range(3)]
        self.assertEqual(numbers, [1, 2, 3])


if __name__ == "__main__":
    unittest.main()
