#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace krel {

/// A text kept once: node kinds, type names, identifiers. Copying a Name copies an index, and two
/// names are equal when their indexes are equal. The text lives until the process ends. If a
/// NameScope was in use when it first became a name, it lives as long as that scope.
///
///     Name{"main"}  ->  index 117  ->  texts[117]  ->  "main"
///
/// Converts from and to strings, so that a Name parameter takes kinds and names as plain text, and
/// a Name can be used as the text that it is.
class Name {
public:
    /// The empty name.
    constexpr Name() = default;
    Name(std::string_view text);
    Name(const std::string& text) : Name(std::string_view{text}) {}
    /// A null pointer gives the empty name.
    Name(const char* text) : Name(text == nullptr ? std::string_view{} : std::string_view{text}) {}

    /// The name of a text that has become one before, else the empty name. Unlike the constructor
    /// it keeps nothing.
    static Name known(std::string_view text);

    const std::string& text() const { return *texts[number]; }
    operator const std::string&() const { return text(); }
    bool empty() const { return number == 0; }
    /// 0 is the empty name. Other names are numbered from 1 on, in the order in which they first
    /// appear; the numbers of a scope that has ended are used again.
    std::uint32_t index() const { return number; }
    /// The name of that index, which must be one that index() has given.
    static Name fromIndex(std::uint32_t index) {
        Name name;
        name.number = index;
        return name;
    }

    friend bool operator==(Name left, Name right) { return left.number == right.number; }
    friend std::string operator+(Name left, Name right) { return left.text() + right.text(); }
    template <std::convertible_to<std::string_view> Text>
    friend std::string operator+(Name left, const Text& right) {
        return std::string{left.text()}.append(right);
    }
    template <std::convertible_to<std::string_view> Text>
    friend std::string operator+(const Text& left, Name right) {
        return std::string{left}.append(right.text());
    }
    friend std::ostream& operator<<(std::ostream& out, Name name);

private:
    friend class NamePool;

    static const std::string* const* texts;  // by index; moves as it grows

    std::uint32_t number = 0;
};

class NamePool;

/// The names that first appear while it is in use; they end with it. A name that the process
/// already has is the same inside a scope. A scope does not see the names of another scope.
class NameScope {
public:
    NameScope();
    NameScope(const NameScope&) = delete;
    NameScope& operator=(const NameScope&) = delete;
    ~NameScope();

    /// As long as this object lives, new names belong to the scope; afterwards, to what was in use
    /// before.
    class Use {
    public:
        explicit Use(NameScope& scope);
        Use(const Use&) = delete;
        Use& operator=(const Use&) = delete;
        ~Use();

    private:
        NamePool* before;
    };

private:
    std::unique_ptr<NamePool> pool;
};

/// What to do for each of some names, found by index. Meant for names that exist from the start
/// (kinds, operators), whose indexes are small.
template <typename Action>
class NameTable {
public:
    NameTable(std::initializer_list<std::pair<Name, Action>> entries) {
        for (const auto& [name, action] : entries) {
            if (actions.size() <= name.index()) {
                actions.resize(name.index() + std::size_t{1});
            }
            actions[name.index()] = action;
        }
    }

    /// The action of `name`, or a value-initialised one (null for pointers) when it has none.
    Action find(Name name) const {
        return name.index() < actions.size() ? actions[name.index()] : Action{};
    }

private:
    std::vector<Action> actions;
};

}  // namespace krel

/// Names are numbered in a row: their numbers spread well by themselves.
template <>
struct std::hash<krel::Name> {
    std::size_t operator()(krel::Name name) const noexcept { return name.index(); }
};
