#include "codegen/runtime/stringHeap.hpp"

#include "codegen/runtime/systemCalls.hpp"
#include "codegen/runtime/traps.hpp"

namespace krel {

constinit StringHeap stringHeap;

void StringHeap::open() {
    constexpr std::size_t largest = std::size_t{1} << 44;
    constexpr std::size_t smallest = std::size_t{1} << 22;
    constexpr long readAndWrite = 3;
    constexpr long privateAnonymousUnreserved = 0x02 | 0x20 | 0x4000;
    for (std::size_t wanted = largest; wanted >= smallest; wanted /= 2) {
        const long address = system::call(system::number::mmap, 0, static_cast<long>(wanted),
                                          readAndWrite, privateAnonymousUnreserved, -1, 0);
        if (address > 0) {
            begin = next = static_cast<std::uintptr_t>(address);
            size = wanted;
            return;
        }
    }
}

char* StringHeap::allocate(std::size_t length) {
    constexpr std::size_t slack = 32;
    const std::size_t needed = (sizeof(std::size_t) + length + slack) & ~std::size_t{7};
    if (needed > begin + size - next) {
        endOutOfMemory();
    }
    *reinterpret_cast<std::size_t*>(next) = length;
    char* text = reinterpret_cast<char*>(next + sizeof(std::size_t));
    text[length] = '\0';
    next += needed;
    return text;
}

}  // namespace krel
