// The loop that executes internal code. Comes in: the state of a machine. Goes out: the state at
// the place where it does not go on, and why. Two instances are made of it, one that checks and one
// that does not. Every operation ends by a jump to the next one.

#include <bit>
#include <limits>

#include "tools/machine/machine.hpp"

namespace krel::Execution {

// The addresses of labels are an extension that all our compilers have.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wpedantic"

namespace {

// Comparisons of doubles as the flags of the machine give them: with a NaN, "==", "<" and "<="
// hold.
bool realEqual(double left, double right) {
    return !(left < right) && !(left > right);
}
bool realLess(double left, double right) {
    return !(left >= right);
}
bool realLessEqual(double left, double right) {
    return !(left > right);
}

std::int64_t wrapped(std::uint64_t bits) {
    return static_cast<std::int64_t>(bits);
}

}  // namespace

// NOLINTBEGIN(cppcoreguidelines-macro-usage, bugprone-macro-parentheses): what they stand for needs
// the labels and variables.

#define KREL_NEXT                                              \
    do {                                                       \
        ++ip;                                                  \
        goto* labels[static_cast<std::size_t>(ip->operation)]; \
    } while (false)
#define KREL_SAVE            \
    do {                     \
        state.next = ip;     \
        state.frame = frame; \
        state.whole = whole; \
        state.real = real;   \
        state.steps = steps; \
    } while (false)
#define KREL_STOP(stop) \
    do {                \
        KREL_SAVE;      \
        return stop;    \
    } while (false)
#define KREL_FAULT            \
    Stop {                    \
        Stop::Reason::Faulted \
    }
// Goes on only if the condition holds, or the program may go on without it.
#define KREL_CHECK(condition, tolerated)            \
    do {                                            \
        if (checked && !(condition)) [[unlikely]] { \
            KREL_SAVE;                              \
            if (!(tolerated)) {                     \
                return KREL_FAULT;                  \
            }                                       \
        }                                           \
    } while (false)
#define KREL_CHECK_TAGS(condition) KREL_CHECK((condition) != 0, areOperandsTolerated())
#define KREL_SET_TAG(tag)         \
    do {                          \
        if constexpr (checked) {  \
            tags[ip->to] = (tag); \
        }                         \
    } while (false)

#define KREL_LEFT frame[ip->left]
// An operation with a slot and one with a constant on the right, whose bits are `right`.
#define KREL_EACH_RIGHT(name, mask, body)                                   \
    name##Slots : {                                                         \
        KREL_CHECK_TAGS(tags[ip->left] & tags[ip->right] & (mask));         \
        const std::uint64_t right = frame[ip->right];                       \
        body;                                                               \
    }                                                                       \
    name##Constant : {                                                      \
        KREL_CHECK_TAGS(tags[ip->left] & constantTags[ip->right] & (mask)); \
        const std::uint64_t right = constants[ip->right];                   \
        body;                                                               \
    }
#define KREL_WHOLE_OPERANDS                              \
    const auto l = static_cast<std::int64_t>(KREL_LEFT); \
    const auto r = static_cast<std::int64_t>(right)
#define KREL_REAL_OPERANDS                           \
    const auto l = std::bit_cast<double>(KREL_LEFT); \
    const auto r = std::bit_cast<double>(right)
#define KREL_JUMP_WHEN(condition)                              \
    do {                                                       \
        whole = (condition) ? 1 : 0;                           \
        ip += whole != 0 ? ip->to : 1;                         \
        goto* labels[static_cast<std::size_t>(ip->operation)]; \
    } while (false)
#define KREL_SET_WHOLE(bits, tag)                 \
    do {                                          \
        whole = static_cast<std::uint64_t>(bits); \
        frame[ip->to] = whole;                    \
        KREL_SET_TAG(tag);                        \
        KREL_NEXT;                                \
    } while (false)
#define KREL_SET_REAL(value)                                \
    do {                                                    \
        real = (value);                                     \
        frame[ip->to] = std::bit_cast<std::uint64_t>(real); \
        KREL_SET_TAG(Tags::real);                           \
        KREL_NEXT;                                          \
    } while (false)
// A comparison, and the jump that depends on it.
#define KREL_WHOLE_COMPARISON(name, op)                     \
    KREL_EACH_RIGHT(Jump##name, Tags::whole | Tags::text, { \
        KREL_WHOLE_OPERANDS;                                \
        KREL_JUMP_WHEN(l op r);                             \
    })                                                      \
    KREL_EACH_RIGHT(name, Tags::whole | Tags::text, {       \
        KREL_WHOLE_OPERANDS;                                \
        KREL_SET_WHOLE(l op r ? 1 : 0, Tags::whole);        \
    })
