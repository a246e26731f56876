// Address space from the kernel. Comes in: a length. Goes out: reserved addresses, or memory behind
// them. Only the mappings of the process change.

#include "codegen/runtime/addressRange.hpp"

#include <initializer_list>

#include "codegen/runtime/bytes.hpp"
#include "codegen/runtime/systemCalls.hpp"

namespace krel {

namespace {

constexpr long noAccess = 0;
constexpr long readAndWrite = 3;
constexpr long privateAnonymousUnreserved = 0x02 | 0x20 | 0x4000;
constexpr long contentNotNeeded = 4;

std::size_t roundUp(std::size_t length, std::size_t step) {
    return (length + step - 1) / step * step;
}

bool allow(std::uintptr_t from, std::size_t length) {
    return system::call(system::number::mprotect, static_cast<long>(from),
                        static_cast<long>(length), readAndWrite) == 0;
}

struct ResourceLimit {
    std::uint64_t current;
    std::uint64_t greatest;
};

constexpr std::uint64_t unlimited = ~std::uint64_t{0};

std::uint64_t currentLimit(long resource) {
    ResourceLimit limit = {unlimited, unlimited};
    constexpr long thisProcess = 0;
    system::call(system::number::prlimit, thisProcess, resource, 0, system::addressOf(&limit));
    return limit.current;
}

}  // namespace

bool AddressRange::extend(std::size_t length) {
    if (length > reserved) {
        return false;
    }
    const std::size_t rest = reserved - usable;
    const std::size_t missing = roundUp(length - usable, pageSize);
    const std::size_t generous = roundUp(missing, piece);
    for (const std::size_t wanted : {generous < rest ? generous : rest, missing}) {
        if (allow(first + usable, wanted)) {
            usable += wanted;
            return true;
        }
    }
    return false;
}

std::uintptr_t reserveAddresses(std::size_t length) {
    const long address = system::call(system::number::mmap, 0, static_cast<long>(length), noAccess,
                                      privateAnonymousUnreserved, -1, 0);
    return address > 0 ? static_cast<std::uintptr_t>(address) : 0;
}

void releaseAddresses(std::uintptr_t from, std::size_t length) {
    system::call(system::number::munmap, static_cast<long>(from), static_cast<long>(length));
}

void releaseMemory(std::uintptr_t from, std::size_t length) {
    system::call(system::number::madvise, static_cast<long>(from), static_cast<long>(length),
                 contentNotNeeded);
}

std::size_t addressesForOthers() {
    constexpr long stackResource = 3;
    constexpr long addressSpaceResource = 9;
    if (currentLimit(addressSpaceResource) == unlimited) {
        return 0;
    }
    constexpr std::size_t mostForStack = std::size_t{1} << 26;
    constexpr std::size_t forMappings = std::size_t{1} << 22;
    const std::uint64_t stack = currentLimit(stackResource);
    return (stack < mostForStack ? stack : mostForStack) + forMappings;
}

}  // namespace krel
