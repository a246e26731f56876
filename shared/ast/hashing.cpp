// The hash of long texts, and the random numbers it depends on. Comes in: a text, and what the
// kernel hands to the process at its start. Goes out: a number. Nothing is changed.

#include "shared/ast/hashing.hpp"

#include <sys/auxv.h>

#include <bit>
#include <cstring>

namespace krel {

namespace {

/// Up to eight bytes as a number, the first one lowest.
std::uint64_t wordOf(std::string_view bytes) {
    return std::accumulate(
        bytes.rbegin(), bytes.rend(), std::uint64_t{0},
        [](std::uint64_t word, char byte) { return word << 8 | static_cast<unsigned char>(byte); });
}

/// The same for the first eight bytes of at least eight; x86 stores numbers in that order.
std::uint64_t fullWordOf(std::string_view bytes) {
    std::uint64_t word;
    std::memcpy(&word, bytes.data(), sizeof word);
    return word;
}

/// The state of SipHash: four words, mixed by additions, rotations and exclusive ors.
class SipState {
public:
    SipState(std::uint64_t first, std::uint64_t second)
        : v0(first ^ 0x736f6d6570736575),
          v1(second ^ 0x646f72616e646f6d),
          v2(first ^ 0x6c7967656e657261),
          v3(second ^ 0x7465646279746573) {}

    void take(std::uint64_t word) {
        v3 ^= word;
        mix();
        v0 ^= word;
    }

    std::uint64_t finish() {
        v2 ^= 0xFF;
        mix();
        mix();
        mix();
        return v0 ^ v1 ^ v2 ^ v3;
    }

private:
    void mix() {
        v0 += v1;
        v1 = std::rotl(v1, 13) ^ v0;
        v0 = std::rotl(v0, 32);
        v2 += v3;
        v3 = std::rotl(v3, 16) ^ v2;
        v0 += v3;
        v3 = std::rotl(v3, 21) ^ v0;
        v2 += v1;
        v1 = std::rotl(v1, 17) ^ v2;
        v2 = std::rotl(v2, 32);
    }

    std::uint64_t v0;
    std::uint64_t v1;
    std::uint64_t v2;
    std::uint64_t v3;
};

/// The kernel hands sixteen random bytes to every program that it starts.
HashSecret makeSecret() {
    std::uint64_t random[2];
    std::memcpy(random, reinterpret_cast<const void*>(getauxval(AT_RANDOM)), sizeof random);
    const auto derive = [&random](std::string_view purpose) {
        return sipHash(purpose, random[0], random[1]);
    };
    return {derive("first"), derive("second"), derive("multiplier") | 1};
}

}  // namespace

const HashSecret& hashSecret() {
    static const HashSecret secret = makeSecret();
    return secret;
}

std::uint64_t sipHash(std::string_view text, std::uint64_t first, std::uint64_t second) {
    constexpr std::size_t wordSize = 8;
    SipState state{first, second};
    std::string_view rest = text;
    for (; rest.size() >= wordSize; rest.remove_prefix(wordSize)) {
        state.take(fullWordOf(rest));
    }
    state.take(std::uint64_t{text.size()} << 56 | wordOf(rest));
    return state.finish();
}

}  // namespace krel
