// The values of a function: its frame, and the types of its operands. Every name that occurs in it
// has a slot, in the order of the names:
//
//      8(%rbp)   return address
//       (%rbp)   the caller's %rbp
//     -8(%rbp)   first name
//    -16(%rbp)   second name
//    -40(%rbp)   an array of 3: element 0 at its lowest address, element 2 below the second name
//        ...     up to the frame size, a multiple of 16
//
// A slot has 8 bytes whatever it holds, an array 8 for each element.

#include <charconv>
#include <limits>
#include <stdexcept>
#include <string_view>

#include "codegen/functionValues.hpp"
#include "codegen/irText.hpp"
#include "shared/ast/nodeKinds.hpp"
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

FunctionValues::FunctionValues(const IRFunction& function, ValueTable& itsWords,
                               const SymbolTable& table)
    : values(itsWords), name(function.getName()), scope(Name::known(name)), symbolTable(table) {}

void FunctionValues::planFrame() {
    readDeclarations();
    long long total = 0;  // bytes
    for (NamedValue* value : values.inOrder()) {
        total += slotSize * slotLength(*value);
        value->address = ShortText::of(-total);
        value->address.append("(%rbp)");
    }
    frameSize = alignTo(total, 16);
    if (frameSize > std::numeric_limits<int>::max()) {
        throw std::runtime_error("stack frame too large: " + name);
    }
}

/// Records what the symbols of the function say of its values.
void FunctionValues::readDeclarations() {
    for (const auto& symbol : symbolTable.symbolsOf(scope)) {
        if (NamedValue* value = values.find(symbol->symbolName().text()); value != nullptr) {
            value->declaredType = symbol->typeName();
            value->type = value->declaredType;
            value->isArray = symbol->isArraySymbol();
            value->length = symbol->getArraySize();
        }
    }
}

long long FunctionValues::offsetOf(const NamedValue& value) {
    const std::string_view address = value.address;
    long long offset = 0;
    std::from_chars(address.data(), address.data() + address.size(), offset);
    return offset;
}

Name FunctionValues::declaredTypeOf(std::string_view value) const {
    const Symbol* symbol = symbolTable.lookup(scope, Name::known(value), 0);
    return symbol == nullptr ? TypeName::Int : symbol->typeName();
}

Name FunctionValues::typeOf(const Operand& operand) const {
    const NamedValue* const value = valueOf(operand);
    switch (operand.kind()) {
        case Operand::Kind::String:
            return TypeName::String;
        case Operand::Kind::Boolean:
            return TypeName::Boolean;
        case Operand::Kind::Character:
            return TypeName::Character;
        case Operand::Kind::Double:
            return TypeName::Double;
        case Operand::Kind::Element:
            if (value != nullptr && !value->declaredType.empty()) {
                return value->declaredType;
            }
            return declaredTypeOf(elementOf(operand).array);
        case Operand::Kind::Named:
            if (value != nullptr && !value->type.empty()) {
                return value->type;
            }
            return declaredTypeOf(operand.text());
        case Operand::Kind::Integer:
        case Operand::Kind::Text:
        case Operand::Kind::Unknown:
            break;
    }
    return TypeName::Int;
}

/// Done whenever an element is loaded or stored, which is seldom: operands stay small.
Element elementOf(const Operand& operand) {
    Element element;
    parseArrayAccess(operand.text(), element.array, element.index);
    return element;
}

unsigned characterCode(std::string_view literal) {
    const bool isEscape = literal[1] == '\\' && literal.size() > 3;
    const char character = isEscape ? literal[2] : literal[1];
    return isEscape && character == 'n' ? 10U : static_cast<unsigned char>(character);
}

}  // namespace krel
