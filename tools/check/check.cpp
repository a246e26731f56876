// The engine. Comes in: a text. Goes out: all findings, and the repaired text.
//
// The repairer rewrites the program; what it changes are findings. The compiler is asked about the
// result; what it still refuses are findings, too, at the place in the user's text that its place
// in the repaired one comes from. What it refuses is then left out, and it is asked again, until it
// says nothing new. At last the compiler's faults about the user's own text are compared with the
// findings: one that no error stands beside becomes an error itself. So the tolerant reading may be
// wrong about anything, and yet no refused program goes without an error, nor an accepted one with
// one.

#include "tools/check/check.hpp"

#include <algorithm>
#include <iterator>
#include <map>
#include <memory>
#include <set>
#include <unordered_set>
#include <utility>

#include "frontend/frontEnd.hpp"
#include "tools/check/compilerFaults.hpp"
#include "tools/check/linkRules.hpp"
#include "tools/check/model.hpp"
#include "tools/check/repairer.hpp"
#include "tools/check/silence.hpp"
#include "tools/check/treeRules.hpp"
#include "tools/format/format.hpp"
#include "tools/syntax/foreignWords.hpp"

namespace krel::Check {

namespace {

/// So many bytes are compiled at most in search of further faults, unless one file is longer.
constexpr std::size_t bytesToCompile = 20'000'000;
constexpr std::size_t fewestRounds = 3;
constexpr std::size_t mostRounds = 300;

class Checker {
public:
    Checker(const std::string& itsText, const std::string& itsName, Guesses itsGuesses)
        : text(itsText),
          name(itsName),
          guesses(itsGuesses),
          original(compile(text, true)),
          tree(Syntax::read(text, original->tokens())),
          model(tree) {}

    Report check() {
        repair();
        findLinkFaults(model, findings);
        const bool linked = std::none_of(findings.begin(), findings.end(), isLinkFault);
        report.accepted = original->outcome() == FrontEnd::Outcome::Complete && linked;
        askUntilNothingNew();
        findInTree(model, findings);
        if (report.accepted) {
            dropErrors();
        } else {
            coverOriginalFaults();
        }
        finish();
        return std::move(report);
    }

private:
    std::unique_ptr<FrontEnd::Compilation> compile(const std::string& source, bool tokens) const {
        FrontEnd::Request request;
        request.tokens = tokens;
        request.sources = true;
        return FrontEnd::compile(source, name, request);
    }

    void repair() {
        Repairer repairer{model, leftOut};
        const Pieces pieces = repairer.repair();
        findings = repairer.takeFindings();
        hasGuessed = repairer.hasGuessed();
        hasStayed = repairer.hasStayed();
        repaired = std::make_unique<RepairedText>(pieces, text);
        report.edits = repaired->edits();
        causes = repaired->causes();
        report.fixed = repaired->text();
        for (const Finding& finding : findings) {
            added.emplace(finding.rule, finding.range.begin);
            if (finding.severity == Severity::Error) {
                noteError(finding.rule, finding.range);
            }
        }
        listUnits();
    }

    /// In an accepted program an error is a mistake of the tolerant reading, and nothing that was
    /// built on it can be trusted; but for words that the compiler happens not to notice.
    void dropErrors() {
        bool isMistaken = !report.fixedIsAccepted;
        const auto isMistake = [&](Finding& finding) {
            if (finding.severity == Severity::Error &&
                (finding.rule == "reserved-name" || finding.rule == "array-declaration")) {
                finding.severity = Severity::Warning;
            }
            return finding.severity == Severity::Error;
        };
        const auto mistakes = std::remove_if(findings.begin(), findings.end(), isMistake);
        isMistaken = isMistaken || mistakes != findings.end();
        findings.erase(mistakes, findings.end());
        if (isMistaken) {
            report.edits.clear();
            report.fixed = text;
            report.fixedIsAccepted = true;
        }
    }

