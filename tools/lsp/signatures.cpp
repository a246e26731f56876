// Signature help: the call that is being written, and the parameters it takes.

#include "tools/lsp/calls.hpp"
#include "tools/lsp/features.hpp"
#include "tools/lsp/names.hpp"
#include "tools/lsp/words.hpp"

namespace krel::Lsp {

namespace {

bool opens(Word word) {
    return word == Word::LeftParenthesis || word == Word::LeftBracket;
}

bool closes(Word word) {
    return word == Word::RightParenthesis || word == Word::RightBracket;
}

/// Nothing that is being called can lie on the other side.
bool endsSearch(Word word) {
    return word == Word::Semicolon || word == Word::LeftBrace || word == Word::RightBrace;
}

bool canBeCalled(Word word) {
    return word == Word::Name || word == Word::Print || word == Word::Exit;
}

Json signature(const std::string& label, const std::vector<std::string>& parameters,
               std::size_t active) {
    Json list = Json::array();
    for (const std::string& parameter : parameters) {
        list.push_back({{"label", parameter}});
    }
    return {{"signatures", Json::array({{{"label", label}, {"parameters", std::move(list)}}})},
            {"activeSignature", 0},
            {"activeParameter", active}};
}

}  // namespace

std::optional<OpenCall> openCallAt(const Syntax::Tree& tree, std::uint32_t offset) {
    const std::vector<Syntax::Token>& words = tree.tokens.words;
    std::size_t at = 0;
    while (at + 1 < words.size() && words[at].range.end <= offset) {
        ++at;
    }
    std::size_t depth = 0;
    std::size_t commas = 0;
    while (at > 0) {
        const Word word = words[--at].word;
        if (endsSearch(word)) {
            return std::nullopt;
        }
        if (closes(word)) {
            ++depth;
        } else if (depth > 0) {
            depth -= opens(word) ? 1U : 0U;
        } else if (word == Word::Comma) {
            ++commas;
        } else if (word == Word::LeftParenthesis && at > 0 && canBeCalled(words[at - 1].word)) {
            return OpenCall{static_cast<std::uint32_t>(at - 1), commas};
        } else if (opens(word)) {
            commas = 0;
        }
    }
    return std::nullopt;
}

Json signatureHelp(Session& session, const Json& parameters) {
    Document& document = documentOf(session, parameters);
    Analysis& analysis = document.analysis();
    const std::uint32_t offset = offsetOf(document, parameters);
    const Syntax::Tree& tree = analysis.tree();
    const std::optional<OpenCall> call =
        isInText(tree, offset) ? std::nullopt : openCallAt(tree, offset);
    if (!call) {
        return nullptr;
    }
    const Syntax::Token& name = tree.tokens.words[call->token];
    const std::string_view builtIn = signatureOfBuiltIn(name.word);
    if (!builtIn.empty()) {
        return signature(std::string{builtIn}, {}, 0);
    }
    const Check::Model& model = analysis.model();
    const FunctionId function = model.functionNamed(tree.textOf(name.range));
    if (function == noFunction || tree.wordRange(model.functions()[function].node) == name.range) {
        return nullptr;
    }
    const NodeId node = model.functions()[function].node;
    return signature(declarationText(analysis, node), parameterTexts(analysis, node),
                     call->argument);
}

}  // namespace krel::Lsp
