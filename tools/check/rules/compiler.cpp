// What the compiler itself refuses. Comes in: a message of krelcc. Goes out: the rule whose page
// explains it.

/// # syntax
///
/// ## What it finds
///
/// What the parser refuses and no other rule explains.
///
/// ## Why
///
/// The grammar is in docs/language.md. The message says what was not expected and, if there are
/// few, what would have been.
///
/// ## Example
///
/// ```krel example fragment
/// i = 1 2;
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// i = 12;
/// ```

/// # nesting
///
/// ## What it finds
///
/// Blocks, parentheses or operators that are nested very deeply.
///
/// ## Why
///
/// The parser's stack holds 10,000 entries.
///
/// ## Example
///
/// A large program.
///
/// ## Use instead
///
/// Fewer levels.

/// # illegal-character
///
/// ## What it finds
///
/// A character that begins no token.
///
/// ## Why
///
/// `%`, `&`, `|`, `.`, `:`, `?` alone, characters beyond ASCII outside of texts, and quotes that
/// are not closed on their line are no words of Krel.
///
/// ## Example
///
/// ```krel example fragment
/// i = @;
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// i = 1;
/// ```

/// # undeclared-name
///
/// ## What it finds
///
/// A name that nothing declares.
///
/// ## Why
///
/// Variables are declared in their function, functions anywhere in the program. In conditions and
/// indices, at `++`, and behind `+=` the compiler does not notice: the name becomes a variable of
/// its own with an unknown value.
///
/// ## Example
///
/// ```krel example fragment
/// i = missing;
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// int known = 0;
/// i = known;
/// ```

/// # type-mismatch
///
/// ## What it finds
///
/// Values of different types in one operation, and values of another type than that of the
/// variable, parameter or function.
///
/// ## Why
///
/// Nothing is converted by itself.
///
/// ## Example
///
/// ```krel example fragment
/// i = s;
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// string text = (string) i;
/// ```

/// # argument-count
///
/// ## What it finds
///
/// A call with more or fewer arguments than the function has parameters.
///
/// ## Why
///
/// All parameters have to be given.
///
/// ## Example
///
/// ```krel example fragment
/// i = f(1);
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// i = f();
/// ```

/// # cast-types
///
/// ## What it finds
///
/// A cast between types that no cast connects, also one to the operand's own type.
///
/// ## Why
///
/// There are seven casts; none leads from `string` to anything, and none from `double` to `int`:
/// for that the repair adds a function.
///
/// ## Example
///
/// ```krel example fragment
/// int k = (int) s;
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// string text = (string) d;
/// ```

/// # return-value
///
/// ## What it finds
///
/// A `return` without a value in a function that returns one, or with one in a `void` function.
///
/// ## Why
///
/// A value of exactly the function's type is needed.
///
/// ## Example
///
/// ```krel example
/// void greet() {
///     print("hello\n");
///     return 1;
/// }
///
/// void main() {
///     greet();
/// }
/// ```
///
/// ## Use instead
///
/// ```krel
/// void greet() {
///     print("hello\n");
/// }
///
/// void main() {
///     greet();
/// }
/// ```

/// # top-level
///
/// ## What it finds
///
/// A statement outside of all functions.
///
/// ## Why
///
/// The program starts in `main`.
///
/// ## Example
///
/// ```krel example
/// print("hello\n");
///
/// void main() {
/// }
/// ```
///
/// ## Use instead
///
/// The same statement in a function.

/// # print-argument
///
/// ## What it finds
///
/// `print` without an argument, or with one that has no value.
///
/// ## Why
///
/// `print` writes values of all types but `void`.
///
/// ## Example
///
/// ```krel example fragment
/// print();
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// print("");
/// ```

/// # unused-value
///
/// ## What it finds
///
/// A value alone as a statement.
///
/// ## Why
///
/// It does nothing, and the compiler refuses it.
///
/// ## Example
///
/// ```krel example fragment
/// i;
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// i = i + 1;
/// ```

