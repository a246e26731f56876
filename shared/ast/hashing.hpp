// Hashing of texts that an attacker may have chosen: names and literals come from the source. Which
// texts collide depends on random numbers that each process draws, so nobody can write a source
// whose names all collide. Nothing that the compiler writes depends on these numbers.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <string_view>

namespace krel {

/// What the hashes of a process depend on.
struct HashSecret {
    std::uint64_t first;
    std::uint64_t second;
    std::uint64_t multiplier;  // odd
};

/// The secret of this process, the same from its first use on.
const HashSecret& hashSecret();

/// Which of 2^bits chains a key belongs to. The multiplier is that of a secret, and odd. This is
/// universal hashing: two keys that are chosen without knowing the multiplier share a chain with a
/// probability of at most 2 / 2^bits.
inline std::size_t chainOf(std::uint64_t key, std::uint64_t multiplier, unsigned bits) {
    return static_cast<std::size_t>(key * multiplier >> (64 - bits));
}

/// The SipHash-1-3 of a text under two words of a secret.
std::uint64_t sipHash(std::string_view text, std::uint64_t first, std::uint64_t second);

/// A text with the key by which it is looked up; equal texts have equal keys. The key of a short
/// one is made of its characters side by side, which is cheaper than a hash; that of a longer one
/// is a hash.
class KeyedText {
public:
    /// The longest text whose characters fit into a key.
    static constexpr std::size_t maxPackedSize = 9;

    explicit KeyedText(std::string_view itsText)
        : KeyedText(itsText, itsText.size() <= maxPackedSize ? pack(itsText) : 0) {}
    /// For a caller that has already put `packed` together by packNext, while finding the end of
    /// the text.
    KeyedText(std::string_view itsText, std::uint64_t packed)
        : characters(itsText), number(itsText.size() <= maxPackedSize ? packed : hash(itsText)) {}

    /// Adds a character to what those before it have made; before the first one, that is 0. The
    /// topmost bit stays clear for ASCII; texts of other bytes may share a key, a few hundred at
    /// most.
    static std::uint64_t packNext(std::uint64_t packed, char next) {
        return std::rotl(packed, 7) ^ static_cast<unsigned char>(next);
    }
    static std::uint64_t pack(std::string_view text) {
        return std::accumulate(text.begin(), text.end(), std::uint64_t{0}, packNext);
    }

    std::string_view text() const { return characters; }
    std::uint64_t key() const { return number; }
    /// Whether no other word - a text of letters, digits and '_' - has the same key.
    bool isUniqueWord() const { return (number & longMark) == 0; }

private:
    static constexpr std::uint64_t longMark = std::uint64_t{1} << 63;

    static std::uint64_t hash(std::string_view text) {
        const HashSecret& secret = hashSecret();
        return sipHash(text, secret.first, secret.second) | longMark;
    }

    std::string_view characters;
    std::uint64_t number;
};

}  // namespace krel
