// The memory of a program's stack. Comes in: its size. Goes out: addresses, with memory behind them
// when they are used.

#include "tools/machine/stack.hpp"

#include <sys/mman.h>

#include <new>

namespace krel::Execution {

namespace {

void* reserve(std::size_t bytes) {
    void* const made = mmap(nullptr, bytes, PROT_READ | PROT_WRITE,
                            MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (made == MAP_FAILED) {
        throw std::bad_alloc();
    }
    return made;
}

}  // namespace

Stack::Stack(std::size_t size, bool withTags)
    : count(size / sizeof(std::uint64_t)),
      slots(static_cast<std::uint64_t*>(reserve(count * sizeof(std::uint64_t)))) {
    if (withTags) {
        tags = static_cast<Tag*>(reserve(count + clearedAtOnce)) + clearedAtOnce;
    }
}

Stack::~Stack() {
    munmap(slots, count * sizeof(std::uint64_t));
    if (tags != nullptr) {
        munmap(tags - clearedAtOnce, count + clearedAtOnce);
    }
}

}  // namespace krel::Execution
