// Micro-benchmarks of the compiler's phases, each on the program that KREL_BENCH_SOURCE names.
//
// Each phase is measured as krelcc runs it, which compiles one program per process: so every
// measurement is a compilation in a process of its own. It runs all phases in order and sends the
// CPU time of each to the parent, which reports the phase that the benchmark is about.
#include <benchmark/benchmark.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <sstream>
#include <string>

#include "KrelIR/KrelIR.hpp"
#include "codegen/codeGenerator.hpp"
#include "parser/facade.hpp"
#include "semantic_analyzer/semanticAnalyzer.hpp"
#include "shared/ast/node.hpp"
#include "shared/error/error.hpp"
#include "shared/symboltable/symbolTable.hpp"

using namespace krel;

namespace {

enum Phase { scanAndParse, analyse, lower, generateCode, write, phaseCount };

/// CPU seconds per phase.
using Times = std::array<double, phaseCount>;

double cpuSeconds() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

template <typename Work>
double timeOf(Work work) {
    const double start = cpuSeconds();
    work();
    return cpuSeconds() - start;
}

/// Compiles the program up to the assembly text and writes that to a file that no one keeps. Only
/// once per process. The process ends when the program has errors.
Times compile(const char* source) {
    Times times{};
    Error::setSourceFile(source);
    times[scanAndParse] = timeOf([&] {
        yyin = std::fopen(source, "r");
        if (yyin == nullptr || yyparse() != 0 || Error::hasErrors()) {
            std::_Exit(1);
        }
        std::fclose(yyin);
    });
    times[analyse] = timeOf([] { SemanticAnalyzer(symbolTable).analyze(ast); });
    if (Error::hasErrors()) {
        std::_Exit(1);
    }
    KrelIR generator;
    times[lower] = timeOf([&] { generator.analyze(ast); });
    std::ostringstream assembly;
    times[generateCode] =
        timeOf([&] { CodeGenerator(symbolTable).generate(generator.getProgram(), assembly); });
    const std::string text = assembly.str();
    std::FILE* unnamed = std::tmpfile();
    if (unnamed == nullptr) {
        std::_Exit(1);
    }
    times[write] = timeOf([&] {
        std::fwrite(text.data(), 1, text.size(), unnamed);
        std::fclose(unnamed);
    });
    return times;
}

/// Compiles in a process of its own. False when that failed, and `times` is not set.
bool compileApart(const char* source, Times& times) {
    std::array<int, 2> channel{};
    if (pipe(channel.data()) != 0) {
        return false;
    }
    const pid_t child = fork();
    if (child == 0) {
        const Times measured = compile(source);
        const bool sent = ::write(channel[1], &measured, sizeof measured) == sizeof measured;
        std::_Exit(sent ? 0 : 1);
    }
    close(channel[1]);
    const bool received = child > 0 && read(channel[0], &times, sizeof times) == sizeof times;
    close(channel[0]);
    if (child > 0) {
        waitpid(child, nullptr, 0);
    }
    return received;
}

void measurePhase(benchmark::State& state, Phase phase) {
    const char* source = std::getenv("KREL_BENCH_SOURCE");
    if (source == nullptr) {
        state.SkipWithError("KREL_BENCH_SOURCE names no program");
        return;
    }
    for ([[maybe_unused]] auto _ : state) {
        Times times{};
        if (!compileApart(source, times)) {
            state.SkipWithError("the program does not compile");
            return;
        }
        state.SetIterationTime(times[phase]);
    }
}

}  // namespace

int main(int argc, char** argv) {
    constexpr std::array<const char*, phaseCount> names = {"scan and parse", "analyse", "lower",
                                                           "generate code", "write"};
    constexpr int compilations = 15;
    for (std::size_t phase = 0; phase < phaseCount; ++phase) {
        benchmark::RegisterBenchmark(names[phase], measurePhase, static_cast<Phase>(phase))
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond)
            ->Iterations(1)
            ->Repetitions(compilations)
            ->ReportAggregatesOnly();
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
