// Repairs one at a time. Comes in: all edits that repair a program. Goes out: those that belong to
// one finding.
//
// Edits of one statement belong together. A repair may also need names that the program does not
// have yet: then it needs the edits that declare them, or, where a name was changed, all edits that
// write the new one. Whether this was all is tried.

#include "tools/lsp/quickFixes.hpp"

#include <algorithm>
#include <cctype>

#include "tools/check/check.hpp"

namespace krel::Lsp {

namespace {

using Check::Edit;
using Check::Finding;
using Check::Severity;

bool isNameByte(char byte) {
    return std::isalnum(static_cast<unsigned char>(byte)) != 0 || byte == '_';
}

/// The names and keywords of a text.
std::vector<std::string_view> wordsOf(std::string_view text) {
    std::vector<std::string_view> words;
    for (std::size_t at = 0; at < text.size();) {
        std::size_t end = at;
        while (end < text.size() && isNameByte(text[end])) {
            ++end;
        }
        if (end > at && std::isdigit(static_cast<unsigned char>(text[at])) == 0) {
            words.push_back(text.substr(at, end - at));
        }
        at = std::max(end, at + 1);
    }
    return words;
}

bool isTypeName(std::string_view word) {
    for (Word type = Word::Int; type <= Word::String;
         type = static_cast<Word>(static_cast<int>(type) + 1)) {
        if (Check::nameOf(type) == word) {
            return true;
        }
    }
    return false;
}

bool touches(SourceRange left, SourceRange right) {
    return left.begin <= right.end && right.begin <= left.end;
}

struct Count {
    std::size_t errors = 0;
    std::size_t all = 0;
};

Count countOf(const std::vector<Finding>& findings) {
    const auto errors = std::count_if(findings.begin(), findings.end(), [](const Finding& finding) {
        return finding.severity == Severity::Error;
    });
    return {static_cast<std::size_t>(errors), findings.size()};
}

/// What is repaired as a whole. The functions and the program are not: their parts are.
bool isOwner(Kind kind) {
    const bool isStatement = kind >= Kind::If && kind <= Kind::Skipped && kind != Kind::Arm &&
                             kind != Kind::ElseArm && kind != Kind::Condition &&
                             kind != Kind::ForPart;
    return isStatement || kind == Kind::Parameter || kind == Kind::Declaration;
}

bool hasBody(Kind kind) {
    return kind == Kind::If || kind == Kind::While || kind == Kind::DoWhile || kind == Kind::For;
}

}  // namespace

std::string edited(std::string_view text, const std::vector<Edit>& edits) {
    std::string made;
    std::size_t at = 0;
    for (const Edit& edit : edits) {
        made.append(text.substr(at, edit.range.begin - at)).append(edit.text);
        at = edit.range.end;
    }
    return made.append(text.substr(at));
}

/// The innermost statement around a range; noNode when there is only a function.
NodeId QuickFixes::ownerOf(SourceRange range) {
    const Syntax::Tree& tree = analysis.tree();
    NodeId id = nodeAround(tree, range);
    while (id != noNode && !isOwner(tree[id].kind)) {
        id = tree[id].parent;
    }
    return id;
}

/// One of two braces that belong together is as much a part of the statement as the other one.
NodeId QuickFixes::ownerOf(std::size_t edit) {
    if (isAddition(edit)) {
        return noNode;
    }
    const Edit& change = analysis.report().edits[edit];
    const Syntax::Tree& tree = analysis.tree();
    NodeId owner = ownerOf(change.range);
    const auto count = [&change](char brace) {
        return std::count(change.text.begin(), change.text.end(), brace);
    };
    if (count('{') != count('}')) {
        while (owner != noNode && !hasBody(tree[owner].kind)) {
            owner = tree[owner].parent;
        }
    }
    return owner;
}

bool QuickFixes::isFresh(std::string_view word) const {
    return usedWords.count(word) == 0 && !isTypeName(word);
}

void QuickFixes::listWords() {
    const Syntax::Tree& tree = analysis.tree();
    for (const Syntax::Token& token : tree.tokens.words) {
        usedWords.insert(tree.textOf(token.range));
    }
    // Keywords that the text happens not to have are no names.
    for (const std::string_view word : {"if", "elseif", "else", "while", "for", "return", "break",
                                        "continue", "print", "exit", "true", "false", "main"}) {
        usedWords.insert(word);
    }
}

void QuickFixes::prepare() {
    isPrepared = true;
    const std::vector<Edit>& edits = analysis.report().edits;
    listWords();
    freshWords.resize(edits.size());
    for (std::size_t number = 0; number < edits.size(); ++number) {
        std::string_view before;
        for (const std::string_view word : wordsOf(edits[number].text)) {
            if (isFresh(word)) {
                freshWords[number].push_back(word);
                mentions[word].insert(number);
                if (isTypeName(before)) {
                    declarations[word].insert(number);
                }
            }
            before = word;
        }
        owners.push_back(ownerOf(number));
        if (owners.back() != noNode) {
            editsOf[owners.back()].insert(number);
        }
    }
}

/// Whether an edit only adds declarations. They stand before a statement that need not be the one
/// that needs them.
bool QuickFixes::isAddition(std::size_t edit) const {
    const Edit& added = analysis.report().edits[edit];
    return added.range.begin == added.range.end &&
           std::any_of(freshWords[edit].begin(), freshWords[edit].end(), [&](auto word) {
               const auto declared = declarations.find(word);
               return declared != declarations.end() && declared->second.count(edit) > 0;
           });
}

/// Collects edits and all those without which they are incomplete.
class QuickFixes::Group {
public:
    explicit Group(const QuickFixes& itsFixes) : fixes(itsFixes) {}

