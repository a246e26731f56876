// Single functions of the runtime beside what the standard library has for the same purpose:
// numbers to text, allocation, copying by length. The functions are compiled like the rest of the
// compiler here, not with the runtime object's flags.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <vector>

#include "codegen/runtime/bytes.hpp"
#include "codegen/runtime/doubleText.hpp"
#include "codegen/runtime/integerText.hpp"
#include "codegen/runtime/stringHeap.hpp"

namespace {

constexpr std::size_t valueCount = 1 << 12;
constexpr std::size_t roomForNumber = 32;

// ---- Numbers to text ----

/// Doubles with random digits, between 0 and a million.
std::vector<double> makeDoubles() {
    std::mt19937_64 random(1);
    std::uniform_real_distribution<double> moderate(0, 1e6);
    std::vector<double> values(valueCount);
    for (double& value : values) {
        value = moderate(random);
    }
    return values;
}

/// Integers of every number of bits equally often.
std::vector<std::int64_t> makeIntegers() {
    std::mt19937_64 random(1);
    std::vector<std::int64_t> values(valueCount);
    for (std::int64_t& value : values) {
        const std::uint64_t bits = random();
        value = static_cast<std::int64_t>(bits) >> bits % 64;
    }
    return values;
}

char* doubleByRuntime(char* to, double value) {
    return krel::writeDouble(to, value);
}

char* integerByRuntime(char* to, std::int64_t value) {
    *to = '-';
    return krel::DecimalInteger(krel::magnitudeOf(value)).write(to + (value < 0 ? 1 : 0));
}

template <typename Number>
char* byToChars(char* to, Number value) {
    return std::to_chars(to, to + roomForNumber, value).ptr;
}

template <int digits>
char* doubleByPrintf(char* to, double value) {
    return to + std::snprintf(to, roomForNumber, "%.*g", digits, value);
}

char* integerByPrintf(char* to, std::int64_t value) {
    return to + std::snprintf(to, roomForNumber, "%lld", static_cast<long long>(value));
}

template <typename Number>
void writeNumbers(benchmark::State& state, char* (*write)(char*, Number),
                  std::vector<Number> (*makeValues)()) {
    const std::vector<Number> values = makeValues();
    char text[roomForNumber];
    std::size_t next = 0;
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(write(text, values[next++ % valueCount]));
        benchmark::ClobberMemory();
    }
}

BENCHMARK_CAPTURE(writeNumbers, double_runtime, doubleByRuntime, makeDoubles);
BENCHMARK_CAPTURE(writeNumbers, double_to_chars, byToChars<double>, makeDoubles);
BENCHMARK_CAPTURE(writeNumbers, double_snprintf_17, doubleByPrintf<17>, makeDoubles);
BENCHMARK_CAPTURE(writeNumbers, double_snprintf_6, doubleByPrintf<6>, makeDoubles);
BENCHMARK_CAPTURE(writeNumbers, integer_runtime, integerByRuntime, makeIntegers);
BENCHMARK_CAPTURE(writeNumbers, integer_to_chars, byToChars<std::int64_t>, makeIntegers);
BENCHMARK_CAPTURE(writeNumbers, integer_snprintf, integerByPrintf, makeIntegers);

// ---- Allocation: strings that are dead at once, collections included ----

void allocateFromHeap(benchmark::State& state) {
    const auto length = static_cast<std::size_t>(state.range(0));
    for ([[maybe_unused]] auto _ : state) {
        char* text = krel::stringHeap.allocate(length);
        benchmark::DoNotOptimize(krel::StringHeap::setEnd(text, text + length));
    }
    state.counters["collections"] = static_cast<double>(krel::stringHeap.collections());
}

void allocateByMalloc(benchmark::State& state) {
    const auto length = static_cast<std::size_t>(state.range(0));
    for ([[maybe_unused]] auto _ : state) {
        char* text = static_cast<char*>(std::malloc(length + 1));
        benchmark::DoNotOptimize(text);
        text[length] = '\0';
        benchmark::ClobberMemory();
        std::free(text);
    }
}

constexpr std::int64_t allocatedLengths[] = {8, 100, 1000, 10'000, 100'000, 1'000'000};

void allocatedLengthsOf(benchmark::internal::Benchmark* measurement) {
    for (const std::int64_t length : allocatedLengths) {
        measurement->Arg(length);
    }
}

BENCHMARK(allocateFromHeap)->Apply(allocatedLengthsOf);
BENCHMARK(allocateByMalloc)->Apply(allocatedLengthsOf);

// ---- Copying ----

void copyByRuntime(char* to, const char* from, std::size_t length) {
    krel::copyText(to, from, length);
}

void copyByLibrary(char* to, const char* from, std::size_t length) {
    std::memcpy(to, from, length);
}

void copy(benchmark::State& state, void (*copyBytes)(char*, const char*, std::size_t)) {
    const auto length = static_cast<std::size_t>(state.range(0));
    const std::vector<char> from(length + krel::chunkSize, 'x');
    std::vector<char> to(length + krel::chunkSize);
    for ([[maybe_unused]] auto _ : state) {
        copyBytes(to.data(), from.data(), length);
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * state.range(0));
}

BENCHMARK_CAPTURE(copy, runtime, copyByRuntime)->RangeMultiplier(8)->Range(1, 1 << 24);
BENCHMARK_CAPTURE(copy, memcpy, copyByLibrary)->RangeMultiplier(8)->Range(1, 1 << 24);

}  // namespace

int main(int count, char** arguments) {
    // The environment stands above all frames of the stack when a process begins.
    krel::stringHeap.open(reinterpret_cast<std::uintptr_t>(environ));
    benchmark::Initialize(&count, arguments);
    if (benchmark::ReportUnrecognizedArguments(count, arguments)) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
