#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

#include "shared/ast/textIndex.hpp"

namespace krel {

/// Literals of one type and the numbers of their labels, in order of first appearance. Each is kept
/// once, as it is written; the texts stay the caller's.
class LiteralTable {
public:
    bool empty() const { return texts.empty(); }
    void clear() {
        index.shrink(0);
        texts.clear();
    }

    /// The number of a literal, which is added unless it is known.
    std::size_t add(std::string_view literal) {
        const KeyedText text{literal};
        if (const std::optional<std::size_t> number = find(text)) {
            return *number;
        }
        texts.push_back(literal);
        return index.add(text) - 1;
    }

    /// The number of a literal, if it is known.
    std::optional<std::size_t> find(std::string_view literal) const {
        return find(KeyedText{literal});
    }

    /// Calls `use` with the number and the text of every literal, ordered by the digits of the
    /// number as a text is: 10 comes before 2.
    template <typename Use>
    void forEachByLabel(Use use) const {
        forEachFrom(0, use);
    }

private:
    std::optional<std::size_t> find(const KeyedText& literal) const {
        const std::uint32_t found = index.find(
            literal, [&](std::uint32_t number) { return texts[number - 1] == literal.text(); });
        return found == 0 ? std::nullopt : std::optional<std::size_t>{found - 1};
    }

    /// The numbers that differ from `first` only in the last digit, and behind each the longer ones
    /// that begin with its digits.
    template <typename Use>
    void forEachFrom(std::size_t first, Use use) const {
        for (std::size_t number = first; number < first + 10 && number < texts.size(); ++number) {
            use(number, texts[number]);
            if (number != 0) {
                forEachFrom(number * 10, use);
            }
        }
    }

    TextIndex index;  // its numbers are those of the labels and one more
    std::vector<std::string_view> texts;
};

}  // namespace krel
