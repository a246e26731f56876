// The machine as tools use it: steps, calls, slots, snapshots, stops.

#include "tools/machine/machine.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "frontend/frontEnd.hpp"
#include "tools/machine/report.hpp"
#include "tools/machine/translator.hpp"

namespace krel::Execution {

namespace {

class Collector final : public Sink {
public:
    void print(std::uint64_t position, std::string_view text) override {
        printed.resize(std::min<std::size_t>(printed.size(), position));
        EXPECT_EQ(printed.size(), position);
        printed += text;
    }

    std::string printed;
};

/// A program on a machine.
struct Session {
    explicit Session(const std::string& text, bool checked = true,
                     const Wanted& wanted = {true, false},
                     std::size_t stackSize = std::size_t{1} << 20)
        : compilation(FrontEnd::compile(text, "p.krl", request())),
          code(translate(*compilation, wanted)),
          machine(code, {checked, {}, stackSize}, output) {}

    static FrontEnd::Request request() {
        FrontEnd::Request wanted;
        wanted.tokens = wanted.sources = true;
        return wanted;
    }

    /// The line of the source at which the machine stands.
    int sourceLine() const {
        const SourceRange range = compilation->irLines()[machine.line()].source;
        return compilation->lines().positionOf(range.begin).line;
    }

    const Variable& variable(const std::string& name) const {
        const auto& all = code.functions[machine.call(0).function].variables;
        return *std::ranges::find(all, name, &Variable::name);
    }

    std::uint64_t value(const std::string& name) const {
        return machine.value(machine.call(0), variable(name).slot);
    }
    Tag tag(const std::string& name) const {
        return machine.tag(machine.call(0), variable(name).slot);
    }