/// # parameter-count
///
/// ## What it finds
///
/// More than six `int`, `boolean`, `character` and `string` parameters, or more than eight
/// `double` ones.
///
/// ## Why
///
/// Parameters travel in registers.
///
/// ## Example
///
/// A large program.
///
/// ## Use instead
///
/// Several functions, or several small numbers in one `int`.

/// # frame-size
///
/// ## What it finds
///
/// A function whose variables take 2 GB and more.
///
/// ## Why
///
/// They have to be reached from one place.
///
/// ## Example
///
/// ```krel example fragment
/// int t[300000000];
/// t[0] = 1;
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// int t[1000];
/// t[0] = 1;
/// ```

/// # not-an-array
///
/// ## What it finds
///
/// An index behind the name of something that is no array.
///
/// ## Why
///
/// Only arrays have elements. A text has no characters to look at.
///
/// ## Example
///
/// ```krel example fragment
/// n = i[0];
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// n = i;
/// ```

/// # code-generator
///
/// ## What it finds
///
/// What the code generator refuses and no other rule explains.
///
/// ## Why
///
/// The message speaks of the intermediate code; `krelcc --ir-dump` writes it.
///
/// ## Example
///
/// A large program.
///
/// ## Use instead
///
/// See docs/diagnostics.md.

#include <array>

#include "tools/check/compilerFaults.hpp"

namespace krel::Check {

namespace {

struct MessageRule {
    std::string_view begin;  // of the message
    std::string_view rule;
};

constexpr std::array messageRules = {
    MessageRule{"syntax error", "syntax"},
    MessageRule{"memory exhausted", "nesting"},
    MessageRule{"illegal character", "illegal-character"},
    MessageRule{"Undeclared ", "undeclared-name"},
    MessageRule{"Cannot assign value", "type-mismatch"},
    MessageRule{"Different types of operands", "type-mismatch"},
    MessageRule{"Return type mismatch", "type-mismatch"},
    MessageRule{"Argument type mismatch", "type-mismatch"},
    MessageRule{"Argument count mismatch", "argument-count"},
    MessageRule{"Cannot cast", "cast-types"},
    MessageRule{"Cast expression has invalid", "cast-types"},
    MessageRule{"Non-void function must return", "return-value"},
    MessageRule{"Void function should not return", "return-value"},
    MessageRule{"Function call used as a statement", "call-place"},
    MessageRule{"Symbol '", "redeclaration"},
    MessageRule{"Function '", "redeclaration"},
    MessageRule{"Array size", "array-size"},
    MessageRule{"array has no positive", "array-size"},
    MessageRule{"all statements must be inside", "top-level"},
    MessageRule{"The 'main' function", "main-type"},
    MessageRule{"Print ", "print-argument"},
    MessageRule{"Standalone variable", "unused-value"},
    MessageRule{"> 1 arguments passed to exit", "exit-status"},
    MessageRule{"Invalid increment", "step-value"},
    MessageRule{"Unsupported lvalue node", "step-value"},
    MessageRule{"Unsupported statement node", "unused-value"},
    MessageRule{"break outside loop", "outside-loop"},
    MessageRule{"continue outside loop", "outside-loop"},
    MessageRule{"more than ", "parameter-count"},
    MessageRule{"stack frame too large", "frame-size"},
    MessageRule{"unknown array", "not-an-array"},
    MessageRule{"unknown double IR value", "whole-double"},
    MessageRule{"no stack slot", "reserved-name"},
    MessageRule{"unterminated string literal in IR", "quote-character"},
    MessageRule{"uninterned string literal", "operator-string"},
    MessageRule{"unsupported double operator", "double-condition"},
    MessageRule{"unknown IR value", "code-generator"},
    MessageRule{"unsupported IR instruction", "code-generator"},
    MessageRule{"undefined reference to", "missing-main"},
};

}  // namespace

std::string_view ruleOfMessage(std::string_view message) {
    for (const MessageRule& row : messageRules) {
        if (message.substr(0, row.begin.size()) == row.begin) {
            return row.rule;
        }
    }
    return {};
}

}  // namespace krel::Check
