// Literals of numbers that are written in other ways, or that the intermediate code cannot hold.

/// # big-literal
///
/// ## What it finds
///
/// An integer literal above 2147483647.
///
/// ## Why
///
/// Values have 64 bits, but a literal is cut to 32 bits: `2147483648` is -2147483648.
///
/// ## Example
///
/// ```krel example fragment
/// i = 3000000000;
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// i = 3 * 1000000000;
/// ```

/// # foreign-number
///
/// ## What it finds
///
/// An integer literal with a suffix or in another base: `10L`, `0x1F`.
///
/// ## Why
///
/// An integer literal is decimal digits only.
///
/// ## Example
///
/// ```krel example fragment
/// i = 0x1F;
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// i = 31;
/// ```

/// # whole-double
///
/// ## What it finds
///
/// A double literal with a whole value: `2.0`. The intermediate code writes it as the integer `2`.
///
/// ## Why
///
/// Where a double is needed, the integer is refused. In a few places it is taken without a message
/// and means something else: in `return 2.0;`, as an argument, after a sign, and beside another
/// such literal.
///
/// ## Example
///
/// ```krel example fragment
/// d = d * 2.0;
/// ```
///
/// ## Use instead
///
/// A variable that is set from a cast:
///
/// ```krel fragment
/// double two = (double) 2;
/// d = d * two;
/// ```

/// # double-form
///
/// ## What it finds
///
/// A double literal that is written with an exponent, or that needs one: `1e-12`, `0.00001`, `.5`.
///
/// ## Why
///
/// A double literal is digits, a point, and digits. A value below 0.0001, or with more than 15
/// digits before the point, gets an exponent in the intermediate code, which is refused.
///
/// ## Example
///
/// ```krel example fragment
/// d = 1e-12;
/// ```
///
/// ## Use instead
///
/// A quotient of two whole values, which is exact:
///
/// ```krel fragment
/// int units = 1000000 * 1000000;
/// double one = (double) 1;
/// double size = (double) units;
/// d = one / size;
/// ```

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "tools/check/repairer.hpp"

