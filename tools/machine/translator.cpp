// From lines of the intermediate code to internal code. Comes in: a compilation. Goes out: the
// instructions of all functions, with the line that each comes from. A line is translated by
// itself, into one operation most of the time; lines that only hand a temporary on are joined:
//
//     _t0 = i + 1       AddConstant i, i, 1
//     i = _t0
//     _t1 = i >= n      JumpGreaterEqualSlots i, n, to B4
//     if _t1 goto B4

#include "tools/machine/translator.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdlib>
#include <limits>
#include <stdexcept>
#include <utility>

#include "codegen/functionValues.hpp"
#include "codegen/irText.hpp"
#include "parser/parser.hpp"
#include "shared/ast/nodeKinds.hpp"
#include "shared/symboltable/symbolTable.hpp"
#include "tools/machine/constants.hpp"

namespace krel::Execution {

namespace {

constexpr std::int32_t slotSize = 8;   // bytes
constexpr std::int32_t framePart = 2;  // slots above a frame

/// What an operand has become: a slot or a constant.
struct Source {
    bool isConstant;
    std::int32_t number;
    Tag tag;  // of a constant
};

/// The operations of an operator, each the first of two.
struct OperatorRow {
    std::string_view op;
    Operation whole;
    Operation real;
    bool isComparison;
    bool commutes;
};

using enum Operation;

constexpr std::array<OperatorRow, 12> operators = {{
    {Spelling::Plus, AddSlots, RealAddSlots, false, true},
    {Spelling::Minus, SubtractSlots, RealSubtractSlots, false, false},
    {Spelling::Times, MultiplySlots, RealMultiplySlots, false, true},
    {Spelling::Divide, DivideSlots, RealDivideSlots, false, false},
    {Spelling::And, AndSlots, AndSlots, false, true},
    {Spelling::Or, OrSlots, OrSlots, false, true},
    {Spelling::Equal, EqualSlots, RealEqualSlots, true, true},
    {Spelling::NotEqual, NotEqualSlots, RealNotEqualSlots, true, true},
    {Spelling::Less, LessSlots, RealLessSlots, true, false},
    {Spelling::Greater, GreaterSlots, RealGreaterSlots, true, false},
    {Spelling::LessEqual, LessEqualSlots, RealLessEqualSlots, true, false},
    {Spelling::GreaterEqual, GreaterEqualSlots, RealGreaterEqualSlots, true, false},
}};

const OperatorRow& rowOf(std::string_view op) {
    const auto* const row =
        std::ranges::find_if(operators, [op](const OperatorRow& each) { return each.op == op; });
    if (row == operators.end()) {
        throw std::runtime_error("unsupported operator: " + std::string{op});
    }
    return *row;
}

constexpr std::uint16_t numberOf(Operation operation) {
    return static_cast<std::uint16_t>(operation);
}

/// The operation so many rows behind another one.
constexpr Operation behind(Operation operation, unsigned rows) {
    return static_cast<Operation>(numberOf(operation) + rows);
}

constexpr bool isComparison(Operation operation) {
    return operation >= EqualSlots && operation <= RealGreaterEqualConstant;
}

/// The jump that a comparison becomes.
constexpr Operation jumpOf(Operation comparison) {
    return behind(JumpEqualSlots,
                  static_cast<unsigned>(numberOf(comparison)) - numberOf(EqualSlots));
}
static_assert(jumpOf(RealGreaterEqualConstant) == JumpRealGreaterEqualConstant);

/// Whether an operation does nothing but put a value into `to`, which may then be another slot.
constexpr bool onlySets(Operation operation) {
    return (operation >= EqualSlots && operation <= LoadElement);
}

std::int64_t integerOf(std::string_view text) {
    const bool isNegative = text.front() == '-';
    text.remove_prefix(isNegative || text.front() == '+' ? 1 : 0);
    std::uint64_t magnitude = 0;
    std::from_chars(text.data(), text.data() + text.size(), magnitude);
    return static_cast<std::int64_t>(isNegative ? 0 - magnitude : magnitude);
}

/// An integer literal of the source that has lost digits: its range, and what became of it.
struct LossyToken {
    SourceRange range;
    std::int64_t taken;
};

/// By the magnitudes of what became of them, each in the order of the source.
using LossyTokens = std::unordered_map<std::int64_t, std::vector<LossyToken>>;

LossyTokens lossyTokensOf(const FrontEnd::Compilation& compilation) {
    LossyTokens found;
    for (const FrontEnd::Token& token : compilation.tokens()) {
        const std::string_view text = compilation.textOf(token.range);
        constexpr std::size_t mostSafeDigits = 9;
        if (token.code != T_INT_LITERAL || text.size() <= mostSafeDigits) {
            continue;
        }
        std::int64_t value = std::numeric_limits<std::int64_t>::max();  // for a larger one, too
        std::from_chars(text.data(), text.data() + text.size(), value);
        if (value > std::numeric_limits<std::int32_t>::max()) {
            const std::int64_t taken = static_cast<std::int32_t>(value);
            found[std::abs(taken)].push_back({token.range, taken});
        }
    }
    return found;
}

/// Translates the functions of a program, one after the other.
class Translator {
public:
    Translator(const FrontEnd::Compilation& itsCompilation, const Wanted& itsWanted)
        : compilation(itsCompilation),
          wanted(itsWanted),
          lossyTokens(lossyTokensOf(itsCompilation)) {}

