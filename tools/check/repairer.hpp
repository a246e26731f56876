#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

#include "tools/check/effects.hpp"
#include "tools/check/finding.hpp"
#include "tools/check/model.hpp"
#include "tools/check/pieces.hpp"

namespace krel::Check {

/// Writes a program anew in the way that the compiler takes, and says what it had to change and
/// why. What is Krel already is taken over byte by byte.
///
/// One function writes each construct. A construct that may not stand where it stands is moved into
/// a variable of its own: the declaration goes to the *prelude*, the statements that have to run
/// right before the statement at hand. Who writes a statement decides where its prelude goes: in
/// front of it, into the body of a loop, or into an `else`.
///
/// The functions are grouped by rules, in rules/; each group has the pages of its rules.
class Repairer {
public:
    /// Whether repairs that may miss what is meant are written, or only proposed.
    enum class Guesses : std::uint8_t { Left, Written };

    /// Who is to read the result. What cannot be repaired is replaced by something that the
    /// compiler accepts, without a word, or stays as the user wrote it.
    enum class Purpose : std::uint8_t { Ask, Write };

    /// The nodes of `leftOut` are not repaired.
    Repairer(const Model& itsModel, const std::unordered_set<NodeId>& itsLeftOut,
             Purpose itsPurpose = Purpose::Ask, Guesses itsGuesses = Guesses::Written);

    /// The whole program. To be called once.
    Pieces repair();
    /// What there is to say, in no particular order.
    std::vector<Finding> takeFindings() { return std::move(findings); }
    /// Whether the repaired program would differ without guesses.
    bool hasGuessed() const { return guessed; }
    /// Whether it would hold foreign constructs that only the user can write anew.
    bool hasStayed() const { return stayed; }

private:
    /// What an expression has to be where it stands.
    struct Context {
        bool calls = true;       // functions may be called here
        bool typed = true;       // the compiler checks types here
        bool condition = false;  // only zero or not zero matters
        bool printed = false;    // an argument of print
        Type want = Word::End;   // the type that is needed; End when any will do
    };

    using Prelude = std::vector<Pieces>;
    using Write = std::function<void(Pieces&)>;

    /// An edit of single tokens, which any copy of them carries out.
    struct TokenEdit {
        SourceRange range;
        std::string text;
        bool once = false;  // an insertion that is not repeated
        bool done = false;
    };

    struct NewName {
        std::string name;
        std::string base;
    };

    // Tokens (repairer.cpp)
    void collectUses();
    void findUnread();
    void collectTokenEdits();
    bool isInUnknownLine(std::uint32_t at) const;
    bool isDoubtful(const Syntax::Gap& gap) const;
    void editToken(SourceRange range, std::string text);
    void copy(std::uint32_t begin, std::uint32_t end, Pieces& out);
    void copy(NodeId id, Pieces& out) { copy(tree[id].range.begin, tree[id].range.end, out); }
    void finishAt(std::uint32_t place, Pieces& out);
    void markDone(TokenEdit& edit);

    // Reports and names (repairer.cpp)
    void say(std::string_view rule, Severity severity, SourceRange range, std::string message,
             std::string help);
    std::string fresh(std::string base);
    std::string freshFunction(const std::string& base);
    std::string freeName(std::string base, bool inProgram);
    bool isFree(const std::string& name, bool inProgram);
    std::unordered_set<std::string>& namesIn(FunctionId function);
    std::string textOf(const Pieces& pieces) const { return pieces.textOver(tree.text); }
    std::string indentOf(NodeId statement) const;
    std::string separatorOf(NodeId statement) const;
    static std::string quoted(std::string_view text);
    static bool isWord(std::string_view text);

    // Preludes (repairer.cpp)
    Prelude capture(const Write& write);
    void withPrelude(NodeId statement, const Write& write, Pieces& out);
    void flush(Prelude& statements, NodeId statement, Pieces& out);
    std::string hoist(Type type, const std::string& base, Pieces&& value, NodeId because);
    std::string hoisted(NodeId id, const std::string& base, Type type, Pieces& out);