    std::unique_ptr<FrontEnd::Compilation> compilation;
    Code code;
    Collector output;
    Machine machine;
};

const std::string squares =
    "int square(int n) {\n"
    "    int result = n * n;\n"
    "    return result;\n"
    "}\n"
    "void main() {\n"
    "    int sum = 0;\n"
    "    for (int i = 1; i <= 3; i++) {\n"
    "        int part = square(i);\n"
    "        sum += part;\n"
    "    }\n"
    "    print(sum, \"\\n\");\n"
    "}\n";

TEST(MachineTest, RunsToTheEnd) {
    for (const bool checked : {false, true}) {
        for (const bool stops : {false, true}) {
            Session run{squares, checked, {stops, false}};
            const Stop stop = run.machine.run();
            EXPECT_EQ(stop.reason, Stop::Reason::Ended);
            EXPECT_EQ(stop.status, 0);
            EXPECT_EQ(run.output.printed, "14\n");
            EXPECT_EQ(run.machine.depth(), 0U);
            EXPECT_EQ(run.machine.bytesPrinted(), 3U);
        }
    }
}

TEST(MachineTest, CountsStepsAsLinesOfTheIntermediateCode) {
    Session run{"void main() {\n    int a = 1;\n    int b = a + 2;\n}\n"};
    // a = 1, _t0 = a + 2, b = _t0, return
    for (std::uint64_t step = 1; step <= 4; ++step) {
        EXPECT_EQ(run.machine.step().canGoOn(), step < 4) << step;
        EXPECT_EQ(run.machine.stepsDone(), step);
    }
    EXPECT_EQ(run.machine.step().reason, Stop::Reason::Ended);
    EXPECT_EQ(run.machine.stepsDone(), 4U);
}

TEST(MachineTest, KnowsLineFunctionAndCalls) {
    Session run{squares};
    EXPECT_EQ(run.machine.depth(), 0U);
    EXPECT_EQ(run.machine.line(), Code::noLine);
    EXPECT_EQ(run.machine.run(0).reason, Stop::Reason::Steps);
    EXPECT_EQ(run.machine.depth(), 1U);
    EXPECT_EQ(run.sourceLine(), 6);
    while (run.machine.depth() < 2) {
        ASSERT_TRUE(run.machine.step().canGoOn());
    }
    EXPECT_EQ(run.code.functions[run.machine.call(0).function].name, "square");
    const CallFrame caller = run.machine.call(1);
    EXPECT_EQ(run.code.functions[caller.function].name, "main");
    const SourceRange range = run.compilation->irLines()[caller.line].source;
    EXPECT_EQ(run.compilation->textOf(range), "square(i)");
}

TEST(MachineTest, TellsWhatIsSet) {
    Session run{
        "void main() {\n    double d = 0.5;\n    string s = \"a\\tb\";\n    int a[2];\n"
        "    a[1] = 7;\n    print(d, s, a[1]);\n}\n"};
    run.machine.run(0);
    EXPECT_EQ(run.tag("d"), Tags::unset);
    run.machine.run(2);
    EXPECT_EQ(run.tag("d"), Tags::real);
    EXPECT_EQ(run.tag("s"), Tags::text);
    EXPECT_EQ(run.machine.textAt(run.value("s")), "a\tb");
    EXPECT_EQ(run.machine.textAt(1), std::nullopt);
    run.machine.step();
    const Variable& a = run.variable("a");
    EXPECT_TRUE(a.isArray);
    EXPECT_EQ(a.length, 2);
    EXPECT_EQ(run.machine.tag(run.machine.call(0), a.slot), Tags::unset);
    EXPECT_EQ(run.machine.tag(run.machine.call(0), a.slot + 1), Tags::whole);
    EXPECT_EQ(run.machine.value(run.machine.call(0), a.slot + 1), 7U);
}

TEST(MachineTest, StopsBeforeWatchedLines) {
    Session run{squares};
    run.machine.run(0);
    const std::size_t first = run.code.functions[0].firstLine;
    run.machine.watch(first, true);
    for (int round = 1; round <= 3; ++round) {
        const Stop stop = run.machine.run();
        EXPECT_EQ(stop.reason, Stop::Reason::Watched);
        EXPECT_EQ(run.machine.line(), first);
        EXPECT_EQ(run.machine.depth(), 2U);
    }
    run.machine.watch(first, false);
    EXPECT_EQ(run.machine.run().reason, Stop::Reason::Ended);
}

TEST(MachineTest, GoesBackToASnapshot) {
    Session run{squares};
    run.machine.run(9);
    const auto snapshot = run.machine.snapshot();
    const std::uint32_t line = run.machine.line();
    run.machine.run();
    const std::uint64_t steps = run.machine.stepsDone();
    for (int round = 0; round < 2; ++round) {
        run.machine.restore(*snapshot);
        EXPECT_EQ(run.machine.stepsDone(), 9U);
        EXPECT_EQ(run.machine.line(), line);
        EXPECT_EQ(run.machine.run().reason, Stop::Reason::Ended);
        EXPECT_EQ(run.machine.stepsDone(), steps);
        EXPECT_EQ(run.output.printed, "14\n");
    }
}

TEST(MachineTest, EveryStateComesAgain) {
    Session run{squares};
    run.machine.run(0);
    const auto begin = run.machine.snapshot();
    std::vector<std::pair<std::uint32_t, std::size_t>> states;
    do {
        states.emplace_back(run.machine.line(), run.machine.depth());
    } while (run.machine.step().canGoOn());
    for (std::size_t step = states.size(); step-- > 0;) {
        run.machine.restore(*begin);
        run.machine.run(step);
        EXPECT_EQ(run.machine.line(), states[step].first) << step;
        EXPECT_EQ(run.machine.depth(), states[step].second) << step;
    }
}

TEST(MachineTest, ASnapshotKeepsItsTexts) {
    Session run{
        "void main() {\n    string s = \"a\" + \"b\";\n    string t = s;\n    s = \"\";\n"
        "    t = \"\";\n    for (int i = 0; i < 200000; i++) {\n"
        "        t = t + \"0123456789\";\n        if (i / 100 * 100 == i) { t = \"\"; }\n    }\n"
        "}\n"};
    run.machine.run(2);
    const std::uint64_t address = run.value("s");
    EXPECT_EQ(run.machine.textAt(address), "ab");
    const auto snapshot = run.machine.snapshot();
    EXPECT_EQ(run.machine.run().reason, Stop::Reason::Ended);
    EXPECT_EQ(run.machine.textAt(address), "ab");
    run.machine.restore(*snapshot);
    EXPECT_EQ(run.machine.textAt(run.value("s")), "ab");
}

TEST(MachineTest, ChangesSlots) {
    Session run{"void main() {\n    int a = 1;\n    string s = \"\";\n    print(a, s);\n}\n"};
    run.machine.run(2);
    run.machine.setValue(run.machine.call(0), run.variable("a").slot, 42, Tags::whole);
    run.machine.setValue(run.machine.call(0), run.variable("s").slot, run.machine.makeText("\\n"),
                         Tags::text);
    run.machine.run();
    EXPECT_EQ(run.output.printed, "42\\n");
}

TEST(MachineTest, AFaultHasPlaceWordsAndCalls) {
    Session run{
        "int pick(int i) {\n    int a[3] = {1, 2, 3};\n    int v = a[i];\n    return v;\n}\n"
        "void main() {\n    print(\"x\");\n    int r = pick(3);\n}\n"};
    EXPECT_EQ(run.machine.run().reason, Stop::Reason::Faulted);
    EXPECT_EQ(run.output.printed, "x");
    EXPECT_EQ(run.machine.fault().rule, Rule::IndexOutside);
    EXPECT_EQ(reportOf(*run.compilation, "p.krl", run.machine, false),
              "p.krl:3:13: error: index 3 is outside of `a`, whose indexes are 0 to 2 "
              "[index-outside]\n"
              " 3 |     int v = a[i];\n"
              "   |             ^^^^\n"
              "   help: compare the index with the size of the array first\n"
              "   in `pick`\n"
              "   called in `main` at p.krl:8:13\n");
}

TEST(MachineTest, AFullStackIsToldWithTheCallsAtItsEnds) {
    Session run{"void down() {\n    down();\n}\nvoid main() {\n    down();\n}\n"};
    EXPECT_EQ(run.machine.run().reason, Stop::Reason::Faulted);
    EXPECT_EQ(run.machine.fault().rule, Rule::DeepRecursion);
    const std::string report = reportOf(*run.compilation, "p.krl", run.machine, false);
    EXPECT_NE(report.find(" more calls ..."), report.npos);
    EXPECT_LT(std::ranges::count(report, '\n'), 30);
    EXPECT_EQ(report.substr(report.size() - 33), "   called in `main` at p.krl:5:5\n");
}

TEST(MachineTest, TrapsEndAnUncheckedRun) {
    const auto trapOf = [](const std::string& statements) {
        Session run{
            "void down() { down(); }\nvoid main() {\n    int z = 0;\n    string none[1];\n" +
                statements + "}\n",
            false};
        return run.machine.run().trap;
    };
    EXPECT_EQ(trapOf("z = 1 / z;"), Trap::DivisionByZero);
    EXPECT_EQ(trapOf("down();"), Trap::StackOverflow);
    EXPECT_EQ(trapOf("int a[1]; z = 1000000000; a[z] = 1;"), Trap::InvalidAccess);
    EXPECT_EQ(trapOf("print(none[0]);"), Trap::InvalidAccess);
    // -(2^31 - 1)^2 * 2 is 2^33 - 2 above the least int.
    EXPECT_EQ(trapOf("int m = 0 - 2147483647; m = m * 2147483647 * 2 - 2147483647 * 4 - 2;"
                     "z = z - 1; z = m / z;"),
              Trap::DivisionOverflow);
}

TEST(MachineTest, CountsLines) {
    Session run{squares, true, {false, true}};
    run.machine.run();
    const Function& square = run.code.functions[0];
    for (std::size_t line = square.firstLine; line < square.lineEnd; ++line) {
        EXPECT_EQ(run.machine.counts()[line], 3U);
    }
}

TEST(MachineTest, TellsOfFunctionsThatAreElsewhere) {
    Session run{"void main() {\n    int a[1] = {abs(1)};\n}\n"};
    const Stop stop = run.machine.run();
    EXPECT_EQ(stop.reason, Stop::Reason::Foreign);
    EXPECT_EQ(stop.name, "abs");
}

}  // namespace

}  // namespace krel::Execution