    Code run() {
        for (const IRFunction& function : compilation.ir().getFunctions()) {
            functionNumbers.try_emplace(function.getName(), code.functions.size());
            code.functions.emplace_back().name = function.getName();
        }
        std::size_t number = 0;
        for (const IRFunction& function : compilation.ir().getFunctions()) {
            translateFunction(function, code.functions[number++]);
        }
        addStart();
        code.lineCount = line;
        constants.moveTo(code);
        code.entryOfMain = code.instructions.data() + code.instructions.size() - 2;
        return std::move(code);
    }

private:
    // Functions.

    void translateFunction(const IRFunction& function, Function& made) {
        reader.read(function);
        FunctionValues planned{function, reader.words(), compilation.symbolTable()};
        planned.planFrame();
        values = &planned;
        made.slots = static_cast<std::int32_t>(planned.size() / slotSize);
        made.entry = next();
        made.firstLine = line;
        countUses();
        parameters.clear();
        pendingArguments.clear();
        wholeParameters = realParameters = 0;
        blocks.clear();
        jumps.clear();
        std::size_t inFunction = 0;
        if (wanted.counts) {
            emit(Count, static_cast<std::int32_t>(compilation.irLines().size() +
                                                  functionNumbers.at(made.name)));
        }
        for (const IRBasicBlock& block : function.getBlocks()) {
            blocks[block.getNumber()] = next();
            barrier = next();
            for (std::size_t rest = block.getInstructions().size(); rest > 0; --rest) {
                translateLine(reader[inFunction++], made);
            }
        }
        line -= line > made.firstLine ? 1 : 0;  // the end belongs to the last line
        emit(Return);
        line += inFunction > 0 ? 1 : 0;
        made.end = next();
        made.lineEnd = line;
        resolveJumps();
        listVariables(made);
    }

    /// Behind all functions: the call of the first one and the end.
    void addStart() {
        const auto first = functionNumbers.find(std::string{wanted.entry});
        if (first == functionNumbers.end()) {
            throw std::runtime_error("there is no " + std::string{wanted.entry});
        }
        emit(Operation::Call, framePart, 0, static_cast<std::int32_t>(first->second));
        emit(End);
    }

    const Symbol* functionSymbol(std::string_view name) const {
        const Name known = Name::known(name);
        return compilation.symbolTable().lookup(known, known, 0);
    }

