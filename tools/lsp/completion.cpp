// Completion: the names, words and forms that may follow.

#include <set>

#include "tools/lsp/features.hpp"
#include "tools/lsp/names.hpp"
#include "tools/lsp/words.hpp"

namespace krel::Lsp {

namespace {

/// The numbers of the protocol.
enum ItemKind : int { functionItem = 3, variableItem = 6, keywordItem = 14, snippetItem = 15 };
constexpr int snippetFormat = 2;

/// An editor is sent no more at once; it asks again when more has been typed.
constexpr std::size_t mostItems = 1000;

bool allows(Where allowed, Where here) {
    return (static_cast<unsigned>(allowed) & static_cast<unsigned>(here)) != 0;
}

/// Collects what completes the word before a place.
class Items {
public:
    Items(Session& itsSession, Document& itsDocument, std::uint32_t itsOffset)
        : session(itsSession), analysis(itsDocument.analysis()), offset(itsOffset) {
        const Syntax::Tree& tree = analysis.tree();
        const Syntax::Token& token = tree.tokens.words[tokenAt(tree, offset)];
        const bool isWord = token.word == Word::Name || findReservedWord(token.word) != nullptr;
        const std::uint32_t begin =
            isWord && token.range.begin < offset ? token.range.begin : offset;
        prefix = tree.text.substr(begin, offset - begin);
        function = functionAround(begin);
    }

    Json collect() {
        const Where here = function == noFunction ? Where::TopLevel : Where::Statement;
        if (here == Where::Statement) {
            addVariables();
            addFunctions();
        }
        addWords(here);
        addSnippets(here);
        return {{"isIncomplete", isIncomplete}, {"items", std::move(list)}};
    }

private:
    /// The function whose braces a byte lies between.
    FunctionId functionAround(std::uint32_t begin) const {
        const Syntax::Tree& tree = analysis.tree();
        const std::vector<Check::Function>& functions = analysis.model().functions();
        for (FunctionId number = 0; number < functions.size(); ++number) {
            const NodeId body = tree.lastChild(functions[number].node);
            if (body == noNode || tree[body].kind != Kind::Block) {
                continue;
            }
            const SourceRange range = tree[body].range;
            const bool isClosed = tree.textOf(body).ends_with('}');
            if (range.begin < begin && (begin < range.end || (begin == range.end && !isClosed))) {
                return number;
            }
        }
        return noFunction;
    }

    bool begins(std::string_view name) const { return name.starts_with(prefix); }

    void add(std::string_view label, int kind, Json more) {
        if (!begins(label)) {
            return;
        }
        if (list.size() == mostItems) {
            isIncomplete = true;
            return;
        }
        more["label"] = label;
        more["kind"] = kind;
        list.push_back(std::move(more));
    }

    /// The word that is being written is no name yet.
    void addVariables() {
        const Check::Model& model = analysis.model();
        std::set<std::string_view> told;
        for (const Check::VariableId number : model.functions()[function].variables) {
            const Check::Variable& variable = model.variables()[number];
            const bool isNew = analysis.tree().wordRange(variable.node).end != offset;
            if (isNew && told.insert(variable.name).second) {
                add(variable.name, variableItem,
                    {{"detail", declarationText(analysis, variable.node)}});
            }
        }
    }

    void addFunctions() {
        std::set<std::string_view> told;
        for (const Check::Function& each : analysis.model().functions()) {
            if (each.name == "main" || each.name.empty() || !begins(each.name) ||
                !told.insert(each.name).second) {
                continue;
            }
            Json item = {{"detail", declarationText(analysis, each.node)}};
            if (session.client.snippets) {
                item["insertText"] =
                    std::string{each.name} + (each.parameters.empty() ? "()$0" : "($0)");
                item["insertTextFormat"] = snippetFormat;
            }
            add(each.name, functionItem, std::move(item));
        }
    }

    void addWords(Where here) {
        for (const ReservedWord& word : reservedWords()) {
            const bool isValue = word.where == Where::Value && here == Where::Statement;
            if (isValue || allows(word.where, here)) {
                add(word.text, keywordItem,
                    {{"documentation", {{"kind", "markdown"}, {"value", word.explanation}}}});
            }
        }
    }

    void addSnippets(Where here) {
        for (const Snippet& snippet : snippets()) {
            if (session.client.snippets && allows(snippet.where, here)) {
                add(snippet.label, snippetItem,
                    {{"detail", snippet.detail},
                     {"insertText", snippet.text},
                     {"insertTextFormat", snippetFormat}});
            }
        }
    }

    Session& session;
    Analysis& analysis;
    std::uint32_t offset;
    std::string_view prefix;  // what of the word has been written
    FunctionId function = noFunction;
    bool isIncomplete = false;
    Json list = Json::array();
};

}  // namespace

Json completion(Session& session, const Json& parameters) {
    Document& document = documentOf(session, parameters);
    const std::uint32_t offset = offsetOf(document, parameters);
    const Syntax::Tree& tree = document.analysis().tree();
    const Word before = tree.tokens.words[tokenAt(tree, offset)].word;
    const bool isNumber = before == Word::IntLiteral || before == Word::DoubleLiteral;
    if (isInText(tree, offset) || isNumber) {
        return {{"isIncomplete", false}, {"items", Json::array()}};
    }
    return Items{session, document, offset}.collect();
}

}  // namespace krel::Lsp
