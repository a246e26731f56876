#include "shared/ast/name.hpp"

#include <deque>

#include "shared/ast/hashing.hpp"

/// Owns every text. Found by open addressing over their hashes; the deque never moves a text.
class NamePool {
public:
    NamePool() { publish({}); }

    /// The number of a text that is not empty, or 0 when it has none.
    std::uint32_t find(std::string_view text, std::uint32_t hash) const {
        return slots[slotOf(text, hash)].number;
    }

    std::uint32_t findOrAdd(std::string_view text, std::uint32_t hash) {
        const std::size_t at = slotOf(text, hash);
        if (slots[at].number != 0) {
            return slots[at].number;
        }
        const auto number = static_cast<std::uint32_t>(texts.size());
        publish(text);
        slots[at] = {hash, number};
        if (texts.size() * 2 > slots.size()) {
            grow();
        }
        return number;
    }

private:
    struct Slot {
        std::uint32_t hash = 0;
        std::uint32_t number = 0;  // 0: free
    };

    /// The slot of a text, or the free one where it would go.
    std::size_t slotOf(std::string_view text, std::uint32_t hash) const {
        const std::size_t mask = slots.size() - 1;
        std::size_t at = hash & mask;
        while (slots[at].number != 0 &&
               (slots[at].hash != hash || *texts[slots[at].number] != text)) {
            at = (at + 1) & mask;
        }
        return at;
    }

    void publish(std::string_view text) {
        texts.push_back(&storage.emplace_back(text));
        Name::texts = texts.data();
    }

    void grow() {
        std::vector<Slot> old(slots.size() * 2);
        old.swap(slots);
        const std::size_t mask = slots.size() - 1;
        for (const Slot slot : old) {
            if (slot.number != 0) {
                std::size_t at = slot.hash & mask;
                while (slots[at].number != 0) {
                    at = (at + 1) & mask;
                }
                slots[at] = slot;
            }
        }
    }

    std::deque<std::string> storage;
    std::vector<const std::string*> texts;
    std::vector<Slot> slots{std::size_t{1024}};  // a power of two, at least half of them free
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

Name::Name(std::string_view text)
    : number(text.empty() ? 0 : pool().findOrAdd(text, hashOf(numberOf(text)))) {}

Name Name::known(std::string_view text) {
    return fromIndex(text.empty() ? 0 : pool().find(text, hashOf(numberOf(text))));
}