    void resolveJumps() {
        for (const auto& [instruction, block] : jumps) {
            const auto target = blocks.find(block);
            if (target == blocks.end()) {
                throw std::runtime_error("there is no block B" + std::to_string(block));
            }
            code.instructions[instruction].to =
                static_cast<std::int32_t>(target->second) - static_cast<std::int32_t>(instruction);
        }
    }

    /// How often each value occurs. A temporary with two occurrences is only handed on.
    void countUses() {
        uses.clear();
        for (std::size_t number = 0; number < reader.size(); ++number) {
            const krel::Instruction read = reader[number];
            const std::size_t groups = read.form == IRForm::None ? 0 : groupCountOf(read.form);
            for (std::size_t group = 0; group < groups; ++group) {
                addUse(read.groups[group]);
            }
        }
    }

    void addUse(const Operand& operand) {
        if (operand.valueNumber() != 0) {
            ++uses[operand.valueNumber()];
        }
        if (operand.kind() == Operand::Kind::Element) {
            addUse(reader.operandOf(elementOf(operand).index));
        }
    }

    static bool isTemporaryName(std::string_view name) {
        return name.starts_with("_t") && name.size() > 2 &&
               endOfRun(name, 2, CharacterClass::digit) == name.size();
    }

    bool isHandedOn(const Operand& operand) {
        const NamedValue* const value = values->valueOf(operand);
        return operand.kind() == Operand::Kind::Named && value != nullptr &&
               value->declaredType.empty() && uses[operand.valueNumber()] == 2 &&
               isTemporaryName(operand.text());
    }

    void listVariables(Function& made) {
        for (const NamedValue* value : reader.words().inOrder()) {
            const bool isDeclared = !value->declaredType.empty();
            if (!isDeclared && uses[reader.words().numberOf(value->name)] == 0) {
                continue;  // only spelled like a name
            }
            Variable variable;
            variable.name = value->name;
            variable.slot = slotOf(*value);
            variable.length = value->isArray ? value->length : 1;
            variable.isArray = value->isArray;
            variable.isDeclared = isDeclared;
            variable.isParameter = std::ranges::find(parameters, value->name) != parameters.end();
            variable.isTemporary = !isDeclared && isTemporaryName(value->name);
            const Name type = isDeclared ? value->declaredType : value->type;
            variable.type = type.empty() ? Spelling::Int : type.text();
            made.variables.push_back(std::move(variable));
        }
    }

    // Lines.

    void translateLine(const krel::Instruction& read, const Function& function) {
        if (wanted.counts) {
            emit(Count, static_cast<std::int32_t>(line));
        }
        if (wanted.stops) {
            emit(Line, static_cast<std::int32_t>(line));
        }
        addLostDigits(read);
        translateForm(read.form, read.groups, function);
        ++line;
    }

    void translateForm(IRForm form, const Operand* groups, const Function& function) {
        switch (form) {
            case IRForm::IntegerParameter:
                parameters.emplace_back(groups[1].text());
                values->recordType(groups[1], Name::known(groups[0].text()));
                emit(Take, slotOf(groups[1]), wholeParameters++);
                return;
            case IRForm::DoubleParameter:
                parameters.emplace_back(groups[0].text());
                values->recordType(groups[0], TypeName::Double);
                emit(TakeReal, slotOf(groups[0]), realParameters++);
                return;
            case IRForm::Argument:
                pendingArguments.push_back(groups[0]);
                return;
            case IRForm::CallWithResult:
                translateCall(groups[1].text(), function);
                takeResult(groups[0], groups[1].text());
                return;
            case IRForm::Call:
                translateCall(groups[0].text(), function);
                return;
            case IRForm::Branch:
                translateBranch(groups[0], groups[1]);
                return;
            case IRForm::Jump:
                addJump(groups[0]);
                emit(Operation::Jump);
                return;
            case IRForm::Return:
                emit(function.name == "main" ? ReturnZero : Operation::Return);
                return;
            case IRForm::ReturnValue:
                translateReturn(groups[0]);
                return;
            case IRForm::Conversion:
                translateConversion(groups[0], groups[1].text(), groups[2]);
                return;
            case IRForm::IntToDouble:
                convert(WholeToReal, groups[0], groups[1], TypeName::Double);
                return;
            case IRForm::DoubleToString:
                convert(RealToText, groups[0], groups[1], TypeName::String);
                return;
            case IRForm::BinaryOperation:
                translateBinary(groups[0], groups[1], groups[2].text(), groups[3]);
                return;
            case IRForm::UnaryOperation:
                translateUnary(groups[0], groups[1].text(), groups[2]);
                return;
            case IRForm::ElementStore:
            case IRForm::Copy:
                translateCopy(groups[0], groups[1], form == IRForm::Copy);
                return;
            case IRForm::None:
                break;
        }
        throw std::runtime_error("unsupported IR instruction: " + std::string{groups->text()});
    }

