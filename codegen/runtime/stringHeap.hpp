// The memory of the strings that the program makes.
//
// All of them lie in one reserved address range, so that a pointer's value tells whether a text was
// made here or is a literal. A string is its length in eight bytes, the text, and a NUL.
#pragma once

#include <cstddef>
#include <cstdint>

namespace krel {

class StringHeap {
public:
    constexpr StringHeap() = default;
    StringHeap(const StringHeap&) = delete;
    StringHeap& operator=(const StringHeap&) = delete;

    // Reserves the address range. Without it the first allocation fails.
    void open();

    // Returns room for a text of `length` bytes; its NUL and its length are set already. The text
    // may be written with up to 15 bytes beyond it. Ends the program when memory is exhausted.
    char* allocate(std::size_t length);

    // Whether the text is one that this heap handed out.
    bool owns(const char* text) const {
        return reinterpret_cast<std::uintptr_t>(text) - begin < size;
    }

    // The length of a text of this heap.
    static std::size_t lengthOf(const char* text) {
        return *reinterpret_cast<const std::size_t*>(text - sizeof(std::size_t));
    }

private:
    std::uintptr_t begin = 0;
    std::size_t size = 0;
    std::uintptr_t next = 0;
};

// The heap of the program's strings.
extern StringHeap stringHeap;

}  // namespace krel