    void askUntilNothingNew() {
        const std::size_t rounds =
            std::clamp(bytesToCompile / (text.size() + 1), fewestRounds, mostRounds);
        for (std::size_t round = 0; round < rounds; ++round) {
            const bool isSame = round == 0 && report.edits.empty();
            std::unique_ptr<FrontEnd::Compilation> again;
            if (!isSame) {
                again = compile(repaired->text(), false);
            }
            const FrontEnd::Compilation& compilation = isSame ? *original : *again;
            if (round == 0) {
                report.fixedIsAccepted = compilation.outcome() == FrontEnd::Outcome::Complete;
                chooseEdits(compilation);
            }
            if (report.accepted) {
                return;
            }
            const std::size_t before = leftOut.size();
            for (const CompilerFault& fault : faultsOf(compilation)) {
                take(fault);
            }
            if (leftOut.size() == before) {
                return;
            }
            Repairer repairer{model, leftOut};
            repaired = std::make_unique<RepairedText>(repairer.repair(), text);
        }
    }

    // What is repaired

    /// Writes the text for the user: without guesses, and without repairs of what cannot be read.
    /// `compilation` is that of the text for the compiler, in which both are.
    void chooseEdits(const FrontEnd::Compilation& compilation) {
        const bool leavesGuesses = hasGuessed && guesses == Guesses::Left;
        if (report.fixedIsAccepted && !leavesGuesses && !hasStayed) {
            return;
        }
        const std::unordered_set<NodeId> doubtful =
            report.fixedIsAccepted ? std::unordered_set<NodeId>{} : unreadableUnits(compilation);
        Repairer repairer{model, doubtful, Repairer::Purpose::Write,
                          leavesGuesses ? Repairer::Guesses::Left : Repairer::Guesses::Written};
        const RepairedText written{repairer.repair(), text};
        report.edits = written.edits();
        causes = written.causes();
        report.fixed = written.text();
        report.fixedIsAccepted =
            compile(report.fixed, false)->outcome() == FrontEnd::Outcome::Complete;
    }

    /// What is still no Krel when it is repaired. Whoever repairs half of a foreign statement only
    /// makes it harder to read.
    std::unordered_set<NodeId> unreadableUnits(const FrontEnd::Compilation& compilation) const {
        std::unordered_set<NodeId> found;
        const auto add = [&](std::uint32_t place) {
            const Unit* const unit = unitAt(place);
            if (unit != nullptr) {
                found.insert(unit->second);
            }
        };
        for (const Syntax::Gap& gap : tree.gaps) {
            if (gap.kind == Syntax::Gap::Kind::Unexpected ||
                gap.kind == Syntax::Gap::Kind::TooDeep) {
                add(gap.at);
            }
        }
        for (const CompilerFault& fault : faultsOf(compilation)) {
            const std::string_view rule = ruleOfMessage(fault.message);
            if (rule == "syntax" || rule == "illegal-character") {
                add(repaired->originOf(fault.range).begin);
            }
        }
        return found;
    }

    /// A fault of the repaired text.
    void take(const CompilerFault& fault) {
        const bool isInternal = fault.isLast && fault.range.begin == fault.range.end;
        const std::vector<NodeId> culprits =
            isInternal ? nodesBehind(model, fault.message) : std::vector<NodeId>{};
        if (!culprits.empty()) {
            for (const NodeId culprit : culprits) {
                add(fault.message, tree[culprit].range);
                leaveOut(tree[culprit].range.begin);
            }
            return;
        }
        const SourceRange range = repaired->originOf(fault.range);
        noteRedefinition(fault.message);
        if (!followsFromOther(fault.message) && !isFollowing(fault.message, range) &&
            !isInserted(fault.message, range) && !isOfMember(fault.message, range) &&
            !isOfRedefinition(fault.message)) {
            add(fault.message, range);
        }
        leaveOut(range.begin);
    }

    /// Whether the parser stumbles over what a repair has put in.
    bool isInserted(std::string_view message, SourceRange range) const {
        return ruleOfMessage(message) == "syntax" &&
               added.count({"missing-token", range.begin}) != 0;
    }

