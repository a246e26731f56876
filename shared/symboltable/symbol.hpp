#pragma once

#include <string>
#include <vector>

#include "shared/ast/name.hpp"
#include "shared/error/place.hpp"

namespace krel {

class Node;

/// One declared name: a function, a scalar variable, an array or a parameter. The symbol table
/// owns the symbols filed in it; a symbol owns none of the others it points to.
class Symbol {
public:
    /// Builds the symbol of `declaration`, a "FunctionDeclaration", "Declarator",
    /// "ArrayDeclarator" or "Parameter", declared with the "Type" node `type`. A function gets a
    /// new symbol for each parameter, to be filed or freed by the caller. Reads both nodes, owns
    /// neither. Any other shape is an InternalError.
    Symbol(Node* type, Node* declaration);
    Symbol(const Symbol&) = delete;
    Symbol& operator=(const Symbol&) = delete;
    ~Symbol() = default;

    std::string getName() const { return name.text(); }
    std::string getType() const { return declaredType.text(); }
    std::string getScope() const { return scope.text(); }
    /// The variable written as an array's size; empty when the size is a literal.
    std::string getArraySizeSymbolName() const { return arraySizeSymbolName.text(); }
    /// The literal that an int variable is initialised with; 0 for anything else.
    int getIntValue() const { return intValue; }
    int getLine() const { return place.line; }
    /// Where the declaring node stands.
    const Place& getPlace() const { return place; }
    /// The parameters of a function, in order; not owned by the symbol.
    std::vector<Symbol*> getParameters() const { return parameters; }
    bool isArraySymbol() const { return isArray; }
    /// The number of elements: the value of the size variable once it is attached, else the literal
    /// size; 0 when neither is known.
    int getArraySize() const;

    /// The same texts as names, for passes that compare and look up by them.
    Name symbolName() const { return name; }
    Name typeName() const { return declaredType; }
    Name sizeSymbolName() const { return arraySizeSymbolName; }
    const std::vector<Symbol*>& parameterSymbols() const { return parameters; }

    void updateScope(Name newScope) { scope = newScope; }
    /// Attaches the symbol that gives the array's size. It must outlive this one; null detaches.
    void updateArraySizeSymbol(const Symbol* symbol) { arraySizeSymbol = symbol; }

    /// Writes the symbol to standard output, for debugging.
    void printSymbol() const;

private:
    void readFunction(const Node& declaration);
    void readInitialValue(const Node& value);
    void readArraySize(const Node& size);
    void printValue() const;

    Name name;
    Name declaredType;
    int intValue = 0;
    double doubleValue = 0.0;
    char charValue = '\0';
    bool boolValue = false;
    Name stringValue;
    Name scope;
    Place place = 0;
    int arraySizeValue = 0;
    const Symbol* arraySizeSymbol = nullptr;
    Name arraySizeSymbolName;
    bool isArray = false;
    bool isFunction = false;
    std::vector<Symbol*> parameters;
};

}  // namespace krel

// The interfaces of the passes are known without the namespace, too.
using krel::Symbol;
