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

#include <limits>
#include <stdexcept>

#include "codegen/codeGenerator.hpp"
#include "shared/krelir-cfg/ir-program.hpp"
#include "shared/symboltable/symbolTable.hpp"

namespace krel {

namespace {

constexpr long long slotSize = 8;  // bytes

/// The number of slots that a value takes. Throws for an array whose size is not known.
int slotLength(const NamedValue& value) {
    if (!value.isArray) {
        return 1;
    }
    if (value.length < 1) {
        throw std::runtime_error("array has no positive compile-time size: " +
                                 std::string{value.name});
    }
    return value.length;
}

long long alignTo(long long value, long long alignment) {
    return (value + alignment - 1) / alignment * alignment;
}

}  // namespace

CodeGenerator::FunctionContext::FunctionContext(const IRFunction& function, ValueTable& words)
    : name(function.getName()),
      scope(Name::known(name)),
      blockLabel(".L" + name + "_B"),
      returnLabel(".L" + name + "_return"),
      values(words) {}

void CodeGenerator::planFrame(FunctionContext& context) const {
    readDeclarations(context);
    long long total = 0;  // bytes
    for (NamedValue* value : context.values.inOrder()) {
        total += slotSize * slotLength(*value);
        value->address = ShortText::of(-total);
        value->address.append("(%rbp)");
    }
    context.frameSize = alignTo(total, 16);
    if (context.frameSize > std::numeric_limits<int>::max()) {
        throw std::runtime_error("stack frame too large: " + context.name);
    }
}

/// Records what the symbols of the function say of its values.
void CodeGenerator::readDeclarations(FunctionContext& context) const {
    for (const auto& symbol : symbolTable.symbolsOf(context.scope)) {
        if (NamedValue* value = context.values.find(symbol->symbolName().text());
            value != nullptr) {
            value->declaredType = symbol->typeName();
            value->type = value->declaredType;
            value->isArray = symbol->isArraySymbol();
            value->length = symbol->getArraySize();
        }
    }
}

}  // namespace krel
