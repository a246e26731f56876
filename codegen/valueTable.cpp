#include "codegen/valueTable.hpp"

Value* ValueTable::add(std::string_view name) {
    const std::uint64_t key = keyOf(name);
    const std::uint32_t at = slotOf(name, key);
    if (slots[at] != 0) {
        return nullptr;
    }
    Value& value = values.emplace_back();
    value.name = name;
    value.key = key;
    value.slot = at;
    slots[at] = static_cast<std::uint32_t>(values.size());
    if (values.size() * 2 > slots.size()) {
        grow();
    }
    return &value;
}

// Only what is used: the table may be as large as the largest function needed it.
void ValueTable::clear() {
    for (const Value& value : values) {
        slots[value.slot] = 0;
    }
    values.clear();
}

void ValueTable::grow() {
    slots.assign(slots.size() * 2, 0);
    std::uint32_t number = 0;
    for (Value& value : values) {
        value.slot = slotOf(value.name, value.key);
        slots[value.slot] = ++number;
    }
}