    void translateBranch(const Operand& condition, const Operand& block) {
        if (isHandedOn(condition) && next() > barrier) {
            krel::Execution::Instruction& last = code.instructions.back();
            if (last.to == slotOf(condition) && isComparison(last.operation)) {
                addJumpFrom(next() - 1, block);
                last.operation = jumpOf(last.operation);
                return;
            }
            if (last.to == slotOf(condition) && last.operation == Not) {
                addJumpFrom(next() - 1, block);
                last.operation = JumpUnless;
                return;
            }
        }
        const std::int32_t slot = inSlot(sourceOf(condition, 0), 0);
        addJump(block);
        emit(JumpIf, 0, slot);
    }

    void translateReturn(const Operand& value) {
        const bool isReal = values->typeOf(value) == TypeName::Double;
        if (isHandedOn(value) && next() > barrier) {
            krel::Execution::Instruction& last = code.instructions.back();
            if (last.to == slotOf(value) &&
                (last.operation == Copy || last.operation == RealCopy)) {
                last.operation = isReal ? ReturnReal : ReturnValue;
                return;
            }
        }
        emit(isReal ? ReturnReal : ReturnValue, 0, inSlot(sourceOf(value, 0), 0));
    }

    void translateConversion(const Operand& target, std::string_view word, const Operand& value) {
        if (word == Spelling::IntToChar) {
            convert(Move, target, value, TypeName::Character);
        } else if (word == Spelling::CharToInt) {
            convert(Move, target, value, TypeName::Int);
        } else {
            convert(word == Spelling::IntToString    ? WholeToText
                    : word == Spelling::BoolToString ? BooleanToText
                                                     : CharacterToText,
                    target, value, TypeName::String);
        }
    }

    void convert(Operation operation, const Operand& target, const Operand& value, Name type) {
        emit(operation, slotOf(target), inSlot(sourceOf(value, 0), 0));
        values->recordType(target, type);
    }

    void translateBinary(const Operand& target, const Operand& left, std::string_view op,
                         const Operand& right) {
        const Name leftType = values->typeOf(left);
        const Name rightType = values->typeOf(right);
        const OperatorRow& row = rowOf(op);
        if (leftType == TypeName::Double || rightType == TypeName::Double) {
            emitBinary(row.real, row.commutes, target, left, right);
            values->recordType(target, row.isComparison ? TypeName::Boolean : TypeName::Double);
        } else if (op == Spelling::Plus &&
                   (leftType == TypeName::String || rightType == TypeName::String)) {
            emitBinary(ConcatenateSlots, false, target, left, right);
            values->recordType(target, TypeName::String);
        } else {
            emitBinary(row.whole, row.commutes, target, left, right);
            if (row.isComparison) {
                values->recordType(target, TypeName::Boolean);
            } else if (!values->hasType(target)) {
                values->recordType(target, values->typeOf(left));
            }
        }
    }

    void emitBinary(Operation operation, bool commutes, const Operand& target, const Operand& left,
                    const Operand& right) {
        Source first = sourceOf(left, 0);
        Source second = sourceOf(right, 1);
        if (first.isConstant && !second.isConstant && commutes) {
            std::swap(first, second);
        }
        const std::int32_t slot = inSlot(first, 0);
        emit(second.isConstant ? behind(operation, 1) : operation, slotOf(target), slot,
             second.number);
    }

