#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tools/machine/code.hpp"

namespace krel::Execution {

/// Who holds texts. As long as it lives, the texts whose addresses are among its words live.
class TextHolder {
public:
    TextHolder();
    TextHolder(const TextHolder&) = delete;
    TextHolder& operator=(const TextHolder&) = delete;
    virtual ~TextHolder();

    /// All words that may be addresses of texts.
    virtual std::span<const std::uint64_t> words() const = 0;
};

/// The texts that a program makes and the constant ones, by the runtime's own means. Strings are in
/// the one string memory of the process; those that no holder has are taken back now and then. A
/// text is given by the address of its first byte, or of a later one, as in compiled programs.
class Texts {
public:
    /// The code must outlive this object.
    explicit Texts(const Code& itsCode);

    /// Whether there is a text at an address. All others here need that, of each address.
    bool isText(std::uint64_t address) const { return isMade(address) || code.ownsText(address); }

    /// New texts; 0 when memory is exhausted.
    std::uint64_t concatenation(std::uint64_t left, std::uint64_t right);
    std::uint64_t ofWhole(std::int64_t value);
    std::uint64_t ofReal(double value);
    std::uint64_t ofBytes(std::string_view bytes);

    /// Constant texts.
    std::uint64_t ofBoolean(bool value) const;
    std::uint64_t ofCharacter(std::uint64_t code) const;

    /// The bytes that are printed for a text. Valid until the next text is made or asked for.
    std::string_view bytesOf(std::uint64_t address);

private:
    struct Part;

    static bool isMade(std::uint64_t address);
    char* roomFor(std::size_t length, const char* left, const char* right);

    const Code& code;
    std::string decoded;  // a literal without its escapes
};

}  // namespace krel::Execution