    // Statements (statements.cpp)
    void program(Pieces& out);
    void copyTopLevel(NodeId parent, std::uint32_t begin, std::uint32_t end, Pieces& out);
    void function(NodeId id, Pieces& out);
    void statement(NodeId id, Pieces& out);
    void statements(NodeId block, std::uint32_t& at, Pieces& out);
    void expressionStatement(NodeId id, Pieces& out);
    void returnStatement(NodeId id, Pieces& out);
    void leaveOut(NodeId id, Pieces& out);
    /// The body of an `if` or a loop: a block in any case, with statements before and behind.
    void body(NodeId id, std::uint32_t header, Prelude&& first, Prelude&& last, Pieces& out);
    void blockWith(NodeId id, Prelude&& first, Prelude&& last, Pieces& out);
    void ifStatement(NodeId id, Pieces& out);
    void whileStatement(NodeId id, Pieces& out);
    void doStatement(NodeId id, Pieces& out);
    void forStatement(NodeId id, Pieces& out);
    void condition(NodeId id, Pieces& out);
    Pieces leaveUnless(NodeId condition, Pieces&& text) const;
    bool isOperand(NodeId id) const;
    bool continues(NodeId body) const;
    Prelude forInit(NodeId part, Pieces& out);
    Prelude forUpdate(NodeId part);
    Prelude forTest(NodeId part, Pieces& out);
    Pieces afterFirstRound(Prelude&& steps, SourceRange origin, Prelude& before);
    void stayPart(NodeId part, Pieces& out) const;
    void simple(NodeId expression, Pieces& out);
    std::uint32_t endOfHeader(NodeId before) const;

    // Expressions (expressions.cpp)
    void expression(NodeId id, const Context& context, Pieces& out);
    void sayMember(NodeId id);
    void childrenOf(NodeId id, const Context& context, Pieces& out);
    void literal(NodeId id, const Context& context, Pieces& out);
    void unary(NodeId id, const Context& context, Pieces& out);
    void binary(NodeId id, const Context& context, Pieces& out);
    Pieces binaryStep(NodeId id, const Context& context, Pieces&& left);
    Context operandContext(NodeId id, const Context& context) const;
    bool isAsItShouldBe(NodeId id, const Context& context) const;
    NodeId inner(NodeId id) const;
    bool isAtom(NodeId id) const;
    bool isTruth(NodeId id) const;
    bool isIndexAtom(NodeId id) const;

    /// The cases of a `switch`.
    struct Cases {
        std::vector<NodeId> chosen;
        std::vector<NodeId> others;
        bool isCertain = true;   // nothing goes on into the next case
        bool needsLoop = false;  // for a `break` in the middle
    };

    /// A copy of a function's body in place of a call.
    struct Copy {
        FunctionId function = noFunction;
        std::string result;      // the variable for what it returns; empty for nothing
        std::string flag;        // the variable that tells of a `return` in a loop; empty without
        bool needsLoop = false;  // for a `return` before the end
    };

