// The names of the process and of scopes. Comes in: a text. Goes out: its index, the same for the
// same text. A new name changes the pool in use, and the table of texts that all pools share.

#include "shared/ast/name.hpp"

#include <deque>
#include <ostream>
#include <utility>

#include "shared/ast/textIndex.hpp"

namespace krel {

/// The names of the process, or of a scope. Owns their texts; the deque never moves one.
class NamePool {
public:
    NamePool() = default;
    NamePool(const NamePool&) = delete;
    NamePool& operator=(const NamePool&) = delete;
    ~NamePool();

    /// The pool in use, if it is not that of the process; and that of the process, in which every
    /// search ends.
    static constinit NamePool* inUse;
    static NamePool& ofTheProcess() {
        static NamePool& pool = *new NamePool;  // until the process ends, as its names do
        return pool;
    }
    static NamePool& current() { return inUse != nullptr ? *inUse : ofTheProcess(); }

    /// The index of a text that is not empty; 0 when it is no name.
    std::uint32_t find(const KeyedText& text) const {
        const std::uint32_t index = findHere(text);
        return index != 0 || this == &ofTheProcess() ? index : ofTheProcess().findHere(text);
    }

    std::uint32_t findOrAdd(const KeyedText& text) {
        const std::uint32_t index = find(text);
        return index != 0 ? index : add(text);
    }

private:
    /// The texts of all names by index, and the indexes that are free.
    struct Registry {
        std::vector<const std::string*> texts = std::vector<const std::string*>(1, &emptyText);
        std::vector<std::uint32_t> free;
    };
    static Registry& registry() {
        static Registry& instance = *new Registry;
        return instance;
    }

    std::uint32_t findHere(const KeyedText& text) const {
        const std::uint32_t number = byText.find(text, [&](std::uint32_t candidate) {
            return *Name::texts[byText.tagOf(candidate)] == text.text();
        });
        return number == 0 ? 0 : byText.tagOf(number);
    }

    std::uint32_t add(const KeyedText& text) {
        auto& [texts, free] = registry();
        const std::string* const kept = &storage.emplace_back(text.text());
        auto index = static_cast<std::uint32_t>(texts.size());
        if (free.empty()) {
            texts.push_back(kept);
            Name::texts = texts.data();
        } else {
            index = free.back();
            free.pop_back();
            texts[index] = kept;
        }
        byText.add(text, index);
        return index;
    }

public:
    static const std::string emptyText;

private:
    std::deque<std::string> storage;
    TextIndex byText;  // the tag of a text is the name's index
};

NamePool::~NamePool() {
    auto& [texts, free] = registry();
    for (std::uint32_t number = byText.size(); number > 0; --number) {
        texts[byText.tagOf(number)] = &emptyText;
        free.push_back(byText.tagOf(number));
    }
}

const std::string NamePool::emptyText;
constinit NamePool* NamePool::inUse = nullptr;

namespace {

constinit const std::string* const initialTexts[] = {&NamePool::emptyText};

}  // namespace

/// At first there is only the empty name.
constinit const std::string* const* Name::texts = initialTexts;

Name::Name(std::string_view text)
    : number(text.empty() ? 0 : NamePool::current().findOrAdd(KeyedText{text})) {}

Name Name::known(std::string_view text) {
    return fromIndex(text.empty() ? 0 : NamePool::current().find(KeyedText{text}));
}

std::ostream& operator<<(std::ostream& out, Name name) {
    return out << name.text();
}

NameScope::NameScope() : pool(std::make_unique<NamePool>()) {}

NameScope::~NameScope() = default;

NameScope::Use::Use(NameScope& scope) : before(std::exchange(NamePool::inUse, scope.pool.get())) {}

NameScope::Use::~Use() {
    NamePool::inUse = before;
}

}  // namespace krel