    /// Whether the compiler stumbles over a point, or the word behind it, that is reported already.
    bool isOfMember(std::string_view message, SourceRange range) const {
        const std::string_view rule = ruleOfMessage(message);
        const auto& words = tree.tokens.words;
        auto token = std::lower_bound(words.begin(), words.end(), range.begin,
                                      [](const Syntax::Token& each, std::uint32_t place) {
                                          return each.range.begin < place;
                                      });
        if (rule == "syntax" && token != words.begin()) {
            --token;
        } else if (rule != "illegal-character") {
            return false;
        }
        return token != words.end() && token->word == Syntax::Word::Dot &&
               added.count({"foreign-construct", token->range.begin}) != 0;
    }

    static std::string_view quotedLast(std::string_view message) {
        const std::size_t end = message.rfind('\'');
        const std::size_t begin =
            end == message.npos || end == 0 ? message.npos : message.rfind('\'', end - 1);
        return begin == message.npos ? std::string_view{}
                                     : message.substr(begin + 1, end - begin - 1);
    }

    void noteRedefinition(std::string_view message) {
        if (message.substr(0, 10) == "Function '" &&
            message.find("already exists") != message.npos) {
            redefined.emplace(quotedLast(message));
        }
    }

    /// The parameters of a function that is defined again are refused as well.
    bool isOfRedefinition(std::string_view message) const {
        return message.substr(0, 8) == "Symbol '" &&
               message.find("already exists in scope") != message.npos &&
               redefined.count(std::string{quotedLast(message)}) != 0;
    }

    /// Some faults draw a second message at the same place.
    bool isFollowing(std::string_view message, SourceRange range) const {
        const bool isSecond = message.substr(0, 28) == "Function call used as a stat" ||
                              message.substr(0, 21) == "Array size identifier";
        if (!isSecond) {
            return false;
        }
        const auto behind = errorEnds.lower_bound(std::max(range.end, range.begin + 1));
        return behind != errorEnds.begin() &&
               std::max(std::prev(behind)->second, std::prev(behind)->first + 1) > range.begin;
    }

    void noteError(std::string_view rule, SourceRange range) {
        if (rule != "call-place") {
            std::uint32_t& end = errorEnds[range.begin];
            end = std::max(end, range.end);
        }
    }

    void add(const std::string& message, SourceRange range) {
        const std::string_view known = ruleOfMessage(message);
        const std::string_view rule = known.empty() ? "code-generator" : known;
        if (!added.emplace(rule, range.begin).second) {
            return;
        }
        noteError(rule, range);
        findings.push_back({rule, Severity::Error, range, readable(message, tree.textOf(range)),
                            helpFor(message, range)});
    }

    std::string helpFor(std::string_view message, SourceRange range) const {
        const std::string_view rule = ruleOfMessage(message);
        if (rule == "outside-loop") {
            return "`return;` leaves a function";
        }
        if (rule == "parameter-count") {
            return "divide the function, or take several small numbers in one `int`";
        }
        if (rule == "not-an-array") {
            return "only arrays have elements; texts are only joined, stored and printed";
        }
        if (rule == "syntax") {
            return helpForSyntax(range);
        }
        if (message.substr(0, 10) == "Function '" &&
            message.find("already exists") != message.npos) {
            return "give it another name: parameters do not tell functions apart";
        }
        if (message.substr(0, 10) != "Undeclared") {
            return {};
        }
        const std::size_t quote = message.find('\'');
        const std::string_view missing = message.substr(quote + 1, message.rfind('\'') - quote - 1);
        const auto* const unit = unitAt(range.begin);
        const FunctionId function =
            unit == nullptr ? noFunction : model.functionAround(unit->second);
        const Syntax::ForeignWords* const foreign = Syntax::findForeignWord(missing);
        if (foreign != nullptr) {
            return std::string{foreign->message} + ": " + std::string{foreign->help};
        }
        const std::string similar = similarName(model, function, missing);
        return similar.empty() ? "" : "did you mean `" + similar + "`?";
    }

