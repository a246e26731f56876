// The frame of a function. Every name that occurs in it has a slot, in the order of the names:
//
//      8(%rbp)   return address
//       (%rbp)   the caller's %rbp
//     -8(%rbp)   first name
//    -16(%rbp)   second name
//    -40(%rbp)   an array of 3: element 0 at its lowest address, element 2 below the second name
//        ...     up to the frame size, a multiple of 16
//
// A slot has 8 bytes whatever it holds, an array 8 for each element.

#include <algorithm>
#include <limits>
#include <stdexcept>

#include "codegen/codeGenerator.hpp"
#include "codegen/irText.hpp"
#include "shared/krelir-cfg/ir-program.hpp"
#include "shared/symboltable/symbolTable.hpp"

namespace {

constexpr long long slotSize = 8;  // bytes

long long alignTo(long long value, long long alignment) {
    return (value + alignment - 1) / alignment * alignment;
}

/// Calls `use` for every word of a line that has the shape of a name, outside of string literals.
/// Character literals are not left out (kept): what is spelled in them counts as a name.
template <typename Use>
void forEachWord(std::string_view text, Use use) {
    std::size_t at = 0;
    while (at < text.size()) {
        if (text[at] == '"') {
            at = std::min(stringLiteralEnd(text, at), text.size());
        } else if (beginsName(text[at])) {
            const std::size_t begin = at;
            while (at < text.size() && isNameCharacter(text[at])) {
                ++at;
            }
            use(text.substr(begin, at - begin));
        } else {
            ++at;
        }
    }
}

}  // namespace

CodeGenerator::FunctionContext::FunctionContext(const IRFunction& function, ValueTable& words)
    : name(function.getName()),
      scope(Name::known(name)),
      returnLabel(".L" + name + "_return"),
      values(words) {
    values.clear();
}

void CodeGenerator::planFrame(const IRFunction& function, FunctionContext& context) const {
    for (const IRBasicBlock& block : function.getBlocks()) {
        for (const IRInstruction instruction : block.getInstructions()) {
            forEachWord(instruction.getText(), [&](std::string_view word) {
                if (Value* value = context.values.add(word); value != nullptr) {
                    value->hasSlot = !isKeyword(word) && !isBlockName(word);
                }
            });
        }
    }
    std::vector<Value*> named;
    for (Value& value : context.values.all()) {
        if (value.hasSlot) {
            named.push_back(&value);
        }
    }
    std::sort(named.begin(), named.end(),
              [](const Value* left, const Value* right) { return left->name < right->name; });
    long long total = 0;  // bytes
    for (Value* value : named) {
        total += slotSize * slotLength(*value, context);
        const std::string address = std::to_string(-total) + "(%rbp)";
        value->addressSize = static_cast<std::uint8_t>(
            address.copy(value->addressText.data(), value->addressText.size()));
    }
    context.frameSize = alignTo(total, 16);
    if (context.frameSize > std::numeric_limits<int>::max()) {
        throw std::runtime_error("stack frame too large: " + context.name);
    }
}

/// The number of slots that a value takes; records what its symbol says of it. Throws for an array
/// whose size is not known.
int CodeGenerator::slotLength(Value& value, const FunctionContext& context) const {
    const Symbol* symbol = symbolTable.lookup(context.scope, Name::known(value.name), 0);
    if (symbol == nullptr) {
        return 1;
    }
    value.declaredType = symbol->typeName();
    value.type = value.declaredType;
    if (!symbol->isArraySymbol()) {
        return 1;
    }
    value.length = symbol->getArraySize();
    if (value.length < 1) {
        throw std::runtime_error("array has no positive compile-time size: " +
                                 std::string{value.name});
    }
    return value.length;
}