    void translateUnary(const Operand& target, std::string_view op, const Operand& value) {
        const bool isReal = values->typeOf(value) == TypeName::Double;
        const std::int32_t slot = inSlot(sourceOf(value, 0), 0);
        if (op == Spelling::Minus) {
            emit(isReal ? RealNegate : Negate, slotOf(target), slot);
        } else if (op == Spelling::Not) {
            emit(isReal ? NotReal : Not, slotOf(target), slot);
        } else {
            emit(isReal ? RealCopy : Copy, slotOf(target), slot);
        }
        if (isReal) {
            values->recordType(target, TypeName::Double);
        } else if (op == Spelling::Not) {
            values->recordType(target, TypeName::Boolean);
        }
    }

    void translateCopy(const Operand& target, const Operand& value, bool recordsType) {
        const Name type = values->typeOf(value);
        const bool isReal = values->typeOf(target) == TypeName::Double || type == TypeName::Double;
        if (const auto slot = directSlot(target)) {
            copyTo(*slot, value, isReal);
        } else {
            const std::int32_t from = inSlot(sourceOf(value, 0), 0);
            emitElement(StoreElement, from, target, 1);
        }
        if (recordsType) {
            values->recordType(target, isReal ? Name{TypeName::Double} : type);
        }
    }

    void copyTo(std::int32_t slot, const Operand& value, bool isReal) {
        if (isHandedOn(value) && next() > barrier) {
            krel::Execution::Instruction& last = code.instructions.back();
            if (last.to == slotOf(value) && onlySets(last.operation)) {
                last.to = slot;
                return;
            }
        }
        if (const auto direct = directSlot(value)) {
            emit(isReal ? RealCopy : Copy, slot, *direct);
        } else if (value.kind() == Operand::Kind::Element) {
            emitElement(LoadElement, slot, value, 0);
        } else {
            load(slot, sourceOf(value, 0));
        }
    }

    // Calls.

    void translateCall(std::string_view callee, const Function& function) {
        if (callee == Callee::Print) {
            print();
        } else if (callee == Callee::Exit) {
            passArguments();
            emit(Exit);
        } else if (const auto known = functionNumbers.find(std::string{callee});
                   known != functionNumbers.end()) {
            callOwn(static_cast<std::int32_t>(known->second), function);
        } else {
            passArguments();
            emit(CallForeign, 0, 0, static_cast<std::int32_t>(code.foreign.size()));
            code.foreign.emplace_back(callee);
        }
    }

    /// Many functions have one argument.
    void callOwn(std::int32_t callee, const Function& function) {
        if (pendingArguments.size() == 1 &&
            values->typeOf(pendingArguments.front()) != TypeName::Double) {
            const std::int32_t slot = inSlot(sourceOf(pendingArguments.front(), 0), 0);
            emit(CallPassing, function.slots + framePart, slot, callee);
            pendingArguments.clear();
        } else {
            passArguments();
            emit(Operation::Call, function.slots + framePart, 0, callee);
        }
    }

    /// Mostly one text, which is at hand.
    void print() {
        if (pendingArguments.size() == 1 &&
            values->typeOf(pendingArguments.front()) != TypeName::Double) {
            const Source text = sourceOf(pendingArguments.front(), 0);
            emit(text.isConstant ? PrintConstant : Print, 0, text.number, text.number);
            pendingArguments.clear();
        } else {
            passArguments();
            emit(PrintRegister);
        }
    }

    void passArguments() {
        std::int32_t wholes = 0;
        std::int32_t reals = 0;
        for (const Operand& argument : pendingArguments) {
            const bool isReal = values->typeOf(argument) == TypeName::Double;
            const Source source = sourceOf(argument, 0);
            const std::int32_t place = isReal ? reals++ : wholes++;
            if (source.isConstant) {
                emit(isReal ? PassRealConstant : PassConstant, place, source.tag, source.number);
            } else {
                emit(isReal ? PassReal : Pass, place, source.number);
            }
        }
        pendingArguments.clear();
    }

