#include "tools/debug/history.hpp"

#include <gtest/gtest.h>

#include <cstdint>

namespace krel::Debug {
namespace {

History::Entry entryAt(std::uint64_t step, std::size_t bytes = 1) {
    return {step, 0, bytes, nullptr};
}

TEST(DebugHistoryTest, FindsTheLastEntryUpToAStep) {
    History history{10, 1000};
    EXPECT_EQ(history.upTo(5), nullptr);
    for (const std::uint64_t step : {10U, 20U, 30U}) {
        history.add(entryAt(step));
    }
    EXPECT_EQ(history.upTo(9), nullptr);
    EXPECT_EQ(history.upTo(10)->step, 10U);
    EXPECT_EQ(history.upTo(29)->step, 20U);
    EXPECT_EQ(history.upTo(1000)->step, 30U);
}

TEST(DebugHistoryTest, EntriesMayComeInAnyOrder) {
    History history{10, 1000};
    for (const std::uint64_t step : {30U, 10U, 20U, 10U}) {
        history.add(entryAt(step));
    }
    EXPECT_EQ(history.all().size(), 3U);
    EXPECT_EQ(history.upTo(25)->step, 20U);
}

TEST(DebugHistoryTest, ForgetsWhatComesBehind) {
    History history{10, 1000};
    for (const std::uint64_t step : {10U, 20U, 30U}) {
        history.add(entryAt(step));
    }
    history.forgetAfter(20);
    EXPECT_EQ(history.upTo(1000)->step, 20U);
    EXPECT_EQ(history.all().size(), 2U);
}

TEST(DebugHistoryTest, KeepsDenseNearTheEndAndSparseFarBack) {
    constexpr std::size_t most = 32;
    constexpr std::uint64_t steps = 100'000;
    History history{most, 1'000'000};
    for (std::uint64_t step = 0; step <= steps; ++step) {
        history.add(entryAt(step));
        ASSERT_LE(history.all().size(), most);
    }
    EXPECT_EQ(history.all().front().step, 0U);
    EXPECT_EQ(history.all().back().step, steps);
    // From an entry to any place before the next one it is never farther than that place is back.
    for (std::size_t index = 1; index < history.all().size(); ++index) {
        const std::uint64_t gap = history.all()[index].step - history.all()[index - 1].step;
        const std::uint64_t back = steps - history.all()[index - 1].step;
        EXPECT_LE(gap, back / 2 + 2) << "before step " << history.all()[index].step;
    }
}

TEST(DebugHistoryTest, BoundsTheBytes) {
    History history{1000, 100};
    for (std::uint64_t step = 0; step < 500; ++step) {
        history.add(entryAt(step, 9));
        ASSERT_LE(history.all().size(), 12U);
    }
    EXPECT_GT(history.all().size(), 8U);
}

TEST(DebugHistoryTest, KeepsThreeHoweverLarge) {
    History history{1000, 100};
    for (std::uint64_t step = 0; step < 50; ++step) {
        history.add(entryAt(step, 1'000'000));
    }
    EXPECT_EQ(history.all().size(), 3U);
    history.forgetAfter(0);
    EXPECT_EQ(history.all().size(), 1U);
}

TEST(DebugHistoryTest, AddingFarBackKeepsThatPartDense) {
    History history{16, 1'000'000};
    for (std::uint64_t step = 0; step <= 10'000; ++step) {
        history.add(entryAt(step));
    }
    for (std::uint64_t step = 5000; step <= 5100; ++step) {
        history.add(entryAt(step));
    }
    EXPECT_EQ(history.upTo(5099)->step, 5099U);
    EXPECT_EQ(history.all().back().step, 10'000U);
}

}  // namespace
}  // namespace krel::Debug
