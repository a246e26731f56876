#include "codegen/valueTable.hpp"

#include <algorithm>
#include <array>
#include <utility>

#include "codegen/irText.hpp"

namespace {

struct Keyword {
    std::string_view text;
    std::uint32_t wordClass;
};

/// The words that are never names of values.
constexpr std::array<Keyword, 21> keywords = {{
    {"arg", WordClass::arg},
    {"boolean", WordClass::integerType},
    {"call", WordClass::call},
    {"character", WordClass::integerType},
    {"double", WordClass::doubleType},
    {"false", WordClass::boolean},
    {"goto", WordClass::jump},
    {"if", WordClass::branch},
    {"int", WordClass::integerType},
    {"param", WordClass::param},
    {"return", WordClass::leave},
    {"string", WordClass::integerType},
    {"true", WordClass::boolean},
    {"void", WordClass::voidType},
    {"inttodouble", WordClass::intToDouble},
    {"inttochar", WordClass::conversion},
    {"chartoint", WordClass::conversion},
    {"inttostring", WordClass::conversion},
    {"doubletostring", WordClass::doubleToString},
    {"booltostring", WordClass::conversion},
    {"chartostring", WordClass::conversion},
}};

}  // namespace

ValueTable::ValueTable() : keywordCount(keywords.size()) {
    for (const Keyword& keyword : keywords) {
        const WordText word{keyword.text};
        const std::size_t slot = slotOf(word);
        insert(word, slot);
        slots[slot].wordClass = keyword.wordClass;
    }
}

ValueTable::Entry ValueTable::insert(const WordText& word, std::size_t slot) {
    words.emplace_back().slot = slot;
    words.back().value.name = word.text();
    const Entry entry{word.key(), static_cast<std::uint32_t>(words.size()),
                      isBlockName(word.text()) ? WordClass::blockName : WordClass::value};
    slots[slot] = entry;
    if (words.size() * 2 > slots.size()) {
        grow();
    }
    return entry;
}

// Only what is used: the table may be as large as the largest function needed it.
void ValueTable::clear() {
    const auto added = words.begin() + static_cast<std::ptrdiff_t>(keywordCount);
    for (auto word = added; word != words.end(); ++word) {
        slots[word->slot] = {};
    }
    words.erase(added, words.end());
}

void ValueTable::grow() {
    const std::vector<Entry> old = std::exchange(slots, std::vector<Entry>(slots.size() * 2));
    for (Word& word : words) {
        const Entry entry = old[word.slot];
        word.slot = slotOf(WordText{word.value.name, entry.key});
        slots[word.slot] = entry;
    }
}

const std::vector<Value*>& ValueTable::inOrder() {
    places.clear();
    for (Word& word : words) {
        const Entry& entry = slots[word.slot];
        if (entry.wordClass == WordClass::value) {
            places.push_back({WordText{word.value.name, entry.key}.prefix(), &word.value});
        }
    }
    std::sort(places.begin(), places.end(), comesBefore);
    ordered.clear();
    for (const Place& place : places) {
        ordered.push_back(place.value);
    }
    return ordered;
}
