// The internal code that the machine runs. An instruction takes its operands from slots of the
// frame, which are given by their distance from the frame pointer, in slots; the names of
// operations end in Slots or Constant where the right operand may be one or the other.
//
//     slot      -3      -2      -1       0          1
//     holds      c       b       a    scratch    scratch
//
// The slots of a function are those that the code generator gives it. Compiled programs have the
// caller's frame pointer and the return address in the two above; here calls are kept elsewhere,
// and elements on their way into an operation use them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "shared/ast/name.hpp"

namespace krel::Execution {

/// What a slot holds, as a checked run knows it: one bit each, so that sets can be tested at once.
/// A slot that nothing has set has none of the first three bits.
using Tag = std::uint8_t;
namespace Tags {
inline constexpr Tag unset = 0;
inline constexpr Tag whole = 1;  // an int, a boolean, a character
inline constexpr Tag real = 2;
inline constexpr Tag text = 4;
inline constexpr Tag any = whole | real | text;
inline constexpr Tag noResult = 8;      // of a function that returned nothing
inline constexpr Tag otherResult = 16;  // of a function that returned the other class of value
inline constexpr Tag notPassed = 32;    // a parameter for which there was no argument
}  // namespace Tags

// The operations, with what they expect of their left and right operands: tags, or 0 where there is
// no slot. The fields of an instruction are `to`, `left` and `right`.
#define KREL_BINARY(OP, name, tags) \
    OP(name##Slots, tags, tags)     \
    OP(name##Constant, tags, 0)

#define KREL_OPERATIONS(OP)                                                                      \
    /* Before a line of the intermediate code; to: its number. */                                \
    OP(Line, 0, 0)                                                                               \
    /* The same, or at the beginning of a function; to: the number of the counter. */            \
    OP(Count, 0, 0)                                                                              \
    /* An integer literal has lost digits; to: the number of the place. */                       \
    OP(LostDigits, 0, 0)                                                                         \
    /* Jumps by so many instructions as `to` says. */                                            \
    OP(Jump, 0, 0)                                                                               \
    OP(JumpIf, Tags::whole, 0)                                                                   \
    OP(JumpUnless, Tags::whole, 0)                                                               \
    KREL_BINARY(OP, JumpEqual, Tags::whole | Tags::text)                                         \
    KREL_BINARY(OP, JumpNotEqual, Tags::whole | Tags::text)                                      \
    KREL_BINARY(OP, JumpLess, Tags::whole | Tags::text)                                          \
    KREL_BINARY(OP, JumpGreater, Tags::whole | Tags::text)                                       \
    KREL_BINARY(OP, JumpLessEqual, Tags::whole | Tags::text)                                     \
    KREL_BINARY(OP, JumpGreaterEqual, Tags::whole | Tags::text)                                  \
    KREL_BINARY(OP, JumpRealEqual, Tags::real)                                                   \
    KREL_BINARY(OP, JumpRealNotEqual, Tags::real)                                                \
    KREL_BINARY(OP, JumpRealLess, Tags::real)                                                    \
    KREL_BINARY(OP, JumpRealGreater, Tags::real)                                                 \
    KREL_BINARY(OP, JumpRealLessEqual, Tags::real)                                               \
    KREL_BINARY(OP, JumpRealGreaterEqual, Tags::real)                                            \
    /* Into `to`. Comparisons are in the order of the jumps above. */                            \
    KREL_BINARY(OP, Equal, Tags::whole | Tags::text)                                             \
    KREL_BINARY(OP, NotEqual, Tags::whole | Tags::text)                                          \
    KREL_BINARY(OP, Less, Tags::whole | Tags::text)                                              \
    KREL_BINARY(OP, Greater, Tags::whole | Tags::text)                                           \
    KREL_BINARY(OP, LessEqual, Tags::whole | Tags::text)                                         \
    KREL_BINARY(OP, GreaterEqual, Tags::whole | Tags::text)                                      \
    KREL_BINARY(OP, RealEqual, Tags::real)                                                       \
    KREL_BINARY(OP, RealNotEqual, Tags::real)                                                    \
    KREL_BINARY(OP, RealLess, Tags::real)                                                        \
    KREL_BINARY(OP, RealGreater, Tags::real)                                                     \
    KREL_BINARY(OP, RealLessEqual, Tags::real)                                                   \
    KREL_BINARY(OP, RealGreaterEqual, Tags::real)                                                \
    KREL_BINARY(OP, Add, Tags::whole)                                                            \
    KREL_BINARY(OP, Subtract, Tags::whole)                                                       \
    KREL_BINARY(OP, Multiply, Tags::whole)                                                       \
    KREL_BINARY(OP, Divide, Tags::whole)                                                         \
    KREL_BINARY(OP, And, Tags::whole)                                                            \
    KREL_BINARY(OP, Or, Tags::whole)                                                             \
    KREL_BINARY(OP, RealAdd, Tags::real)                                                         \
    KREL_BINARY(OP, RealSubtract, Tags::real)                                                    \
    KREL_BINARY(OP, RealMultiply, Tags::real)                                                    \
    KREL_BINARY(OP, RealDivide, Tags::real)                                                      \
    KREL_BINARY(OP, Concatenate, Tags::text)                                                     \
    OP(Not, Tags::whole, 0)                                                                      \
    OP(NotReal, Tags::whole, 0) /* of a double, which stays as it is */                          \
    OP(Negate, Tags::whole, 0)                                                                   \
    OP(RealNegate, Tags::real, 0)                                                                \
    OP(Copy, Tags::any, 0)                                                                       \
    OP(RealCopy, Tags::any, 0)                                                                   \
    OP(Move, Tags::whole, 0) /* leaves the result register alone */                              \
    /* right: the number of a constant. */                                                       \
    OP(LoadWhole, 0, 0)                                                                          \
    OP(LoadReal, 0, 0)                                                                           \
    OP(LoadText, 0, 0)                                                                           \
    OP(WholeToReal, Tags::whole, 0)                                                              \
    OP(WholeToText, Tags::whole, 0)                                                              \
    OP(RealToText, Tags::real, 0)                                                                \
    OP(BooleanToText, Tags::whole, 0)                                                            \
    OP(CharacterToText, Tags::whole, 0)                                                          \
    /* left: the slot of the index; right: the number of the array. Stores the slot `to`. */     \
    OP(LoadElement, Tags::whole, 0)                                                              \
    OP(StoreElement, Tags::whole, 0)                                                             \
    /* to: the number of the argument register. */                                               \
    OP(Pass, Tags::any, 0)                                                                       \
    OP(PassReal, Tags::any, 0)                                                                   \
    OP(PassConstant, 0, 0) /* left: its tag */                                                   \
    OP(PassRealConstant, 0, 0)                                                                   \
    /* left: the number of the argument register. */                                             \
    OP(Take, 0, 0)                                                                               \
    OP(TakeReal, 0, 0)                                                                           \
    /* to: by how many slots the frame pointer goes down; right: the function. CallPassing takes \
     */                                                                                          \
    /* the slot `left` along, as the first argument. */                                          \
    OP(Call, 0, 0)                                                                               \
    OP(CallPassing, Tags::any, 0)                                                                \
    OP(CallForeign, 0, 0) /* right: the number of its name */                                    \
    OP(Result, 0, 0)                                                                             \
    OP(RealResult, 0, 0)                                                                         \
    OP(Print, Tags::text, 0)                                                                     \
    OP(PrintConstant, 0, 0)                                                                      \
    OP(PrintRegister, 0, 0)                                                                      \
    OP(Exit, 0, 0)                                                                               \
    OP(Return, 0, 0)                                                                             \
    OP(ReturnZero, 0, 0) /* from main */                                                         \
    OP(ReturnValue, Tags::any, 0)                                                                \
    OP(ReturnReal, Tags::any, 0)                                                                 \
    /* Behind the first call of main. */                                                         \
    OP(End, 0, 0)

enum class Operation : std::uint16_t {
#define KREL_NAME(name, left, right) name,
    KREL_OPERATIONS(KREL_NAME)
#undef KREL_NAME
};

struct Instruction {
    Operation operation;
    std::int32_t to = 0;
    std::int32_t left = 0;
    std::int32_t right = 0;
};

/// An array, as an element is taken from it.
struct Array {
    std::int32_t slot;  // of element 0
    std::int32_t length;
    std::string name;
    bool isInList;  // the element is one of an initialiser list
};

/// A name of a function that has a place in its frame.
struct Variable {
    std::string name;
    std::int32_t slot;  // from the frame pointer; of element 0
    std::int32_t length = 1;
    bool isArray = false;
    bool isDeclared = false;
    bool isParameter = false;
    bool isTemporary = false;  // of the compiler's own
    std::string type;          // as declared, or as it is believed to be at the function's end
};

/// A function: its frame and its code.
struct Function {
    std::string name;
    std::int32_t slots = 0;   // of the frame, without the two above it
    std::uint32_t entry = 0;  // of the code
    std::uint32_t end = 0;
    std::size_t firstLine = 0;  // of the intermediate code, counted through the program
    std::size_t lineEnd = 0;
    std::vector<Variable> variables;  // in the order of their names
};

/// The text of a literal, when it is written with more digits than a literal keeps.
struct LostLiteral {
    std::uint32_t line;  // of the intermediate code
    std::string written;
    std::int64_t taken;
};

/// Which instructions are wanted besides those that do the program's work.
struct Wanted {
    bool stops = false;   // Line before each line of the intermediate code; lines are not joined
    bool counts = false;  // the same with Count; also before each function
    std::string_view entry = "main";  // the function that is called at the start
};

/// A translated program. It owns the bytes of all constant texts, whose addresses programs compare.
struct Code {
    static constexpr std::uint32_t noLine = ~std::uint32_t{0};

    std::vector<Instruction> instructions;
    std::vector<std::uint32_t> lines;  // of the intermediate code, for each instruction
    std::vector<std::uint64_t> constants;
    std::vector<Tag> constantTags;
    std::vector<Array> arrays;
    std::vector<Function> functions;
    std::vector<std::string> foreign;  // functions that are none of the program's
    std::vector<LostLiteral> lost;
    std::size_t lineCount = 0;
    std::unique_ptr<char[]> texts;  // literals as they are written, and what conversions give
    std::size_t textSize = 0;

    const Instruction* entryOfMain = nullptr;

    bool ownsText(std::uint64_t address) const {
        return address - reinterpret_cast<std::uintptr_t>(texts.get()) < textSize;
    }
    /// The function that an instruction belongs to.
    std::size_t functionAt(const Instruction* instruction) const;
    std::uint32_t lineAt(const Instruction* instruction) const {
        return lines[static_cast<std::size_t>(instruction - instructions.data())];
    }
};

}  // namespace krel::Execution