    /// What the word before tells about one that the parser does not expect.
    std::string helpForSyntax(SourceRange range) const {
        const auto& words = tree.tokens.words;
        const auto token = std::lower_bound(words.begin(), words.end(), range.begin,
                                            [](const Syntax::Token& each, std::uint32_t place) {
                                                return each.range.begin < place;
                                            });
        if (token == words.begin() || token == words.end() || token->range.begin != range.begin) {
            return {};
        }
        const Syntax::Token before = *std::prev(token);
        if (token->word == Syntax::Word::StringLiteral &&
            before.word == Syntax::Word::StringLiteral) {
            return "join texts by `+`, or separate them by a comma in `print`";
        }
        if (before.word == Syntax::Word::Print) {
            return "what is printed stands in parentheses: `print(...);`";
        }
        if (token->word == Syntax::Word::Assign && isInParameters(range.begin)) {
            return "a parameter has no default value: hand the value over in each call";
        }
        const Syntax::ForeignWords* const foreign =
            before.word == Syntax::Word::Name ? Syntax::findForeignWord(tree.textOf(before.range))
                                              : nullptr;
        return foreign == nullptr
                   ? ""
                   : std::string{foreign->message} + ": " + std::string{foreign->help};
    }

    /// Whether a place lies between the name of a function and its body.
    bool isInParameters(std::uint32_t place) const {
        return std::any_of(model.functions().begin(), model.functions().end(),
                           [&](const Function& function) {
                               return tree[function.node].range.begin <= place &&
                                      place < tree[tree.lastChild(function.node)].range.begin;
                           });
    }

    // What can be left out

    using Unit = std::pair<SourceRange, NodeId>;

    void listUnits() {
        for (NodeId id = 0; id < tree.nodes.size(); ++id) {
            const Kind kind = tree[id].kind;
            const bool isPart =
                tree[id].parent != noNode && tree[tree[id].parent].kind == Kind::ForPart;
            const bool isUnit = kind == Kind::Condition || kind == Kind::ForPart ||
                                kind == Kind::ExpressionStatement || kind == Kind::Return ||
                                kind == Kind::Break || kind == Kind::Continue ||
                                kind == Kind::Skipped || kind == Kind::Foreign ||
                                kind == Kind::Declaration;
            if (isUnit && !isPart) {
                units.emplace_back(tree[id].range, id);
            }
        }
        std::stable_sort(units.begin(), units.end(), [](const Unit& left, const Unit& right) {
            return left.first.begin < right.first.begin;
        });
    }

    /// The unit that a byte lies in, or that ends right before it; null when there is none.
    const Unit* unitAt(std::uint32_t place) const {
        auto behind = std::upper_bound(
            units.begin(), units.end(), place,
            [](std::uint32_t value, const Unit& unit) { return value < unit.first.begin; });
        if (behind == units.begin()) {
            return nullptr;
        }
        --behind;
        return place <= behind->first.end ? &*behind : nullptr;
    }

    void leaveOut(std::uint32_t place) {
        const Unit* const unit = unitAt(place);
        if (unit != nullptr) {
            leftOut.insert(unit->second);
        }
    }

    // The user's own text

    void coverOriginalFaults() {
        std::vector<std::pair<int, int>> lines;  // of errors
        const LineIndex& index = original->lines();
        for (const Finding& finding : findings) {
            if (finding.severity == Severity::Error) {
                lines.emplace_back(
                    index.positionOf(finding.range.begin).line,
                    index.positionOf(std::max(finding.range.begin + 1, finding.range.end) - 1)
                        .line);
            }
        }
        std::sort(lines.begin(), lines.end());
        std::vector<int> farthest;  // the last line of all errors so far
        farthest.reserve(lines.size());
        for (const auto& [first, last] : lines) {
            farthest.push_back(farthest.empty() ? last : std::max(farthest.back(), last));
        }
        const auto isCovered = [&](int line) {
            const auto behind = std::upper_bound(
                lines.begin(), lines.end(), line,
                [](int value, const std::pair<int, int>& range) { return value < range.first; });
            return behind != lines.begin() &&
                   farthest[static_cast<std::size_t>(behind - lines.begin()) - 1] >= line;
        };
        const bool hasReturns = !tree.tokens.carriageReturns.empty();
        for (const CompilerFault& fault : faultsOf(*original)) {
            const bool isReturn = hasReturns && fault.message.find('\r') != std::string::npos;
            const bool covered = fault.line > 0 ? isCovered(fault.line) : !lines.empty();
            if (covered || isReturn) {
                continue;
            }
            SourceRange range = fault.range;
            if (fault.isLast && range.begin == range.end) {
                const std::vector<NodeId> culprits = nodesBehind(model, fault.message);
                range = culprits.empty() ? range : tree[culprits.front()].range;
            }
            const std::string_view known = ruleOfMessage(fault.message);
            findings.push_back({known.empty() ? "code-generator" : known, Severity::Error, range,
                                readable(fault.message, tree.textOf(range)),
                                helpFor(fault.message, range)});
        }
    }

