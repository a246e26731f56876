#include "codegen/valueTable.hpp"

#include <algorithm>
#include <array>

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

/// A number by which words are ordered as far as their first characters decide on it. The key of a
/// short word is made of just these.
std::uint64_t prefixOf(std::string_view word, std::uint64_t key) {
    constexpr std::size_t bitsPerCharacter = 7;
    return word.size() <= KeyedText::maxPackedSize
               ? key << bitsPerCharacter * (KeyedText::maxPackedSize - word.size())
               : KeyedText::pack(word.substr(0, KeyedText::maxPackedSize));
}

}  // namespace

ValueTable::ValueTable() {
    for (const Keyword& keyword : keywords) {
        insert(KeyedText{keyword.text}, keyword.wordClass);
    }
}

ValueTable::Entry ValueTable::insert(const KeyedText& word, std::uint32_t wordClass) {
    values.emplace_back().name = word.text();
    return {index.add(word, wordClass), wordClass};
}

ValueTable::Entry ValueTable::insert(const KeyedText& word) {
    return insert(word, isBlockName(word.text()) ? WordClass::blockName : WordClass::value);
}

void ValueTable::clear() {
    index.shrink(keywords.size());
    values.resize(keywords.size());
}

const std::vector<Value*>& ValueTable::inOrder() {
    places.clear();
    for (std::uint32_t number = 1; number <= index.size(); ++number) {
        if (index.tagOf(number) == WordClass::value) {
            Value& value = (*this)[number];
            places.push_back({prefixOf(value.name, index.keyOf(number)), &value});
        }
    }
    std::sort(places.begin(), places.end());
    ordered.clear();
    for (const Place& place : places) {
        ordered.push_back(place.value);
    }
    return ordered;
}