    void takeResult(const Operand& target, std::string_view callee) {
        const Symbol* const symbol = functionSymbol(callee);
        const bool isReal = symbol != nullptr && symbol->typeName() == TypeName::Double;
        emit(isReal ? RealResult : Result, slotOf(target));
        if (symbol != nullptr) {
            values->recordType(target, symbol->typeName());
        }
    }

    // Operands.

    static std::int32_t slotOf(const NamedValue& value) {
        return static_cast<std::int32_t>(FunctionValues::offsetOf(value) / slotSize);
    }

    std::int32_t slotOf(const Operand& operand) const {
        const NamedValue* const value = values->valueOf(operand);
        if (value == nullptr) {
            throw std::runtime_error("no stack slot for IR value: " + std::string{operand.text()});
        }
        return slotOf(*value);
    }

    /// The slot of a name, or of an element that a literal inside of the array tells.
    std::optional<std::int32_t> directSlot(const Operand& operand) const {
        if (operand.kind() == Operand::Kind::Named) {
            return slotOf(operand);
        }
        if (operand.kind() != Operand::Kind::Element) {
            return std::nullopt;
        }
        const Operand index = reader.operandOf(elementOf(operand).index);
        const NamedValue* const array = values->valueOf(operand);
        if (index.kind() != Operand::Kind::Integer || array == nullptr) {
            return std::nullopt;
        }
        const std::int64_t number = integerOf(index.text());
        if (number < 0 || number >= array->length) {
            return std::nullopt;
        }
        return slotOf(*array) + static_cast<std::int32_t>(number);
    }

    /// What an operand is. An element is loaded into the scratch slot of that number first.
    Source sourceOf(const Operand& operand, std::int32_t scratch) {
        const std::string_view text = operand.text();
        switch (operand.kind()) {
            case Operand::Kind::Boolean:
                return {true, constants.whole(text == Keyword::True ? 1 : 0), Tags::whole};
            case Operand::Kind::Integer:
                return {true, constants.whole(integerOf(text)), Tags::whole};
            case Operand::Kind::Character:
                return {true, constants.whole(characterCode(text)), Tags::whole};
            case Operand::Kind::Double:
                return {true, constants.real(std::strtod(std::string{text}.c_str(), nullptr)),
                        Tags::real};
            case Operand::Kind::String:
                return {true, constants.text(text), Tags::text};
            default:
                break;
        }
        if (const auto slot = directSlot(operand)) {
            return {false, *slot, Tags::any};
        }
        emitElement(LoadElement, scratch, operand, scratch);
        return {false, scratch, Tags::any};
    }

    /// The slot of a source. A constant is loaded into the scratch slot of that number first.
    std::int32_t inSlot(const Source& source, std::int32_t scratch) {
        if (!source.isConstant) {
            return source.number;
        }
        load(scratch, source);
        return scratch;
    }

    void load(std::int32_t slot, const Source& constant) {
        emit(constant.tag == Tags::whole  ? LoadWhole
             : constant.tag == Tags::real ? LoadReal
                                          : LoadText,
             slot, 0, constant.number);
    }

    /// Loads or stores an element, by way of the slot `value`.
    void emitElement(Operation operation, std::int32_t value, const Operand& operand,
                     std::int32_t scratch) {
        const Element element = elementOf(operand);
        const NamedValue* const array = values->valueOf(operand);
        const Operand index = reader.operandOf(element.index);
        if (array == nullptr || array->length == 0 || index.kind() == Operand::Kind::Element) {
            throw std::runtime_error("unknown array: " + std::string{element.array});
        }
        const std::int32_t slot = inSlot(sourceOf(index, scratch), scratch);
        const SourceRange range = compilation.irLines()[line].source;
        const bool isInList = operation == StoreElement && index.kind() == Operand::Kind::Integer &&
                              compilation.textOf(range).find('{') != std::string_view::npos;
        code.arrays.push_back(
            {slotOf(*array), array->length, std::string{element.array}, isInList});
        emit(operation, value, slot, static_cast<std::int32_t>(code.arrays.size() - 1));
    }