    void finish() {
        silence(tree, original->lines(), findings);
        std::stable_sort(findings.begin(), findings.end(),
                         [](const Finding& left, const Finding& right) {
                             return left.range.begin < right.range.begin;
                         });
        if (!report.edits.empty()) {
            assignEdits();
        }
        report.findings = std::move(findings);
        if (report.edits.empty()) {
            return;
        }
        Format::Result formatted = Format::format(report.fixed, name);
        if (formatted.parses) {
            report.fixed = std::move(formatted.text);
        }
    }

    // Which edits repair what

    using Cause = std::pair<SourceRange, std::size_t>;  // and the number of its edit

    static bool isEarlier(const Cause& left, const Cause& right) {
        return left.first.begin < right.first.begin;
    }

    /// Tells each finding which edits repair it: those of its statement that something at its place
    /// made necessary.
    void assignEdits() {
        std::map<const Unit*, std::vector<Cause>> byUnit;
        for (std::size_t edit = 0; edit < causes.size(); ++edit) {
            for (const SourceRange range : causes[edit]) {
                byUnit[unitAt(range.begin)].emplace_back(range, edit);
            }
        }
        for (auto& entry : byUnit) {
            std::stable_sort(entry.second.begin(), entry.second.end(), isEarlier);
        }
        for (Finding& finding : findings) {
            const auto entry = byUnit.find(unitAt(finding.range.begin));
            if (entry != byUnit.end()) {
                finding.edits = editsAt(finding.range, entry->second);
            }
        }
    }

    /// In a very long statement only the edits of exactly the place count.
    static std::vector<std::size_t> editsAt(SourceRange range, const std::vector<Cause>& all) {
        constexpr std::size_t manyCauses = 1000;
        const bool isLong = all.size() > manyCauses;
        const Cause here{range, 0};
        auto cause =
            isLong ? std::lower_bound(all.begin(), all.end(), here, isEarlier) : all.begin();
        std::set<std::size_t> edits;
        for (; cause != all.end() && (!isLong || cause->first.begin == range.begin); ++cause) {
            if (cause->first.begin <= range.end && range.begin <= cause->first.end) {
                edits.insert(cause->second);
            }
        }
        return {edits.begin(), edits.end()};
    }

    const std::string& text;
    const std::string& name;
    const Guesses guesses;
    bool hasGuessed = false;
    bool hasStayed = false;
    std::unique_ptr<FrontEnd::Compilation> original;
    Tree tree;
    Model model;
    Report report;
    std::vector<Finding> findings;
    std::set<std::pair<std::string_view, std::uint32_t>> added;  // rules and places of findings
    std::map<std::uint32_t, std::uint32_t> errorEnds;            // by where the errors begin
    std::vector<std::vector<SourceRange>> causes;                // of the report's edits
    std::set<std::string> redefined;                             // functions
    std::unique_ptr<RepairedText> repaired;
    std::unordered_set<NodeId> leftOut;
    std::vector<Unit> units;  // in order
};

}  // namespace

Report check(const std::string& text, const std::string& name, Guesses guesses) {
    return Checker{text, name, guesses}.check();
}

}  // namespace krel::Check