    // rules/
    void planInlining();
    void judgeInlined();
    void placeGlobals();
    std::vector<VariableId> globalsBehind(VariableId number) const;
    void addGlobalsBehind(std::set<VariableId>& numbers) const;
    void carryGlobalsToCopies();
    void renameHiddenGlobals();
    bool canInline();
    bool callsItself(FunctionId number) const;
    std::string reasonToStay() const;
    std::size_t bytesOfCopy(FunctionId number, int depth);
    FunctionId calleeOf(NodeId id) const;
    bool isCopyable(FunctionId number) const;
    bool isInlined(NodeId call) const;
    void nameInCopy(VariableId number, const std::string& name);
    void bindArguments(NodeId call, const Function& function);
    std::string inlineCall(NodeId call);
    Copy copyOf(FunctionId number);
    NodeId loopAround(NodeId id, NodeId block) const;
    void returnFromCopy(NodeId id, Pieces& out);
    void leaveAfter(NodeId loop, Pieces& out);
    void stay(NodeId id, Pieces& out);
    std::string endOfRange(NodeId id) const;
    void foreignConstruct(NodeId id, Pieces& out);
    void wrapper(NodeId id, Pieces& out);
    void prototype(NodeId id);
    bool leavesAlways(NodeId id) const;
    NodeId leftBy(NodeId id) const;
    NodeId lastBreak(NodeId id) const;
    Cases casesOf(NodeId id);
    void caseBody(NodeId id, Pieces& out);
    void switchStatement(NodeId id, Pieces& out);
    std::optional<std::int64_t> lengthOf(const Variable& array) const;
    std::string lengthText(NodeId array) const;
    void forEachStatement(NodeId id, Pieces& out);
    bool namedConstant(NodeId id, const Context& context, Pieces& out);
    bool foreignPrint(NodeId id, Pieces& out);
    bool streamPrint(NodeId id, Pieces& out);
    void formatted(const std::vector<NodeId>& arguments, Pieces& out);
    void printed(NodeId argument, Pieces& out);
    void finishPrint(SourceRange name, Pieces&& arguments, Pieces& out);
    static void separate(Pieces& arguments, SourceRange origin);
    static std::string printable(const std::string& literal, bool isFirst);
    void complement(NodeId id, Pieces& out);
    Pieces logical(NodeId id, const Context& context, Pieces&& left);
    static Word bitOperatorOf(Word assignment);
    static bool isBitOperator(Word op);
    std::string addedFunctions() const;
    std::string asArithmetic(NodeId id, Word op, Pieces& text);
    Pieces bitOperation(NodeId id, Word op, const Context& context, Pieces&& left);
    std::optional<std::int64_t> folded(NodeId id, int depth) const;
    static std::optional<std::int64_t> foldedNumber(Word word, std::string_view text);
    std::optional<std::int64_t> foldedName(NodeId id, int depth) const;
    std::optional<std::int64_t> foldedOperation(NodeId id, int depth) const;
    std::string constant(Type type, const std::string& key, const std::string& base,
                         const std::string& setting, NodeId because);
    std::string doubleConstant(NodeId because, double value);
    std::string constantsIn(std::string_view text) const;
    std::string writeHelp(std::string_view text) const;
    std::string declarationsSince(std::size_t before) const;
    std::string doubleText(NodeId because, double value);
    void bigLiteral(NodeId id, std::uint64_t value, Pieces& out);
    void wholeValue(NodeId id, NodeId operand, const Context& context, Pieces& out);
    std::string baseNameOf(NodeId id) const;
    std::string joinedLiterals(NodeId id) const;
    bool isCompared(NodeId id) const;
    bool joinLiterals(NodeId id, Pieces& out);
    void wholeDouble(NodeId id, Pieces& out);
    void smallDouble(NodeId id, const Number& number, Pieces& out);
    bool isWholeDouble(NodeId id) const;
    bool isSilentDouble(NodeId id) const;
    void name(NodeId id, Pieces& out);
    void place(NodeId id, Pieces& out);
    void element(NodeId id, Pieces& out);
    std::string keptNow(NodeId place, const std::string& text);
    NodeId columnsOf(NodeId array) const;
    void cast(NodeId id, const Context& context, Pieces& out);
    bool aloneCast(NodeId id, Type target, Pieces& out);
    void call(NodeId id, const Context& context, Pieces& out);
    std::string helpForCall(NodeId id, const std::string& declared, const std::string& name) const;
    void arguments(NodeId id, Pieces& out);
    void truthValue(NodeId id, const Context& context, Pieces& out);
    void doubleCondition(NodeId id, const Context& context, Pieces& out);
    bool coerce(NodeId id, const Context& context, Pieces& out);
    bool coerceLiteral(NodeId id, Type want, Pieces& out);
    std::string atomFor(NodeId id, const std::string& base, Pieces&& text);
    void choose(NodeId id, const Context& context, Pieces& out);
    bool isDecided(NodeId id, Type type) const;
    Pieces decision(NodeId id, Type type, const std::string& begin, bool isComplete);
    Pieces branch(NodeId id, Type type, const std::string& begin);
    void sayDecided(NodeId id, const std::string& text);
    bool decidedStatement(NodeId statement, NodeId value, Type type, const std::string& begin,
                          Pieces& out);
    bool decidedDeclarator(NodeId id, Pieces& out);
    void nestedAssignment(NodeId id, const Context& context, Pieces& out);
    void nestedUpdate(NodeId id, Pieces& out);
    Pieces remainder(NodeId id, Pieces&& left);
    Pieces shortCircuit(NodeId id, Pieces&& left, Prelude&& before, Pieces&& right);
    bool needsLeft(NodeId right) const;
    std::string assignment(NodeId id, Pieces& out);
    void sumAssignment(NodeId id, Pieces& out);
    std::string assignedFrom(NodeId id, const std::string& targetText);
    void update(NodeId id, Pieces& out);
    void callStatement(NodeId id, Pieces& out);
    void characterLiteral(NodeId id, const Context& context, Pieces& out);
    void stringLiteral(NodeId id, const Context& context, Pieces& out);
    bool isRefusedText(NodeId id) const;
    void findMixedArrays(NodeId id);
    void declaration(NodeId id, Pieces& out);
    void declarator(NodeId id, bool withType, Pieces& out);
    void judgeElement(NodeId id, Type type, std::size_t before);
    bool isFilled(const Variable& array) const;
    std::string missingElements(NodeId id, std::size_t count, std::int64_t length);
    void arrayDeclarator(NodeId id, Pieces& out);
    std::uint32_t arraySize(NodeId id, Pieces& out);
    bool isPlainSize(NodeId size) const;
    void initialiserList(NodeId id, Pieces& out);
    void elements(NodeId list, Type type, bool isFirst, Pieces& out);
    void initialValue(NodeId id, Type type, Pieces& out);
    bool isPlainDeclaration(NodeId id) const;
    bool isReadable(NodeId statement) const;
    bool isArray(NodeId declarator) const;
    bool hasBoundFirst(NodeId declarator) const;
    std::string defaultOf(Type type) const;
    void findNames();
    void findLinkedName(const Function& function);
    std::string freeNameFor(const Variable& variable, const Function& function);
    void findForeignWords();
    void findMainType();
    void findCarriageReturns();
    void findForeignComments();
    bool isBetweenTokens(std::uint32_t place) const;
    void moveComment(SourceRange range, std::uint32_t lineEnd, const std::string& inside);
    void replaceWord(std::string_view rule, SourceRange range, std::string_view instead,
                     const std::string& message);
    void findGlobals();
    bool isChanged(NodeId use) const;
    void declareGlobals(Pieces& out);
    void reportGlobal(VariableId number);
    void clearElements(VariableId number);
    void functionHeader(NodeId id, Pieces& out, Pieces& declarations);
    bool mainParameters(NodeId id, Pieces& out);
    void arrayParameter(NodeId id, Pieces& out, Pieces& declarations);
    bool isMovedGlobal(NodeId declaration);
    std::string wholeFunction() const;
    void rename(VariableId variable, const std::string& name);
    std::string nameNow(VariableId variable) const;

