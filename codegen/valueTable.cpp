#include "codegen/valueTable.hpp"

#include <algorithm>
#include <array>

#include "codegen/irText.hpp"

namespace {

/// The words that are never names of values.
constexpr std::array<std::string_view, 21> keywords = {
    "arg",         "boolean",     "call",           "character",
    "double",      "false",       "goto",           "if",
    "int",         "param",       "return",         "string",
    "true",        "void",        "inttodouble",    "inttochar",
    "chartoint",   "inttostring", "doubletostring", "booltostring",
    "chartostring"};

std::uint64_t prefixOf(std::string_view name) {
    std::uint64_t prefix = 0;
    for (std::size_t index = 0; index < sizeof prefix; ++index) {
        const char character = index < name.size() ? name[index] : '\0';
        prefix = prefix << 8 | static_cast<unsigned char>(character);
    }
    return prefix;
}

}  // namespace

ValueTable::ValueTable() : keywordCount(keywords.size()) {
    for (const std::string_view keyword : keywords) {
        add(keyword);
        words.back().hasValue = false;
    }
}

void ValueTable::insert(std::string_view name, std::uint64_t key, std::uint32_t slot) {
    Word& word = words.emplace_back();
    word.key = key;
    word.slot = slot;
    word.hasValue = !isBlockName(name);
    word.value.name = name;
    slots[slot] = static_cast<std::uint32_t>(words.size());
    if (words.size() * 2 > slots.size()) {
        grow();
    }
}

// Only what is used: the table may be as large as the largest function needed it.
void ValueTable::clear() {
    const auto added = words.begin() + static_cast<std::ptrdiff_t>(keywordCount);
    for (auto word = added; word != words.end(); ++word) {
        slots[word->slot] = 0;
    }
    words.erase(added, words.end());
}

void ValueTable::grow() {
    slots.assign(slots.size() * 2, 0);
    std::uint32_t number = 0;
    for (Word& word : words) {
        word.slot = slotOf(word.value.name, word.key);
        slots[word.slot] = ++number;
    }
}

const std::vector<Value*>& ValueTable::inOrder() {
    places.clear();
    for (Word& word : words) {
        if (word.hasValue) {
            places.push_back({prefixOf(word.value.name), &word.value});
        }
    }
    std::sort(places.begin(), places.end(), comesBefore);
    ordered.clear();
    for (const Place& place : places) {
        ordered.push_back(place.value);
    }
    return ordered;
}
