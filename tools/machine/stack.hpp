#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "tools/machine/code.hpp"

namespace krel::Execution {

/// The stack of a program: slots, and a tag for each if the run is checked. It grows down. Only
/// what is touched takes memory.
class Stack {
public:
    /// Throws std::bad_alloc when there are no addresses for so many bytes of slots.
    Stack(std::size_t size, bool withTags);
    Stack(const Stack&) = delete;
    Stack& operator=(const Stack&) = delete;
    ~Stack();

    std::uint64_t* begin() const { return slots; }
    std::uint64_t* end() const { return slots + count; }
    std::size_t size() const { return count; }
    /// Whether there is such a slot.
    bool contains(const std::uint64_t* slot) const {
        return (reinterpret_cast<std::uintptr_t>(slot) - reinterpret_cast<std::uintptr_t>(slots)) /
                   sizeof(std::uint64_t) <
               count;
    }
    /// The tag of a slot.
    Tag* tagOf(const std::uint64_t* slot) const { return tags + (slot - slots); }
    bool hasTags() const { return tags != nullptr; }

    /// Takes the tags of `slots` slots below `end` away, and of some more below these, which nobody
    /// uses. Mostly that is one store.
    static void clearTags(Tag* end, std::ptrdiff_t slots) {
        for (std::ptrdiff_t done = 0; done < slots; done += clearedAtOnce) {
            std::memset(end - done - clearedAtOnce, Tags::unset, clearedAtOnce);
        }
    }

private:
    static constexpr std::ptrdiff_t clearedAtOnce = 32;

    std::size_t count;  // slots
    std::uint64_t* slots;
    Tag* tags = nullptr;
};

}  // namespace krel::Execution
