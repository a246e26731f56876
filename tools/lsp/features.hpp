#pragma once

#include "tools/lsp/session.hpp"

/// The requests on documents, one function each; see RequestHandler. They turn the protocol's words
/// into questions to functions that know no protocol, and the answers back.
namespace krel::Lsp {

// codeActions.cpp
Json codeActions(Session& session, const Json& parameters);
// completion.cpp
Json completion(Session& session, const Json& parameters);
// formatting.cpp
Json formatDocument(Session& session, const Json& parameters);
Json formatRange(Session& session, const Json& parameters);
Json formatOnType(Session& session, const Json& parameters);
// hover.cpp
Json hover(Session& session, const Json& parameters);
Json inlayHints(Session& session, const Json& parameters);
// navigation.cpp
Json definition(Session& session, const Json& parameters);
Json references(Session& session, const Json& parameters);
Json highlights(Session& session, const Json& parameters);
Json prepareRename(Session& session, const Json& parameters);
Json rename(Session& session, const Json& parameters);
// semanticTokens.cpp
Json semanticTokens(Session& session, const Json& parameters);
Json semanticTokensOfRange(Session& session, const Json& parameters);
/// The names behind the numbers in semantic tokens.
Json semanticTokensLegend();
// signatures.cpp
Json signatureHelp(Session& session, const Json& parameters);
// structure.cpp
Json foldingRanges(Session& session, const Json& parameters);
Json selectionRanges(Session& session, const Json& parameters);
// symbols.cpp
Json documentSymbols(Session& session, const Json& parameters);
Json workspaceSymbols(Session& session, const Json& parameters);

/// The parameters of the notification textDocument/publishDiagnostics (diagnostics.cpp).
Json diagnosticsOf(Document& document);
/// One finding as a Diagnostic.
Json toJson(const Document& document, const Check::Finding& finding);

}  // namespace krel::Lsp