    void add(std::size_t edit) {
        if (edits.insert(edit).second) {
            open.push_back(edit);
        }
    }

    /// Adds the edits of a statement, once.
    void addOwner(NodeId owner) {
        const auto own = fixes.editsOf.find(owner);
        if (own != fixes.editsOf.end() && owners.insert(owner).second) {
            add(own->second);
        }
    }

    EditNumbers complete() {
        while (!open.empty()) {
            const std::size_t edit = open.back();
            open.pop_back();
            addOwner(fixes.owners[edit]);
            for (const std::string_view word : fixes.freshWords[edit]) {
                addWord(word);
            }
        }
        return std::move(edits);
    }

private:
    void add(const EditNumbers& numbers) {
        for (const std::size_t number : numbers) {
            add(number);
        }
    }

    void addWord(std::string_view word) {
        if (words.insert(word).second) {
            const auto declared = fixes.declarations.find(word);
            add(declared == fixes.declarations.end() ? fixes.mentions.at(word) : declared->second);
        }
    }

    const QuickFixes& fixes;
    EditNumbers edits;
    std::vector<std::size_t> open;     // whose needs are not yet looked at
    std::set<NodeId> owners;           // that are done
    std::set<std::string_view> words;  // the same
};

QuickFixes::EditNumbers QuickFixes::groupOf(const Finding& finding) {
    const std::vector<Edit>& edits = analysis.report().edits;
    Group group{*this};
    const auto begin = std::partition_point(edits.begin(), edits.end(), [&](const Edit& edit) {
        return edit.range.end < finding.range.begin;
    });
    for (auto edit = begin; edit != edits.end() && touches(edit->range, finding.range); ++edit) {
        const auto number = static_cast<std::size_t>(edit - edits.begin());
        if (!isAddition(number)) {
            group.add(number);
        }
    }
    group.addOwner(ownerOf(finding.range));
    return group.complete();
}

/// The edits of a group if they leave a program with less to say about.
std::vector<Edit> QuickFixes::tried(const EditNumbers& group) {
    const Check::Report& report = analysis.report();
    std::vector<Edit> edits;
    for (const std::size_t number : group) {
        edits.push_back(report.edits[number]);
    }
    const Count before = countOf(report.findings);
    const Count after = countOf(Check::check(edited(analysis.text(), edits), "p.krl").findings);
    const bool isBetter =
        after.errors < before.errors || (after.errors == before.errors && after.all < before.all);
    return isBetter ? edits : std::vector<Edit>{};
}

const std::vector<Edit>& QuickFixes::of(std::size_t finding) {
    if (!isPrepared) {
        prepare();
    }
    const EditNumbers group = groupOf(analysis.report().findings[finding]);
    const auto known = results.find(group);
    if (known != results.end()) {
        return known->second;
    }
    return results.emplace(group, group.empty() ? std::vector<Edit>{} : tried(group)).first->second;
}

}  // namespace krel::Lsp
