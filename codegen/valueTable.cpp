#include "codegen/valueTable.hpp"

Value* ValueTable::add(std::string_view name) {
    const std::uint32_t hash = hashOf(name);
    const std::size_t at = slotOf(name, hash);
    if (slots[at] != 0) {
        return nullptr;
    }
    Value& value = values.emplace_back();
    value.name = name;
    value.hash = hash;
    slots[at] = static_cast<std::uint32_t>(values.size());
    if (values.size() * 2 > slots.size()) {
        grow();
    }
    return &value;
}

void ValueTable::grow() {
    slots.assign(slots.size() * 2, 0);
    const std::size_t mask = slots.size() - 1;
    for (std::size_t index = 0; index < values.size(); ++index) {
        std::size_t at = values[index].hash & mask;
        while (slots[at] != 0) {
            at = (at + 1) & mask;
        }
        slots[at] = static_cast<std::uint32_t>(index + 1);
    }
}