#define KREL_REAL_COMPARISON(name, condition)             \
    KREL_EACH_RIGHT(Jump##name, Tags::real, {             \
        KREL_REAL_OPERANDS;                               \
        KREL_JUMP_WHEN(condition);                        \
    })                                                    \
    KREL_EACH_RIGHT(name, Tags::real, {                   \
        KREL_REAL_OPERANDS;                               \
        KREL_SET_WHOLE((condition) ? 1 : 0, Tags::whole); \
    })
#define KREL_REAL_ARITHMETIC(name, op)  \
    KREL_EACH_RIGHT(name, Tags::real, { \
        KREL_REAL_OPERANDS;             \
        KREL_SET_REAL(l op r);          \
    })
// `wrap` is the result in 64 bits, `overflows` the builtin that knows whether it is the true one.
#define KREL_WHOLE_ARITHMETIC(name, op, overflows)                                    \
    KREL_EACH_RIGHT(name, Tags::whole, {                                              \
        if constexpr (checked) {                                                      \
            std::int64_t result = 0;                                                  \
            const bool isLost = overflows(static_cast<std::int64_t>(KREL_LEFT),       \
                                          static_cast<std::int64_t>(right), &result); \
            KREL_CHECK(!isLost, isTolerated(Rule::Overflow));                         \
            KREL_SET_WHOLE(result, Tags::whole);                                      \
        } else {                                                                      \
            KREL_SET_WHOLE(KREL_LEFT op right, Tags::whole);                          \
        }                                                                             \
    })
// Sets a new text, unless memory is exhausted.
#define KREL_SET_TEXT(makeText)                                \
    do {                                                       \
        KREL_SAVE;                                             \
        const std::uint64_t text = (makeText);                 \
        KREL_CHECK(text != 0, isTolerated(Rule::OutOfMemory)); \
        if (text == 0) [[unlikely]] {                          \
            return trapped(Trap::OutOfMemory);                 \
        }                                                      \
        KREL_SET_WHOLE(text, Tags::text);                      \
    } while (false)

// Goes into a function, if the stack has room for its frame.
#define KREL_ENTER(callee)                                                  \
    do {                                                                    \
        if (frame - stack.begin() < ip->to + (callee).slots) [[unlikely]] { \
            KREL_CHECK(false, isTolerated(Rule::DeepRecursion));            \
            KREL_STOP(trapped(Trap::StackOverflow));                        \
        }                                                                   \
        calls.push_back({ip + 1, frame});                                   \
        frame -= ip->to;                                                    \
        if constexpr (checked) {                                            \
            tags = stack.tagOf(frame);                                      \
            Stack::clearTags(tags + 2, (callee).slots + 2);                 \
        }                                                                   \
        ip = (callee).entry;                                                \
    } while (false)