namespace krel::Check {

namespace {

/// The value as the intermediate code writes it.
std::string inIntermediateCode(double value) {
    std::array<char, 40> text{};
    std::snprintf(text.data(), text.size(), "%.15g", value);
    return text.data();
}

constexpr std::array<const char*, 13> smallNames = {"zero", "one",    "two",   "three", "four",
                                                    "five", "six",    "seven", "eight", "nine",
                                                    "ten",  "eleven", "twelve"};

std::string nameOfWhole(double value) {
    if (value >= 0.0 && value < static_cast<double>(smallNames.size())) {
        return smallNames[static_cast<std::size_t>(value)];
    }
    return value == 100.0    ? "hundred"
           : value == 1000.0 ? "thousand"
                             : "value" + std::to_string(static_cast<std::int64_t>(value));
}

}  // namespace

void Repairer::literal(NodeId id, const Context& context, Pieces& out) {
    const Word op = tree[id].op;
    if (op == Word::CharacterLiteral) {
        return characterLiteral(id, context, out);
    }
    if (op == Word::StringLiteral || op == Word::ForeignString) {
        return stringLiteral(id, context, out);
    }
    if (op != Word::IntLiteral && op != Word::DoubleLiteral && op != Word::ForeignNumber) {
        return copy(id, out);
    }
    const Number number = numberOf(tree.textOf(id));
    if (!number.isKnown) {
        return copy(id, out);
    }
    if (number.isDouble && isWholeDouble(id)) {
        return wholeDouble(id, out);
    }
    if (number.isDouble) {
        return smallDouble(id, number, out);
    }
    if (number.whole > 2147483647U) {
        return bigLiteral(id, number.whole, out);
    }
    if (op == Word::ForeignNumber) {
        const std::string digits = std::to_string(number.whole);
        say("foreign-number", Severity::Error, tree[id].range,
            "integer literals are decimal digits only", "write " + quoted(digits));
        out.insert(digits, tree[id].range);
        return;
    }
    copy(id, out);
}

/// Whether it is a double literal that becomes an integer.
bool Repairer::isWholeDouble(NodeId id) const {
    const Word op = tree[id].op;
    if (tree[id].kind != Kind::Literal ||
        (op != Word::DoubleLiteral && op != Word::ForeignNumber)) {
        return false;
    }
    const Number number = numberOf(tree.textOf(id));
    return number.isKnown && number.isDouble &&
           inIntermediateCode(number.real).find_first_not_of("0123456789") == std::string::npos;
}

/// Whether the compiler takes the integer there without a message.
bool Repairer::isSilentDouble(NodeId id) const {
    NodeId parent = tree[id].parent;
    while (tree[parent].kind == Kind::Parentheses) {
        id = parent;
        parent = tree[id].parent;
    }
    const Kind kind = tree[parent].kind;
    if (kind == Kind::Binary) {
        const NodeId other =
            inner(tree[parent].first == id ? tree.child(parent, 1) : tree[parent].first);
        return isWholeDouble(other);
    }
    return kind == Kind::Return || kind == Kind::Unary ||
           (kind == Kind::Call && tree[parent].op == Word::Name);
}

/// A variable at the beginning of the function that holds a value throughout.
std::string Repairer::constant(Type type, const std::string& key, const std::string& base,
                               const std::string& setting, NodeId because) {
    const std::string fullKey = std::string{nameOf(type)} + " " + key;
    const auto [entry, isNew] = constants.try_emplace(fullKey);
    if (isNew) {
        entry->second = fresh(base);
        const SourceRange origin = tree[because].range;
        const std::string text =
            std::string{nameOf(type)} + " " + entry->second + " = " + setting + ";";
        constantDeclarations.insert(constantSeparator + text, origin);
        const std::string before = constantsIn(setting);
        constantTexts[entry->second] = before + (before.empty() ? "" : " ") + text;
    }
    return entry->second;
}

/// What declares the constants that a text names, and those that they are made of.
std::string Repairer::constantsIn(std::string_view text) const {
    std::string all;
    std::set<std::string_view> seen;
    std::size_t at = 0;
    while (at < text.size()) {
        std::size_t end = at;
        while (end < text.size() && isWord(text.substr(end, 1))) {
            ++end;
        }
        const std::string_view word = text.substr(at, end - at);
        const auto entry = constantTexts.find(word);
        if (entry != constantTexts.end() && seen.insert(word).second) {
            all += (all.empty() ? "" : " ") + entry->second;
        }
        at = std::max(end, at + 1);
    }
    return all;
}

/// What to say about a text that is to be written: how to declare what it names, too.
std::string Repairer::writeHelp(std::string_view text) const {
    const std::string declared = constantsIn(text);
    return declared.empty() ? "write " + quoted(text)
                            : "declare " + quoted(declared) + ", and write " + quoted(text);
}

/// The statements that have come to the prelude since it had that many.
std::string Repairer::declarationsSince(std::size_t before) const {
    std::string all;
    for (std::size_t index = before; index < prelude.size(); ++index) {
        all += (all.empty() ? "" : " ") + textOf(prelude[index]);
    }
    return all;
}

namespace {

/// A number as a sum of what 32 bits hold.
std::string sumOf(std::uint64_t value) {
    constexpr std::uint64_t billion = 1'000'000'000;
    if (value <= 2147483647U) {
        return std::to_string(value);
    }
    const std::string front = sumOf(value / billion);
    const bool isSum = front.find('+') != front.npos;
    const std::uint64_t rest = value % billion;
    return (isSum ? "(" + front + ")" : front) + " * 1000000000" +
           (rest == 0 ? "" : " + " + std::to_string(rest));
}

}  // namespace

/// A value with fewer than 16 digits before the point and none behind it.
std::string Repairer::doubleConstant(NodeId because, double value) {
    const std::string digits = inIntermediateCode(value);
    constexpr double mostOfLiteral = 2147483647.0;
    const std::string operand = value <= mostOfLiteral
                                    ? digits
                                    : constant(Word::Int, digits, "units",
                                               sumOf(static_cast<std::uint64_t>(value)), because);
    return constant(Word::Double, digits, nameOfWhole(value), "(double) " + operand, because);
}

/// An integer literal of more than 32 bits.
void Repairer::bigLiteral(NodeId id, std::uint64_t value, Pieces& out) {
    constexpr std::uint64_t largest = 9223372036854775807U;
    const SourceRange range = tree[id].range;
    const Kind parent = tree[tree[id].parent].kind;
    const bool hasRoom = value <= largest && parent != Kind::Index && parent != Kind::ArrayBound;
    if (!hasRoom) {
        say("big-literal", Severity::Warning, range, "an integer literal is cut to 32 bits",
            "2147483647 is the largest; compute larger values from smaller literals");
        return copy(id, out);
    }
    const bool isOperand = parent == Kind::Binary || parent == Kind::Unary;
    const std::string sum = sumOf(value);
    const std::string text = isOperand ? "(" + sum + ")" : sum;
    say("big-literal", Severity::Warning, range, "an integer literal is cut to 32 bits",
        "compute it: " + quoted(text));
    out.insert(text, range);
}

/// A double as the compiler takes it: as a literal if that can be, otherwise as a constant.
std::string Repairer::doubleText(NodeId because, double value) {
    const std::string digits = inIntermediateCode(value);
    const bool isWhole = digits.find_first_not_of("0123456789") == std::string::npos;
    return isWhole ? doubleConstant(because, value) : digits;
}

void Repairer::wholeDouble(NodeId id, Pieces& out) {
    const double value = numberOf(tree.textOf(id)).real;
    const std::string name = doubleConstant(id, value);
    const bool silent = isSilentDouble(id);
    say("whole-double", silent ? Severity::Warning : Severity::Error, tree[id].range,
        silent ? "a double literal with a whole value is taken for an integer here"
               : "a double literal with a whole value becomes an integer, which is refused",
        "set a variable from a cast, " + quoted(constantsIn(name)) + ", and write " + quoted(name));
    out.insert(name, tree[id].range);
}

namespace {

/// The digits of a literal without zeros around them, and the power of ten to multiply them by.
std::pair<std::string, int> scientific(std::string_view written) {
    std::string digits;
    int exponent = 0;
    bool behindPoint = false;
    for (std::size_t index = 0; index < written.size(); ++index) {
        const char character = written[index];
        if ('0' <= character && character <= '9') {
            digits += character;
            exponent -= behindPoint ? 1 : 0;
        } else if (character == '.') {
            behindPoint = true;
        } else if (character == 'e' || character == 'E') {
            exponent += static_cast<int>(
                std::strtol(std::string{written.substr(index + 1)}.c_str(), nullptr, 10));
            break;
        }
    }
    const std::size_t first = std::min(digits.find_first_not_of('0'), digits.size());
    digits.erase(0, first);
    while (!digits.empty() && digits.back() == '0') {
        digits.pop_back();
        ++exponent;
    }
    return {digits, exponent};
}

}  // namespace

/// A literal that is not whole. What cannot be written down is computed: a whole number times or by
/// a power of ten, which is exact as long as both are.
void Repairer::smallDouble(NodeId id, const Number& number, Pieces& out) {
    const SourceRange range = tree[id].range;
    const std::string_view written = tree.textOf(id);
    const bool isWritable =
        inIntermediateCode(number.real).find_first_not_of("0123456789.") == std::string::npos &&
        !isWholeDouble(id);
    if (isWritable && tree[id].op == Word::DoubleLiteral) {
        copy(id, out);
        return;
    }
    if (isWritable) {
        std::string plain = inIntermediateCode(number.real);
        say("double-form", Severity::Error, range,
            "a double literal is digits, a point, and digits", "write " + quoted(plain));
        out.insert(plain, range);
        return;
    }
    const auto [digits, exponent] = scientific(written);
    const int size = exponent < 0 ? -exponent : exponent;
    constexpr std::string_view reason =
        "the compiler writes this literal with an exponent and then refuses it";
    constexpr int mostOfInt = 18;
    constexpr int mostOfDouble = 22;  // the largest power of ten that a double holds exactly
    if (digits.empty() || digits.size() > 9 || size > mostOfDouble) {
        say("double-form", Severity::Error, range, std::string{reason},
            "compute the value from literals that can be written");
        stayed = true;
        return purpose == Purpose::Ask ? out.insert("0.5", range) : copy(id, out);
    }
    const int wholeSize = std::min(size, mostOfInt);
    std::string power = "1";
    power.append(static_cast<std::size_t>(wholeSize % 9), '0');
    for (int nines = wholeSize / 9; nines > 0; --nines) {
        if (power == "1") {
            power = "1000000000";
        } else {
            power += " * 1000000000";
        }
    }
    const std::string base = exponent < 0 ? "small" : "large";
    const std::string key{written};
    const std::string units = constant(Word::Int, key, "units", power, id);
    std::string scale = constant(Word::Double, key + " scale", "scale", "(double) " + units, id);
    if (size > wholeSize) {
        const double more = std::strtod(("1e" + std::to_string(size - wholeSize)).c_str(), nullptr);
        scale = constant(Word::Double, key + " more", "scale",
                         scale + " * " + doubleConstant(id, more), id);
    }
    const std::string mantissa = doubleConstant(id, std::strtod(digits.c_str(), nullptr));
    const std::string name =
        constant(Word::Double, key, base, mantissa + (exponent < 0 ? " / " : " * ") + scale, id);
    say("double-form", Severity::Error, range, std::string{reason},
        "compute it: " + quoted(constantsIn(name)) + ", and write " + quoted(name));
    out.insert(name, range);
}

}  // namespace krel::Check