    // Instructions.

    std::uint32_t next() const { return static_cast<std::uint32_t>(code.instructions.size()); }

    void emit(Operation operation, std::int32_t to = 0, std::int32_t left = 0,
              std::int32_t right = 0) {
        code.instructions.push_back({operation, to, left, right});
        code.lines.push_back(line < compilation.irLines().size() ? static_cast<std::uint32_t>(line)
                                                                 : Code::noLine);
    }

    /// The next instruction will jump to a block.
    void addJump(const Operand& block) { addJumpFrom(next(), block); }

    void addJumpFrom(std::uint32_t instruction, const Operand& block) {
        jumps.emplace_back(instruction, static_cast<int>(integerOf(block.text())));
    }

    /// The line uses an integer literal that was cut, and covers one that was.
    void addLostDigits(const krel::Instruction& read) {
        const std::size_t groups = lossyTokens.empty() ? 0 : groupCountOf(read.form);
        for (std::size_t group = 0; group < groups; ++group) {
            Operand operand = read.groups[group];
            if (operand.kind() == Operand::Kind::Element) {
                operand = reader.operandOf(elementOf(operand).index);
            }
            const LossyToken* const token =
                operand.kind() == Operand::Kind::Integer ? lossyTokenOf(operand) : nullptr;
            if (token != nullptr) {
                emit(LostDigits, static_cast<std::int32_t>(code.lost.size()));
                code.lost.push_back({static_cast<std::uint32_t>(line),
                                     std::string{compilation.textOf(token->range)}, token->taken});
                return;
            }
        }
    }

    /// The first token in the range of the line of which such an operand can have been left. A
    /// negative one reads as the operator "-" and its magnitude.
    const LossyToken* lossyTokenOf(const Operand& operand) const {
        const auto same = lossyTokens.find(std::abs(integerOf(operand.text())));
        if (same == lossyTokens.end()) {
            return nullptr;
        }
        const SourceRange range = compilation.irLines()[line].source;
        const auto token = std::ranges::lower_bound(
            same->second, range.begin, {}, [](const LossyToken& each) { return each.range.begin; });
        return token != same->second.end() && token->range.end <= range.end ? &*token : nullptr;
    }

    const FrontEnd::Compilation& compilation;
    const Wanted& wanted;
    const LossyTokens lossyTokens;
    const FrontEnd::Compilation::NamesInUse names{compilation};
    Code code;
    Constants constants;
    FunctionReader reader;
    std::unordered_map<std::string, std::uint32_t> functionNumbers;
    std::size_t line = 0;  // of the intermediate code, through all functions

    // Of the function at hand.
    FunctionValues* values = nullptr;
    std::unordered_map<std::uint32_t, std::uint32_t> uses;  // of values, by their numbers
    std::vector<std::string> parameters;
    std::vector<Operand> pendingArguments;
    std::int32_t wholeParameters = 0;
    std::int32_t realParameters = 0;
    std::unordered_map<int, std::uint32_t> blocks;     // where they begin
    std::vector<std::pair<std::uint32_t, int>> jumps;  // from instructions to blocks
    std::uint32_t barrier =
        0;  // instructions before it cannot be changed: a jump leads behind them
};

}  // namespace

std::size_t Code::functionAt(const krel::Execution::Instruction* instruction) const {
    const auto position = static_cast<std::uint32_t>(instruction - instructions.data());
    const auto behind = std::ranges::upper_bound(functions, position, {}, &Function::entry);
    return static_cast<std::size_t>(behind - functions.begin()) - 1;
}

Code translate(const FrontEnd::Compilation& compilation, const Wanted& wanted) {
    return Translator{compilation, wanted}.run();
}

}  // namespace krel::Execution
