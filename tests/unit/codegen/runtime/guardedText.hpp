#pragma once

#include <sys/mman.h>

#include <cstddef>
#include <cstring>
#include <string_view>

/// Some pages of memory that end where nothing is mapped: reading or writing beyond them kills the
/// test.
class GuardedPages {
public:
    static constexpr std::size_t pageSize = 4096;

    explicit GuardedPages(std::size_t pageCount)
        : size(pageCount * pageSize),
          begin(static_cast<char*>(mmap(nullptr, size + pageSize, PROT_READ | PROT_WRITE,
                                        MAP_PRIVATE | MAP_ANONYMOUS, -1, 0))) {
        mprotect(begin + size, pageSize, PROT_NONE);
    }
    GuardedPages(const GuardedPages&) = delete;
    GuardedPages& operator=(const GuardedPages&) = delete;
    ~GuardedPages() { munmap(begin, size + pageSize); }

    char* end() const { return begin + size; }

    /// Writes the text and its NUL so that the NUL is the last byte; returns where it begins.
    char* putAtEnd(std::string_view text) const {
        char* place = end() - text.size() - 1;
        std::memcpy(place, text.data(), text.size());
        place[text.size()] = '\0';
        return place;
    }

    const std::size_t size;
    char* const begin;
};
