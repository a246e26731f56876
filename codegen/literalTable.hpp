#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

/// Literals of one type and the numbers of their labels, in order of first appearance. Each is kept
/// once, as it is written; the texts stay the caller's.
class LiteralTable {
public:
    bool empty() const { return texts.empty(); }
    void clear() {
        numbers.clear();
        texts.clear();
    }

    /// The number of a literal, which is added unless it is known.
    std::size_t add(std::string_view literal) {
        const auto [entry, isNew] = numbers.try_emplace(literal, texts.size());
        if (isNew) {
            texts.push_back(literal);
        }
        return entry->second;
    }

    /// The number of a literal, if it is known.
    std::optional<std::size_t> find(std::string_view literal) const {
        const auto entry = numbers.find(literal);
        return entry == numbers.end() ? std::nullopt : std::optional{entry->second};
    }

    /// Calls `use` with the number and the text of every literal, ordered by the digits of the
    /// number as a text is: 10 comes before 2.
    template <typename Use>
    void forEachByLabel(Use use) const {
        forEachFrom(0, use);
    }

private:
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

    std::unordered_map<std::string_view, std::size_t> numbers;
    std::vector<std::string_view> texts;
};
