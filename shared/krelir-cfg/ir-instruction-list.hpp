#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "shared/krelir-cfg/ir-instruction.hpp"

/// A sequence of instructions that keeps their texts one behind the other in a single string.
/// Owns the texts; what it gives out are views of them.
class IRInstructionList {
public:
    class Iterator {
    public:
        Iterator(const IRInstructionList& instructions, std::size_t position)
            : list(&instructions), index(position) {}
        IRInstruction operator*() const {
            const std::size_t size = list->ends[index] - textBegin;
            return {{list->texts.data() + textBegin, size}, list->separations[index]};
        }
        Iterator& operator++() {
            textBegin = list->ends[index++];
            return *this;
        }
        bool operator==(const Iterator& other) const { return index == other.index; }

    private:
        const IRInstructionList* list;
        std::size_t index;
        std::size_t textBegin = 0;
    };

    std::size_t size() const { return ends.size(); }
    bool empty() const { return ends.empty(); }
    /// `index` must be below size(); so for back() of an empty list.
    IRInstruction operator[](std::size_t index) const {
        const std::size_t begin = index == 0 ? 0 : ends[index - 1];
        return {std::string_view{texts}.substr(begin, ends[index] - begin), separations[index]};
    }
    IRInstruction back() const { return (*this)[size() - 1]; }
    Iterator begin() const { return {*this, 0}; }
    Iterator end() const { return {*this, size()}; }

    /// Appends an instruction whose text is that of all the parts.
    template <typename... Parts>
    void add(bool separated, const Parts&... parts) {
        const std::size_t size = texts.size() + (std::string_view{parts}.size() + ...);
        if (size > texts.capacity()) {
            texts.reserve(std::max(size, texts.capacity() * 2 + firstReserve));
        }
        (texts.append(parts), ...);
        ends.push_back(texts.size());
        separations.push_back(separated);
    }

private:
    static constexpr std::size_t firstReserve = 128;  // bytes, for a block of a few lines

    std::string texts;
    std::vector<std::size_t> ends;  // of each text, where the next one begins
    std::vector<bool> separations;
};
