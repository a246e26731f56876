#include "shared/ast/name.hpp"

#include <deque>
#include <ostream>

#include "shared/ast/textIndex.hpp"

/// Owns every text. The deque never moves a text.
class NamePool {
public:
    NamePool() { publish({}); }

    /// The number of a text that is not empty, or 0 when it has none.
    std::uint32_t find(const KeyedText& text) const {
        return index.find(text,
                          [&](std::uint32_t number) { return *texts[number] == text.text(); });
    }

    std::uint32_t findOrAdd(const KeyedText& text) {
        if (const std::uint32_t number = find(text); number != 0) {
            return number;
        }
        publish(text.text());
        return index.add(text);
    }

private:
    void publish(std::string_view text) {
        texts.push_back(&storage.emplace_back(text));
        Name::texts = texts.data();
    }

    std::deque<std::string> storage;
    std::vector<const std::string*> texts;  // by number
    TextIndex index;
};

namespace {

const std::string emptyText;
constinit const std::string* const initialTexts[] = {&emptyText};

NamePool& pool() {
    static NamePool& instance = *new NamePool;  // until the process ends, as the names do
    return instance;
}

}  // namespace

// Until the pool exists there is only the empty name.
constinit const std::string* const* Name::texts = initialTexts;

Name::Name(std::string_view text) : number(text.empty() ? 0 : pool().findOrAdd(KeyedText{text})) {}

Name Name::known(std::string_view text) {
    return fromIndex(text.empty() ? 0 : pool().find(KeyedText{text}));
}

std::ostream& operator<<(std::ostream& out, Name name) {
    return out << name.text();
}
