#pragma once

#include <string>
#include <string_view>

#include "codegen/functionReader.hpp"
#include "codegen/valueTable.hpp"
#include "shared/ast/name.hpp"

namespace krel {

class IRFunction;
class SymbolTable;

/// The values of one function: where each has its place in the frame, and which type it is believed
/// to have. Whoever translates the lines of the function, in their order, records here what each
/// line makes of its target.
class FunctionValues {
public:
    /// `itsWords` are those of the function; like the table, they must outlive this object.
    FunctionValues(const IRFunction& function, ValueTable& itsWords, const SymbolTable& table);

    /// Gives every value its declaration and its place in the frame. Throws std::runtime_error for
    /// a frame that cannot be.
    void planFrame();

    const std::string& functionName() const { return name; }
    /// The bytes of the frame below the saved %rbp, a multiple of 16.
    long long size() const { return frameSize; }
    /// Where a planned value begins, in bytes from the saved %rbp: negative.
    static long long offsetOf(const NamedValue& value);

    /// The value that an operand names, or the array that it is an element of; null if there is
    /// none.
    NamedValue* valueOf(const Operand& operand) const { return values.find(operand.valueNumber()); }

    /// The type that an operand is believed to have.
    Name typeOf(const Operand& operand) const;
    /// Whether the operand is a value whose type is known.
    bool hasType(const Operand& operand) const {
        const NamedValue* const value = valueOf(operand);
        return value != nullptr && !value->type.empty();
    }
    /// From now on the target, if it is a value, is believed to have the type.
    void recordType(const Operand& target, Name type) {
        if (NamedValue* value = valueOf(target); value != nullptr) {
            value->type = type;
        }
    }

protected:
    ValueTable& values;

private:
    void readDeclarations();
    Name declaredTypeOf(std::string_view value) const;

    std::string name;
    Name scope;  // the same as a name, for look-ups
    const SymbolTable& symbolTable;
    long long frameSize = 0;
};

/// An element's text taken apart.
struct Element {
    std::string_view array;
    std::string_view index;
};
Element elementOf(const Operand& operand);

/// The code of a character literal of more than two characters. Of the escapes only the line feed
/// is decoded (kept): a tab is the code of 't'.
unsigned characterCode(std::string_view literal);

}  // namespace krel
