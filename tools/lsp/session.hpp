#pragma once

#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <vector>

#include "tools/lsp/document.hpp"
#include "tools/lsp/protocol.hpp"

namespace krel::Lsp {

/// What a client can do, as far as it matters here.
struct ClientAbilities {
    bool snippets = false;           // completions with places to fill in
    bool symbolTrees = false;        // document symbols within each other
    bool versionedEdits = false;     // edits that name the version of the document
    bool codeActionObjects = false;  // code actions that are no commands
};

/// What one client has told.
struct Session {
    Encoding encoding = Encoding::Utf16;
    ClientAbilities client;
    std::vector<std::string> folders;  // of the workspace, as paths
    Documents documents;
    std::set<std::string> changed;  // documents whose diagnostics are to be published
};

/// A function that answers a request. Throws RequestError, and what Json throws for parameters that
/// are not as the protocol has them.
using RequestHandler = Json (*)(Session& session, const Json& parameters);

/// The answer to the request `initialize`: what this server can do. Notes what the client can do.
Json initialize(Session& session, const Json& parameters);

// Notifications on documents.
void openDocument(Session& session, const Json& parameters);
void changeDocument(Session& session, const Json& parameters);
void closeDocument(Session& session, const Json& parameters);

/// The document that parameters name. Throws RequestError when it is not open.
Document& documentOf(Session& session, const Json& parameters);
/// The byte that the parameters' position names.
std::uint32_t offsetOf(const Document& document, const Json& parameters);

Position positionFrom(const Json& json);
Range rangeFrom(const Json& json);
Json toJson(const Position& position);
/// A range of bytes as the client counts.
Json toJson(const Document& document, SourceRange bytes);
/// A list of TextEdits.
Json toJson(const Document& document, const std::vector<Check::Edit>& edits);
/// A WorkspaceEdit of one document.
Json workspaceEdit(const Session& session, const Document& document,
                   const std::vector<Check::Edit>& edits);

/// The path of a file: URI; empty when it is none.
std::string pathOf(std::string_view uri);
/// The file: URI of an absolute path.
std::string uriOf(std::string_view path);

}  // namespace krel::Lsp