template <bool checked>
Stop Machine::execute(std::uint64_t untilStep) {
    static const void* const labels[] = {
#define KREL_LABEL(name, left, right) &&name,
        KREL_OPERATIONS(KREL_LABEL)
#undef KREL_LABEL
    };
    const Instruction* ip = state.next;
    std::uint64_t* frame = state.frame;
    [[maybe_unused]] Tag* tags = checked ? stack.tagOf(frame) : nullptr;
    std::uint64_t whole = state.whole;
    double real = state.real;
    std::uint64_t steps = state.steps;
    const std::uint64_t* const constants = code.constants.data();
    [[maybe_unused]] const Tag* const constantTags = code.constantTags.data();

    if (ip->operation == Operation::Line) {
        // The machine stands here already.
        if (steps >= untilStep) {
            return {Stop::Reason::Steps};
        }
        ++steps;
        ++ip;
    }
    goto* labels[static_cast<std::size_t>(ip->operation)];

Line:
    if (steps >= untilStep) [[unlikely]] {
        KREL_STOP(Stop{Stop::Reason::Steps});
    }
    if (watched[static_cast<std::size_t>(ip->to)] != 0) [[unlikely]] {
        KREL_STOP(Stop{Stop::Reason::Watched});
    }
    ++steps;
    KREL_NEXT;
Count:
    ++lineCounts[static_cast<std::size_t>(ip->to)];
    KREL_NEXT;
LostDigits:
    KREL_CHECK(false, isTolerated(Rule::Overflow));
    KREL_NEXT;
Jump:
    ip += ip->to;
    goto* labels[static_cast<std::size_t>(ip->operation)];
JumpIf:
    KREL_CHECK_TAGS(tags[ip->left] & Tags::whole);
    KREL_JUMP_WHEN(KREL_LEFT != 0);
JumpUnless:
    KREL_CHECK_TAGS(tags[ip->left] & Tags::whole);
    KREL_JUMP_WHEN(KREL_LEFT == 0);

    KREL_WHOLE_COMPARISON(Equal, ==)
    KREL_WHOLE_COMPARISON(NotEqual, !=)
    KREL_WHOLE_COMPARISON(Less, <)
    KREL_WHOLE_COMPARISON(Greater, >)
    KREL_WHOLE_COMPARISON(LessEqual, <=)
    KREL_WHOLE_COMPARISON(GreaterEqual, >=)
    KREL_REAL_COMPARISON(RealEqual, realEqual(l, r))
    KREL_REAL_COMPARISON(RealNotEqual, !realEqual(l, r))
    KREL_REAL_COMPARISON(RealLess, realLess(l, r))
    KREL_REAL_COMPARISON(RealGreater, l > r)
    KREL_REAL_COMPARISON(RealLessEqual, realLessEqual(l, r))
    KREL_REAL_COMPARISON(RealGreaterEqual, l >= r)

    KREL_WHOLE_ARITHMETIC(Add, +, __builtin_add_overflow)
    KREL_WHOLE_ARITHMETIC(Subtract, -, __builtin_sub_overflow)
    KREL_WHOLE_ARITHMETIC(Multiply, *, __builtin_mul_overflow)
    KREL_EACH_RIGHT(Divide, Tags::whole, {
        KREL_WHOLE_OPERANDS;
        if (r == 0) [[unlikely]] {
            KREL_CHECK(false, isTolerated(Rule::DivisionByZero));
            KREL_STOP(trapped(Trap::DivisionByZero));
        }
        if (r == -1 && l == std::numeric_limits<std::int64_t>::min()) [[unlikely]] {
            KREL_CHECK(false, isTolerated(Rule::DivisionOverflow));
            KREL_STOP(trapped(Trap::DivisionOverflow));
        }
        KREL_SET_WHOLE(l / r, Tags::whole);
    })
    KREL_EACH_RIGHT(And, Tags::whole,
                    { KREL_SET_WHOLE(KREL_LEFT != 0 && right != 0 ? 1 : 0, Tags::whole); })
    KREL_EACH_RIGHT(Or, Tags::whole,
                    { KREL_SET_WHOLE(KREL_LEFT != 0 || right != 0 ? 1 : 0, Tags::whole); })
    KREL_REAL_ARITHMETIC(RealAdd, +)
    KREL_REAL_ARITHMETIC(RealSubtract, -)
    KREL_REAL_ARITHMETIC(RealMultiply, *)
    KREL_REAL_ARITHMETIC(RealDivide, /)
    KREL_EACH_RIGHT(Concatenate, Tags::text, {
        if (!texts.isText(KREL_LEFT) || !texts.isText(right)) [[unlikely]] {
            KREL_STOP(trapped(Trap::InvalidAccess));
        }
        KREL_SET_TEXT(texts.concatenation(KREL_LEFT, right));
    })

Not:
    KREL_CHECK_TAGS(tags[ip->left] & Tags::whole);
    KREL_SET_WHOLE(KREL_LEFT == 0 ? 1 : 0, Tags::whole);
NotReal:
    KREL_CHECK_TAGS(tags[ip->left] & Tags::whole);
    KREL_SET_REAL(std::bit_cast<double>(KREL_LEFT));
Negate:
    KREL_CHECK_TAGS(tags[ip->left] & Tags::whole);
    KREL_CHECK(wrapped(KREL_LEFT) != std::numeric_limits<std::int64_t>::min(),
               isTolerated(Rule::Overflow));
    KREL_SET_WHOLE(0 - KREL_LEFT, Tags::whole);
RealNegate:
    KREL_CHECK_TAGS(tags[ip->left] & Tags::real);
    KREL_SET_REAL(0.0 - std::bit_cast<double>(KREL_LEFT));
Copy:
    KREL_CHECK_TAGS(tags[ip->left] & Tags::any);
    KREL_SET_WHOLE(KREL_LEFT, tags[ip->left]);
RealCopy:
    KREL_CHECK_TAGS(tags[ip->left] & Tags::any);
    real = std::bit_cast<double>(KREL_LEFT);
    frame[ip->to] = KREL_LEFT;
    KREL_SET_TAG(tags[ip->left]);
    KREL_NEXT;
Move:
    KREL_CHECK_TAGS(tags[ip->left] & Tags::whole);
    frame[ip->to] = KREL_LEFT;
    KREL_SET_TAG(Tags::whole);
    KREL_NEXT;
LoadWhole:
    KREL_SET_WHOLE(constants[ip->right], Tags::whole);
LoadReal:
    KREL_SET_REAL(std::bit_cast<double>(constants[ip->right]));
LoadText:
    KREL_SET_WHOLE(constants[ip->right], Tags::text);
WholeToReal:
    KREL_CHECK_TAGS(tags[ip->left] & Tags::whole);
    KREL_SET_REAL(static_cast<double>(wrapped(KREL_LEFT)));
WholeToText:
    KREL_CHECK_TAGS(tags[ip->left] & Tags::whole);
    KREL_SET_TEXT(texts.ofWhole(wrapped(KREL_LEFT)));
RealToText:
    KREL_CHECK_TAGS(tags[ip->left] & Tags::real);
    KREL_SET_TEXT(texts.ofReal(std::bit_cast<double>(KREL_LEFT)));
BooleanToText:
    KREL_CHECK_TAGS(tags[ip->left] & Tags::whole);
    KREL_SET_WHOLE(texts.ofBoolean(KREL_LEFT != 0), Tags::text);
CharacterToText:
    KREL_CHECK_TAGS(tags[ip->left] & Tags::whole);
    KREL_SET_WHOLE(texts.ofCharacter(KREL_LEFT), Tags::text);

LoadElement : {
    KREL_CHECK_TAGS(tags[ip->left] & Tags::whole);
    const Array& array = code.arrays[static_cast<std::size_t>(ip->right)];
    const std::uint64_t* const element = elementAt(frame, array, KREL_LEFT);
    if (KREL_LEFT >= static_cast<std::uint64_t>(array.length)) [[unlikely]] {
        KREL_CHECK(false, isTolerated(Rule::IndexOutside));
        if (!stack.contains(element)) {
            KREL_STOP(trapped(Trap::InvalidAccess));
        }
    }
    whole = *element;
    if constexpr (checked) {
        const Tag tag = *stack.tagOf(element);
        KREL_CHECK((tag & Tags::any) != 0, isElementTolerated());
        tags[ip->to] = tag;
    }
    frame[ip->to] = whole;
    KREL_NEXT;
}
StoreElement : {
    KREL_CHECK_TAGS(tags[ip->left] & Tags::whole);
    KREL_CHECK((tags[ip->to] & Tags::any) != 0, isStoredTolerated());
    const Array& array = code.arrays[static_cast<std::size_t>(ip->right)];
    std::uint64_t* const element = elementAt(frame, array, KREL_LEFT);
    if (KREL_LEFT >= static_cast<std::uint64_t>(array.length)) [[unlikely]] {
        KREL_CHECK(false, isTolerated(Rule::IndexOutside));
        if (!stack.contains(element)) {
            KREL_STOP(trapped(Trap::InvalidAccess));
        }
    }
    *element = frame[ip->to];
    if constexpr (checked) {
        *stack.tagOf(element) = tags[ip->to];
    }
    KREL_NEXT;
}

Pass:
    KREL_CHECK_TAGS(tags[ip->left] & Tags::any);
    state.wholes[ip->to] = KREL_LEFT;
    if constexpr (checked) {
        state.wholeTags[ip->to] = tags[ip->left];
    }
    KREL_NEXT;
PassReal:
    KREL_CHECK_TAGS(tags[ip->left] & Tags::any);
    state.reals[ip->to] = std::bit_cast<double>(KREL_LEFT);
    if constexpr (checked) {
        state.realTags[ip->to] = tags[ip->left];
    }
    KREL_NEXT;
PassConstant:
    state.wholes[ip->to] = constants[ip->right];
    if constexpr (checked) {
        state.wholeTags[ip->to] = constantTags[ip->right];
    }
    KREL_NEXT;
PassRealConstant:
    state.reals[ip->to] = std::bit_cast<double>(constants[ip->right]);
    if constexpr (checked) {
        state.realTags[ip->to] = constantTags[ip->right];
    }
    KREL_NEXT;
Take:
    frame[ip->to] = state.wholes[ip->left];
    if constexpr (checked) {
        tags[ip->to] = state.wholeTags[ip->left];
        state.wholeTags[ip->left] = Tags::notPassed;
    }
    KREL_NEXT;
TakeReal:
    frame[ip->to] = std::bit_cast<std::uint64_t>(state.reals[ip->left]);
    if constexpr (checked) {
        tags[ip->to] = state.realTags[ip->left];
        state.realTags[ip->left] = Tags::notPassed;
    }
    KREL_NEXT;

CallPassing : {
    KREL_CHECK_TAGS(tags[ip->left] & Tags::any);
    const Entry& callee = entries[static_cast<std::size_t>(ip->right)];
    const std::uint64_t value = KREL_LEFT;
    [[maybe_unused]] const Tag tag = checked ? tags[ip->left] : Tags::any;
    KREL_ENTER(callee);
    if (ip->operation == Operation::Take) {
        // Just what has been passed.
        frame[ip->to] = value;
        KREL_SET_TAG(tag);
        KREL_NEXT;
    }
    state.wholes[0] = value;
    if constexpr (checked) {
        state.wholeTags[0] = tag;
    }
    goto* labels[static_cast<std::size_t>(ip->operation)];
}
Call : {
    const Entry& callee = entries[static_cast<std::size_t>(ip->right)];
    KREL_ENTER(callee);
    goto* labels[static_cast<std::size_t>(ip->operation)];
}
CallForeign:
    KREL_SAVE;
    return {Stop::Reason::Foreign, Trap::None, 0,
            code.foreign[static_cast<std::size_t>(ip->right)]};
RealResult:
    frame[ip->to] = std::bit_cast<std::uint64_t>(real);
    KREL_SET_TAG(state.realTag);
    KREL_NEXT;
Print:
    KREL_CHECK_TAGS(tags[ip->left] & Tags::text);
    if (!print(KREL_LEFT)) [[unlikely]] {
        KREL_STOP(trapped(Trap::InvalidAccess));
    }
    KREL_NEXT;
PrintConstant:
    KREL_CHECK((constantTags[ip->right] & Tags::text) != 0, isTolerated(Rule::WrongType));
    if (!print(constants[ip->right])) [[unlikely]] {
        KREL_STOP(trapped(Trap::InvalidAccess));
    }
    KREL_NEXT;
PrintRegister:
    if (!print(state.wholes[0])) [[unlikely]] {
        KREL_STOP(trapped(Trap::InvalidAccess));
    }
    KREL_NEXT;
Exit:
    KREL_STOP((Stop{Stop::Reason::Ended, Trap::None, 0, {}}));

ReturnZero:
    whole = 0;
Return:
    if constexpr (checked) {
        state.wholeTag = Tags::noResult;
        state.realTag = Tags::noResult;
    }
    goto leave;
ReturnValue:
    KREL_CHECK_TAGS(tags[ip->left] & Tags::any);
    whole = KREL_LEFT;
    if constexpr (checked) {
        state.wholeTag = tags[ip->left];
        state.realTag = Tags::otherResult;
    }
    goto leave;
ReturnReal:
    KREL_CHECK_TAGS(tags[ip->left] & Tags::any);
    real = std::bit_cast<double>(KREL_LEFT);
    if constexpr (checked) {
        state.realTag = tags[ip->left];
        state.wholeTag = Tags::otherResult;
    }
leave:
    ip = calls.back().next;
    frame = calls.back().frame;
    calls.pop_back();
    if constexpr (checked) {
        tags = stack.tagOf(frame);
    }
    if (ip->operation != Operation::Result) {
        goto* labels[static_cast<std::size_t>(ip->operation)];
    }
Result:
    frame[ip->to] = whole;
    KREL_SET_TAG(state.wholeTag);
    KREL_NEXT;

End:
    KREL_STOP((Stop{Stop::Reason::Ended, Trap::None, static_cast<int>(whole & 0xFF), {}}));
}

// NOLINTEND(cppcoreguidelines-macro-usage, bugprone-macro-parentheses)

template Stop Machine::execute<false>(std::uint64_t untilStep);
template Stop Machine::execute<true>(std::uint64_t untilStep);

#pragma GCC diagnostic pop

}  // namespace krel::Execution
