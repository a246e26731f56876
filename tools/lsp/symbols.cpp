// Lists of what programs declare.

#include <algorithm>
#include <cctype>
#include <filesystem>

#include "tools/files/sourceFiles.hpp"
#include "tools/lsp/features.hpp"
#include "tools/lsp/names.hpp"

namespace krel::Lsp {

namespace {

/// The numbers of the protocol.
enum SymbolKind : int { functionKind = 12, variableKind = 13, arrayKind = 18 };

/// An editor shows no more at once.
constexpr std::size_t mostSymbols = 1000;

Json treeSymbol(Document& document, NodeId id, int kind) {
    const Syntax::Tree& tree = document.analysis().tree();
    return {{"name", tree.wordOf(id)},
            {"kind", kind},
            {"detail", declarationText(document.analysis(), id)},
            {"range", toJson(document, tree[id].range)},
            {"selectionRange", toJson(document, tree.wordRange(id))}};
}

Json flatSymbol(Document& document, NodeId id, int kind) {
    const Syntax::Tree& tree = document.analysis().tree();
    return {{"name", tree.wordOf(id)},
            {"kind", kind},
            {"location", {{"uri", document.uri()}, {"range", toJson(document, tree[id].range)}}}};
}

bool hasName(const Syntax::Tree& tree, NodeId id) {
    return !tree.wordOf(id).empty();
}

/// Whether all letters of the query occur in the name, in that order.
bool matches(std::string_view name, std::string_view query) {
    const auto lower = [](char byte) { return std::tolower(static_cast<unsigned char>(byte)); };
    std::size_t found = 0;
    for (const char byte : name) {
        if (found < query.size() && lower(byte) == lower(query[found])) {
            ++found;
        }
    }
    return found == query.size();
}

void addFunctions(Document& document, std::string_view query, Json& list) {
    for (const Check::Function& function : document.analysis().model().functions()) {
        if (!function.name.empty() && matches(function.name, query) && list.size() < mostSymbols) {
            list.push_back(flatSymbol(document, function.node, functionKind));
        }
    }
}

/// The functions of the programs in a folder that are not open. What cannot be read has none.
void addFolder(Session& session, const std::string& folder, std::string_view query, Json& list) {
    for (const std::string& path : programsIn(folder)) {
        const std::string uri = uriOf(path);
        if (list.size() >= mostSymbols) {
            return;
        }
        if (session.documents.count(uri) > 0) {
            continue;
        }
        try {
            Document document{uri, 0, readSource(path), session.encoding};
            addFunctions(document, query, list);
        } catch (const std::exception&) {
            continue;
        }
    }
}

}  // namespace

Json documentSymbols(Session& session, const Json& parameters) {
    Document& document = documentOf(session, parameters);
    const Check::Model& model = document.analysis().model();
    Json list = Json::array();
    for (const Check::Function& function : model.functions()) {
        if (!hasName(model.tree(), function.node)) {
            continue;
        }
        if (!session.client.symbolTrees) {
            list.push_back(flatSymbol(document, function.node, functionKind));
            continue;
        }
        Json symbol = treeSymbol(document, function.node, functionKind);
        Json& children = symbol["children"] = Json::array();
        for (const Check::VariableId number : function.variables) {
            const Check::Variable& variable = model.variables()[number];
            if (hasName(model.tree(), variable.node)) {
                children.push_back(treeSymbol(document, variable.node,
                                              variable.isArray ? arrayKind : variableKind));
            }
        }
        list.push_back(std::move(symbol));
    }
    return list;
}

Json workspaceSymbols(Session& session, const Json& parameters) {
    const auto query = parameters.at("query").get<std::string>();
    Json list = Json::array();
    for (const auto& [uri, document] : session.documents) {
        addFunctions(*document, query, list);
    }
    for (const std::string& folder : session.folders) {
        try {
            addFolder(session, folder, query, list);
        } catch (const std::exception&) {
            continue;  // a folder that is gone has no programs
        }
    }
    return list;
}

}  // namespace krel::Lsp