    const Model& model;
    const Tree& tree;
    const Effects effects;
    const std::unordered_set<NodeId>& leftOut;
    const Purpose purpose;
    const Guesses guesses;
    bool guessed = false;
    bool stayed = false;

    std::vector<TokenEdit> tokenEdits;   // in order, once collected
    std::vector<std::size_t> doneEdits;  // in the order in which they were carried out
    std::vector<Finding> findings;
    std::set<std::pair<std::string_view, std::uint32_t>> said;  // rules and where

    std::unordered_set<std::string> usedNames;    // in the whole program, and new ones
    std::unordered_set<std::string> sharedByAll;  // of functions, and of variables outside of them
    std::map<FunctionId, std::unordered_set<std::string>> ownNames;
    std::map<std::pair<FunctionId, std::string>, int> lastNumbers;  // behind a name
    std::vector<NewName> newNames;  // in the order in which they were made
    std::map<VariableId, std::string> renamed;
    std::unordered_set<VariableId> assignedOnly;  // declared before: their type is left out

    const std::vector<NodeId> topLevel;
    std::vector<std::uint32_t> unread;   // where something could not be read, in order
    std::vector<std::uint32_t> unknown;  // characters that begin no token, in order
    FunctionId currentFunction = noFunction;
    std::map<FunctionId, std::set<VariableId>> movedGlobals;  // to the functions that use them
    std::unordered_set<VariableId> movableGlobals;
    std::string wholeName;  // of the function that finds whole numbers; empty without one
    std::unordered_set<VariableId> changedVariables;   // by assignments and steps
    std::unordered_set<VariableId> comparedVariables;  // themselves, or their elements
    std::set<VariableId> stayingGlobals;               // several functions use and change them
    std::map<Word, std::string> helperNames;           // of functions that stand for operators
    std::vector<bool> inlined;                     // by function: it is written where it is called
    std::vector<std::size_t> copiedBytes;          // by function
    std::string whyStaying;                        // why no function is; empty without a reason
    std::vector<Copy> copies;                      // that are being written, the innermost last
    bool isJudging = false;                        // functions are written for their findings only
    std::map<VariableId, VariableId> sharedNames;  // to the variable declared before
    std::unordered_set<NodeId> needlessBreaks;     // at the end of cases
    std::map<std::string, std::string> constants;  // of the function at hand: by type and value
    Pieces constantDeclarations;                   // of the same
    std::map<std::string, std::string, std::less<>> constantTexts;  // by name: what declares them
    std::string constantSeparator;

    Prelude prelude;               // of the statement at hand
    Prelude postlude;              // what has to run right behind it
    NodeId hoistCallsBefore = 0;   // these are moved although they may stand where they are
    NodeId lastHoistWithCall = 0;  // in this statement
    NodeId firstCallInPlace = noNode;
};

}  // namespace krel::Check
