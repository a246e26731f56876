#include "codegen/runtime/addressRange.hpp"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include "tests/unit/support/childProcess.hpp"

namespace {

constexpr std::size_t pageSize = 4096;
constexpr std::size_t megabyte = std::size_t{1} << 20;

char& byteAt(std::uintptr_t address) {
    return *reinterpret_cast<char*>(address);
}

}  // namespace

TEST(AddressRangeTest, ReservedAddressesAreUsableAsFarAsAsked) {
    const std::uintptr_t begin = krel::reserveAddresses(megabyte);
    ASSERT_NE(begin, 0U);
    krel::AddressRange range(begin, megabyte, 16 * pageSize);
    EXPECT_EQ(range.begin(), begin);
    EXPECT_EQ(range.size(), megabyte);

    ASSERT_TRUE(range.makeUsable(1));
    byteAt(begin) = 'a';
    byteAt(begin + 16 * pageSize - 1) = 'b';  // memory comes in whole pieces
    ASSERT_TRUE(range.makeUsable(20 * pageSize));
    byteAt(begin + 20 * pageSize - 1) = 'c';
    EXPECT_EQ(byteAt(begin), 'a');
    krel::releaseAddresses(begin, megabyte);
}

TEST(AddressRangeTest, LastPieceMayBeShort) {
    const std::uintptr_t begin = krel::reserveAddresses(5 * pageSize);
    krel::AddressRange range(begin, 5 * pageSize, 4 * pageSize);
    ASSERT_TRUE(range.makeUsable(5 * pageSize));
    byteAt(begin + 5 * pageSize - 1) = 'z';
    EXPECT_FALSE(range.makeUsable(5 * pageSize + 1));
    krel::releaseAddresses(begin, 5 * pageSize);
}

TEST(AddressRangeTest, ContainsItsReservedAddressesOnly) {
    const krel::AddressRange range(8 * pageSize, 2 * pageSize, pageSize);
    EXPECT_FALSE(range.contains(0));
    EXPECT_FALSE(range.contains(8 * pageSize - 1));
    EXPECT_TRUE(range.contains(8 * pageSize));
    EXPECT_TRUE(range.contains(10 * pageSize - 1));
    EXPECT_FALSE(range.contains(10 * pageSize));
    EXPECT_FALSE(krel::AddressRange().contains(0));
}

TEST(AddressRangeTest, RefusedReservationIsZero) {
    EXPECT_EQ(krel::reserveAddresses(std::size_t{1} << 62), 0U);
}

TEST(AddressRangeTest, ReleasedMemoryStaysUsable) {
    const std::uintptr_t begin = krel::reserveAddresses(megabyte);
    krel::AddressRange range(begin, megabyte, megabyte);
    ASSERT_TRUE(range.makeUsable(megabyte));
    byteAt(begin + 5 * pageSize) = 'x';
    krel::releaseMemory(begin, megabyte);
    byteAt(begin + 5 * pageSize) = 'y';
    EXPECT_EQ(byteAt(begin + 5 * pageSize), 'y');
    krel::releaseAddresses(begin, megabyte);
}

TEST(AddressRangeTest, OthersNeedAddressesOnlyWhereTheyAreLimited) {
    EXPECT_EQ(krel::addressesForOthers(), 0U);
#ifndef __SANITIZE_ADDRESS__  // its shadow memory is larger than any limit
    const ChildResult child = runInChild([] {
        const rlimit stack = {4 * megabyte, 4 * megabyte};
        const rlimit addresses = {512 * megabyte, 512 * megabyte};
        setrlimit(RLIMIT_STACK, &stack);
        setrlimit(RLIMIT_AS, &addresses);
        return krel::addressesForOthers() >= 4 * megabyte ? 0 : 1;
    });
    EXPECT_TRUE(child.hasExitedWith(0));
#endif
}
