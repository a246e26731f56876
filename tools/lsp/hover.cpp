// What there is to say about a place: hover, and hints at expressions whose type surprises.

#include <algorithm>

#include "tools/check/ruleBook.hpp"
#include "tools/lsp/features.hpp"
#include "tools/lsp/names.hpp"
#include "tools/lsp/words.hpp"

namespace krel::Lsp {

namespace {

std::string asCode(std::string_view text) {
    return "```krel\n" + std::string{text} + "\n```";
}

void addParagraph(std::string& text, std::string_view paragraph) {
    text.append(text.empty() || paragraph.empty() ? "" : "\n\n").append(paragraph);
}

std::string typeText(const Check::Model& model, NodeId id) {
    const std::string_view type = Check::nameOf(model.krel(id));
    return std::string{type};
}

/// Whether an expression seems to have a truth value and has another type.
bool isSurprising(const Check::Model& model, NodeId id) {
    const Check::Type type = model.krel(id);
    return model.tree()[id].kind == Kind::Binary && Check::isComparison(model.tree()[id].op) &&
           type != Word::End && type != Word::Boolean;
}

/// What an entity is: its declaration, and whose it is.
std::string textOf(Analysis& analysis, const Entity& entity) {
    const NodeId declaration = declarationOf(analysis, entity);
    if (declaration == noNode) {
        return "`" + std::string{entity.name} + "` is not declared.";
    }
    std::string text = asCode(declarationText(analysis, declaration));
    if (!entity.isFunction && entity.function != noFunction) {
        const bool isParameter = analysis.tree()[declaration].kind == Kind::Parameter;
        const std::string function{analysis.model().functions()[entity.function].name};
        addParagraph(text,
                     (isParameter ? "A parameter of `" : "A variable of `") + function + "`.");
    }
    return text;
}

std::string textOfOperator(Analysis& analysis, NodeId id) {
    const Check::Model& model = analysis.model();
    const std::string type = typeText(model, id);
    std::string text = type.empty() ? "" : asCode(type);
    if (isSurprising(model, id)) {
        addParagraph(text, "This comparison is of the type `" + type + "`, not `boolean`.");
    }
    addParagraph(text, surpriseOf(model.tree()[id].op));
    return text;
}

std::string textOfToken(Analysis& analysis, std::uint32_t token) {
    const Syntax::Tree& tree = analysis.tree();
    const ReservedWord* const reserved = findReservedWord(tree.tokens.words[token].word);
    if (reserved != nullptr) {
        const std::string_view builtIn = signatureOfBuiltIn(reserved->word);
        std::string text = builtIn.empty() ? "" : asCode(builtIn);
        addParagraph(text, reserved->explanation);
        return text;
    }
    const NodeId id = nodeOfToken(tree, token);
    if (id == noNode) {
        return {};
    }
    if (const std::optional<Entity> entity = entityOf(analysis, id)) {
        return textOf(analysis, *entity);
    }
    return Syntax::isExpression(tree[id].kind) ? textOfOperator(analysis, id) : std::string{};
}

/// The page of a rule, without its example.
std::string pageOf(std::string_view rule) {
    const Check::RulePage* const page = Check::findRule(rule);
    if (page == nullptr) {
        return {};
    }
    std::string text = "**" + std::string{rule} + "**: " + std::string{page->summary};
    const std::string_view heading = "## Use instead\n\n";
    const std::size_t advice = page->text.find(heading);
    if (advice != page->text.npos) {
        std::string_view rest = page->text.substr(advice + heading.size());
        rest = rest.substr(0, rest.find_last_not_of('\n') + 1);
        text.append("\n\nUse instead:\n\n").append(rest);
    }
    return text;
}

/// The pages of the rules that have a finding at a byte; each once.
std::string pagesAt(Analysis& analysis, std::uint32_t offset) {
    std::string text;
    std::vector<std::string_view> told;
    for (const Check::Finding& finding : analysis.report().findings) {
        const bool isHere = finding.range.begin <= offset && offset <= finding.range.end;
        if (isHere && std::find(told.begin(), told.end(), finding.rule) == told.end()) {
            addParagraph(text, pageOf(finding.rule));
            told.push_back(finding.rule);
        }
    }
    return text;
}

/// Whether only truth matters where the node stands.
bool isCondition(const Syntax::Tree& tree, NodeId id) {
    NodeId parent = tree[id].parent;
    while (parent != noNode &&
           (tree[parent].kind == Kind::Parentheses || tree[parent].kind == Kind::Unary ||
            (tree[parent].kind == Kind::Binary &&
             (tree[parent].op == Word::And || tree[parent].op == Word::Or)))) {
        parent = tree[parent].parent;
    }
    return parent != noNode &&
           (tree[parent].kind == Kind::Condition || tree[parent].kind == Kind::ForPart);
}

}  // namespace

Json hover(Session& session, const Json& parameters) {
    Document& document = documentOf(session, parameters);
    Analysis& analysis = document.analysis();
    const std::uint32_t offset = offsetOf(document, parameters);
    const std::uint32_t token = tokenAt(analysis.tree(), offset);
    std::string text = textOfToken(analysis, token);
    addParagraph(text, pagesAt(analysis, offset));
    if (text.empty()) {
        return nullptr;
    }
    Json answer = {{"contents", {{"kind", "markdown"}, {"value", std::move(text)}}}};
    const SourceRange range = analysis.tree().tokens.words[token].range;
    if (range.begin < range.end) {
        answer["range"] = toJson(document, range);
    }
    return answer;
}

Json inlayHints(Session& session, const Json& parameters) {
    Document& document = documentOf(session, parameters);
    const SourceRange wanted = document.bytesOf(rangeFrom(parameters.at("range")));
    const Check::Model& model = document.analysis().model();
    const Syntax::Tree& tree = model.tree();
    constexpr int typeHint = 1;
    Json list = Json::array();
    for (NodeId id = 0; id < tree.nodes.size(); ++id) {
        const std::uint32_t end = tree[id].range.end;
        const bool isInside = wanted.begin <= end && end <= wanted.end;
        if (isInside && isSurprising(model, id) && !isCondition(tree, id)) {
            list.push_back({{"position", toJson(document.lines().positionOf(end))},
                            {"label", ": " + typeText(model, id)},
                            {"kind", typeHint},
                            {"tooltip", "A comparison has the type of its operands."}});
        }
    }
    return list;
}

}  // namespace krel::Lsp
