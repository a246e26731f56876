#include "codegen/valueTable.hpp"

#include <algorithm>

#include "codegen/irText.hpp"

namespace krel {

namespace {

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
    for (const VocabularyEntry& word : reservedWords) {
        insert(KeyedText{word.text}, word.tokenClass);
    }
}

ValueTable::Entry ValueTable::insert(const KeyedText& word, std::uint32_t wordClass) {
    values.emplace_back().name = word.text();
    return {index.add(word, wordClass), wordClass};
}

ValueTable::Entry ValueTable::insert(const KeyedText& word) {
    return insert(word, isBlockName(word.text()) ? TokenClass::blockName : TokenClass::value);
}

void ValueTable::clear() {
    index.shrink(reservedWords.size());
    values.resize(reservedWords.size());
}

const std::vector<NamedValue*>& ValueTable::inOrder() {
    places.clear();
    for (std::uint32_t number = 1; number <= index.size(); ++number) {
        if (index.tagOf(number) == TokenClass::value) {
            NamedValue& value = (*this)[number];
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

}  // namespace krel
