#include "shared/ast/name.hpp"

#include <deque>
#include <unordered_map>

namespace {

/// Owns every text. The deque never moves its elements, so the views in the index stay valid.
struct NamePool {
    std::deque<std::string> texts{std::string{}};
    std::unordered_map<std::string_view, std::uint32_t> indexes{{std::string_view{}, 0}};
};

NamePool& pool() {
    static NamePool instance;
    return instance;
}

}  // namespace

Name::Name(std::string_view text) {
    NamePool& names = pool();
    const auto known = names.indexes.find(text);
    if (known != names.indexes.end()) {
        number = known->second;
        return;
    }
    number = static_cast<std::uint32_t>(names.texts.size());
    names.indexes.emplace(names.texts.emplace_back(text), number);
}

Name Name::known(std::string_view text) {
    Name name;
    const auto known = pool().indexes.find(text);
    if (known != pool().indexes.end()) {
        name.number = known->second;
    }
    return name;
}

const std::string& Name::text() const {
    return pool().texts[number];
}
