// How many bytes a second the formatter takes, on the program that KREL_BENCH_SOURCE names.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

#include "tools/format/format.hpp"

namespace {

std::string& source() {
    static std::string text;
    return text;
}

void format(benchmark::State& state) {
    for (auto round : state) {
        benchmark::DoNotOptimize(krel::Format::format(source(), "program.krl").text.data());
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                            static_cast<std::int64_t>(source().size()));
}
BENCHMARK(format)->Unit(benchmark::kMillisecond)->Repetitions(3);

}  // namespace

int main(int argumentCount, char** arguments) {
    benchmark::Initialize(&argumentCount, arguments);
    const char* const path = std::getenv("KREL_BENCH_SOURCE");
    std::ifstream file{path == nullptr ? "" : path, std::ios::binary};
    std::ostringstream content;
    content << file.rdbuf();
    source() = content.str();
    if (!krel::Format::format(source(), "program.krl").parses || source().empty()) {
        std::fputs("KREL_BENCH_SOURCE has to name a program\n", stderr);
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
