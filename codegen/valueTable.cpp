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
    values.emplace_back().name = word.text();
    slotsOfWords.push_back(slot);
    const Entry entry{word.key(), static_cast<std::uint32_t>(values.size()),
                      isBlockName(word.text()) ? WordClass::blockName : WordClass::value};
    slots[slot] = entry;
    if (values.size() * 2 > slots.size()) {
        grow();
    }
    return entry;
}

// Only what is used: the table may be as large as the largest function needed it.
void ValueTable::clear() {
    while (values.size() > keywordCount) {
        slots[slotsOfWords.back()] = {};
        slotsOfWords.pop_back();
        values.pop_back();
    }
}

// In the order of the old slots, which is nearly that of the new ones: a large table is gone
// through from one end to the other, and not at random.
void ValueTable::grow() {
    const std::vector<Entry> old = std::exchange(slots, std::vector<Entry>(slots.size() * 2));
    const std::size_t mask = slots.size() - 1;
    for (const Entry& entry : old) {
        if (entry.number != 0) {
            std::size_t slot = hashOf(entry.key) & mask;
            while (slots[slot].number != 0) {
                slot = (slot + 1) & mask;
            }
            slots[slot] = entry;
            slotsOfWords[entry.number - 1] = slot;
        }
    }
}

const std::vector<Value*>& ValueTable::inOrder() {
    places.clear();
    for (std::size_t word = 0; word < values.size(); ++word) {
        const Entry& entry = slots[slotsOfWords[word]];
        if (entry.wordClass == WordClass::value) {
            places.push_back({WordText{values[word].name, entry.key}.prefix(), &values[word]});
        }
    }
    std::sort(places.begin(), places.end());
    ordered.clear();
    for (const Place& place : places) {
        ordered.push_back(place.value);
    }
    return ordered;
}
