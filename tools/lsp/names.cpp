// Names. Comes in: a text's analysis, a place. Goes out: what is named there, and where else.

#include "tools/lsp/names.hpp"

#include <algorithm>
#include <set>
#include <stdexcept>
#include <utility>

#include "tools/lsp/quickFixes.hpp"

namespace krel::Lsp {

namespace {

using Check::Edit;
using Check::Finding;
using Check::noVariable;
using Check::Severity;

bool isDeclaration(Kind kind) {
    return kind == Kind::Function || kind == Kind::Declarator || kind == Kind::Parameter;
}

/// The function that a variable belongs to.
FunctionId scopeOf(const Check::Model& model, NodeId id) {
    if (model.tree()[id].kind == Kind::Name && model.meaning(id) != noVariable) {
        return model.variables()[model.meaning(id)].function;
    }
    return model.functionAround(id);
}

/// Assignments and steps write to the name, or to an element of the array of that name.
Use useOf(const Syntax::Tree& tree, NodeId id) {
    if (isDeclaration(tree[id].kind)) {
        return Use::Declaration;
    }
    NodeId parent = tree[id].parent;
    while (parent != noNode && tree[parent].kind == Kind::Index && tree[parent].first == id) {
        id = parent;
        parent = tree[parent].parent;
    }
    const bool isTarget = parent != noNode && tree[parent].first == id &&
                          (tree[parent].kind == Kind::Assign || tree[parent].kind == Kind::Update);
    return isTarget ? Use::Write : Use::Read;
}

/// All errors by rule, with how often they occur: a new one has a rule more often than before.
std::multiset<std::string_view> errorRules(const Check::Report& report) {
    std::multiset<std::string_view> rules;
    for (const Finding& finding : report.findings) {
        if (finding.severity == Severity::Error) {
            rules.insert(finding.rule);
        }
    }
    return rules;
}

/// The message of an error that the second text has and the first one has not; empty when there is
/// none.
std::string newError(const Check::Report& before, const Check::Report& after) {
    const auto known = errorRules(before);
    const auto now = errorRules(after);
    for (const Finding& finding : after.findings) {
        if (finding.severity == Severity::Error &&
            now.count(finding.rule) > known.count(finding.rule)) {
            return finding.message;
        }
    }
    return {};
}

void checkIsName(const std::string& name) {
    const Syntax::Tree tree = Syntax::read(name);
    const std::vector<Syntax::Token>& words = tree.tokens.words;
    const bool isOneWord =
        words.size() == 2 && words[0].range.begin == 0 && words[0].range.end == name.size();
    if (isOneWord && words[0].word == Word::Name) {
        return;
    }
    const bool isReserved =
        isOneWord && words[0].word >= Word::Int && words[0].word <= Word::Return;
    throw std::invalid_argument("`" + name + "` is " +
                                (isReserved ? "a reserved word" : "not a name"));
}

/// A new name must mean nothing yet where the entity can be seen.
void checkIsFree(Analysis& analysis, const Entity& entity, const std::string& name) {
    const Check::Model& model = analysis.model();
    const std::vector<Occurrence> own = occurrencesOf(analysis, entity);
    const auto isTaken = [&](const Entity& other) {
        if (other.name != name || other.isFunction != entity.isFunction) {
            return false;
        }
        if (entity.isFunction || other.function == entity.function ||
            other.function == noFunction) {
            return true;
        }
        return entity.function == noFunction &&
               std::any_of(own.begin(), own.end(), [&](const Occurrence& occurrence) {
                   return model.functionAround(occurrence.node) == other.function;
               });
    };
    for (NodeId id = 0; id < analysis.tree().nodes.size(); ++id) {
        const std::optional<Entity> other = entityOf(analysis, id);
        if (other && isTaken(*other)) {
            throw std::invalid_argument("there is a " +
                                        std::string{entity.isFunction ? "function" : "variable"} +
                                        " `" + name + "` already");
        }
    }
}

}  // namespace

std::optional<Entity> entityOf(Analysis& analysis, NodeId id) {
    const Syntax::Tree& tree = analysis.tree();
    const Kind kind = tree[id].kind;
    const bool isCall = kind == Kind::Call && tree[id].op == Word::Name;
    if (tree[id].token == Syntax::noToken ||
        (kind != Kind::Name && !isDeclaration(kind) && !isCall)) {
        return std::nullopt;
    }
    Entity entity;
    entity.isFunction = kind == Kind::Function || isCall;
    entity.function = entity.isFunction ? noFunction : scopeOf(analysis.model(), id);
    entity.name = tree.wordOf(id);
    entity.range = tree.wordRange(id);
    return entity;
}

std::optional<Entity> entityAt(Analysis& analysis, std::uint32_t offset) {
    const Syntax::Tree& tree = analysis.tree();
    const std::uint32_t token = tokenAt(tree, offset);
    if (tree.tokens.words[token].word != Word::Name) {
        return std::nullopt;
    }
    const NodeId id = nodeOfToken(tree, token);
    return id == noNode ? std::nullopt : entityOf(analysis, id);
}

std::vector<Occurrence> occurrencesOf(Analysis& analysis, const Entity& entity) {
    const Syntax::Tree& tree = analysis.tree();
    std::vector<Occurrence> found;
    for (NodeId id = 0; id < tree.nodes.size(); ++id) {
        const std::optional<Entity> other = entityOf(analysis, id);
        if (other && other->isSameAs(entity)) {
            found.push_back({other->range, useOf(tree, id), id});
        }
    }
    std::sort(found.begin(), found.end(), [](const Occurrence& left, const Occurrence& right) {
        return left.range.begin < right.range.begin;
    });
    return found;
}

NodeId declarationOf(Analysis& analysis, const Entity& entity) {
    for (const Occurrence& occurrence : occurrencesOf(analysis, entity)) {
        if (occurrence.use == Use::Declaration) {
            return occurrence.node;
        }
    }
    return noNode;
}

std::vector<std::string> parameterTexts(Analysis& analysis, NodeId function) {
    const Syntax::Tree& tree = analysis.tree();
    std::vector<std::string> texts;
    for (NodeId id = tree[function].first; id != noNode; id = tree[id].next) {
        if (tree[id].kind == Kind::Parameter) {
            texts.push_back(declarationText(analysis, id));
        }
    }
    return texts;
}

std::string declarationText(Analysis& analysis, NodeId id) {
    const Syntax::Tree& tree = analysis.tree();
    const NodeId typed = tree[id].kind == Kind::Declarator ? tree[id].parent : id;
    const NodeId type = tree[typed].first;
    const std::string_view krelName = type == noNode ? "" : Check::nameOf(tree[type].op);
    std::string text{krelName.empty() && type != noNode ? tree.textOf(type) : krelName};
    text.append(text.empty() ? "" : " ").append(tree.wordOf(id));
    if (tree[id].kind == Kind::Function) {
        std::string list;
        for (const std::string& parameter : parameterTexts(analysis, id)) {
            list.append(list.empty() ? "" : ", ").append(parameter);
        }
        return text + "(" + list + ")";
    }
    for (NodeId child = tree[id].first; child != noNode; child = tree[child].next) {
        if (tree[child].kind == Kind::ArrayBound) {
            text.append(tree.textOf(child));
        }
    }
    return text;
}

/// What the compiler would refuse about a name is not known here: it is asked about the result.
std::vector<Edit> renamed(Analysis& analysis, const Entity& entity, const std::string& name) {
    if (name == entity.name) {
        return {};
    }
    if (entity.isFunction && (entity.name == "main" || declarationOf(analysis, entity) == noNode)) {
        throw std::invalid_argument("`" + std::string{entity.name} + "` cannot be renamed");
    }
    checkIsName(name);
    checkIsFree(analysis, entity, name);
    std::vector<Edit> edits;
    for (const Occurrence& occurrence : occurrencesOf(analysis, entity)) {
        edits.push_back({occurrence.range, name});
    }
    const std::string text = edited(analysis.text(), edits);
    const std::string fault = newError(analysis.report(), Check::check(text, "program.krl"));
    if (!fault.empty()) {
        throw std::invalid_argument("with the name `" + name +
                                    "` the compiler would refuse the program: " + fault);
    }
    return edits;
}

}  // namespace krel::Lsp
