// What a client tells of itself and its documents, and the protocol's forms of places and edits.

#include "tools/lsp/session.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

#include "tools/lsp/features.hpp"

namespace krel::Lsp {

namespace {

/// A member of a member of ... an object; null when one is missing.
Json find(const Json& json, std::initializer_list<const char*> path) {
    const Json* at = &json;
    for (const char* const name : path) {
        if (!at->is_object() || !at->contains(name)) {
            return nullptr;
        }
        at = &at->at(name);
    }
    return *at;
}

bool isTrue(const Json& json) {
    return json.is_boolean() && json.get<bool>();
}

constexpr std::array encodingNames = {std::pair{"utf-8", Encoding::Utf8},
                                      std::pair{"utf-16", Encoding::Utf16},
                                      std::pair{"utf-32", Encoding::Utf32}};

/// The first of our encodings that the client knows, too. All clients know UTF-16.
std::pair<const char*, Encoding> agreedEncoding(const Json& offered) {
    for (const auto& encoding : encodingNames) {
        if (offered.is_array() &&
            std::find(offered.begin(), offered.end(), encoding.first) != offered.end()) {
            return encoding;
        }
    }
    return encodingNames[1];
}

std::vector<std::string> foldersIn(const Json& parameters) {
    std::vector<std::string> folders;
    const auto add = [&folders](const Json& uri) {
        if (uri.is_string() && !pathOf(uri.get<std::string>()).empty()) {
            folders.push_back(pathOf(uri.get<std::string>()));
        }
    };
    const Json several = find(parameters, {"workspaceFolders"});
    if (several.is_array()) {
        for (const Json& folder : several) {
            add(find(folder, {"uri"}));
        }
    } else {
        add(find(parameters, {"rootUri"}));
    }
    return folders;
}

Json abilities(const char* encoding) {
    return {
        {"positionEncoding", encoding},
        {"textDocumentSync", {{"openClose", true}, {"change", 2}}},
        {"hoverProvider", true},
        {"definitionProvider", true},
        {"referencesProvider", true},
        {"documentHighlightProvider", true},
        {"renameProvider", {{"prepareProvider", true}}},
        {"documentSymbolProvider", true},
        {"workspaceSymbolProvider", true},
        {"foldingRangeProvider", true},
        {"selectionRangeProvider", true},
        {"completionProvider", Json::object()},
        {"signatureHelpProvider", {{"triggerCharacters", {"(", ","}}}},
        {"documentFormattingProvider", true},
        {"documentRangeFormattingProvider", true},
        {"documentOnTypeFormattingProvider",
         {{"firstTriggerCharacter", "}"}, {"moreTriggerCharacter", {";", "\n"}}}},
        {"semanticTokensProvider",
         {{"legend", semanticTokensLegend()}, {"full", true}, {"range", true}}},
        {"inlayHintProvider", true},
        {"codeActionProvider", {{"codeActionKinds", {"quickfix", "source.fixAll"}}}},
    };
}

bool isUnreserved(unsigned char byte) {
    constexpr std::string_view others = "-._~/";
    return (byte < 0x80U && std::isalnum(byte) != 0) ||
           others.find(static_cast<char>(byte)) != others.npos;
}

}  // namespace

Json initialize(Session& session, const Json& parameters) {
    const Json client = find(parameters, {"capabilities"});
    const Json texts = find(client, {"textDocument"});
    session.client.snippets =
        isTrue(find(texts, {"completion", "completionItem", "snippetSupport"}));
    session.client.symbolTrees =
        isTrue(find(texts, {"documentSymbol", "hierarchicalDocumentSymbolSupport"}));
    session.client.versionedEdits =
        isTrue(find(client, {"workspace", "workspaceEdit", "documentChanges"}));
    session.client.codeActionObjects =
        find(texts, {"codeAction", "codeActionLiteralSupport"}).is_object();
    session.folders = foldersIn(parameters);
    const auto [name, encoding] = agreedEncoding(find(client, {"general", "positionEncodings"}));
    session.encoding = encoding;
    return {{"capabilities", abilities(name)}, {"serverInfo", {{"name", "krel"}}}};
}

void openDocument(Session& session, const Json& parameters) {
    const Json& item = parameters.at("textDocument");
    const auto uri = item.at("uri").get<std::string>();
    session.documents[uri] =
        std::make_unique<Document>(uri, item.at("version").get<std::int64_t>(),
                                   item.at("text").get<std::string>(), session.encoding);
    session.changed.insert(uri);
}

void changeDocument(Session& session, const Json& parameters) {
    Document& document = documentOf(session, parameters);
    session.changed.insert(document.uri());
    for (const Json& change : parameters.at("contentChanges")) {
        std::optional<Range> range;
        if (change.contains("range")) {
            range = rangeFrom(change.at("range"));
        }
        document.replace(range, change.at("text").get_ref<const std::string&>());
    }
    document.setVersion(parameters.at("textDocument").at("version").get<std::int64_t>());
}

void closeDocument(Session& session, const Json& parameters) {
    const std::string uri = documentOf(session, parameters).uri();
    session.documents.erase(uri);
    session.changed.insert(uri);
}

Document& documentOf(Session& session, const Json& parameters) {
    const auto uri = parameters.at("textDocument").at("uri").get<std::string>();
    const auto found = session.documents.find(uri);
    if (found == session.documents.end()) {
        throw RequestError(ErrorCode::InvalidParams, "the document is not open: " + uri);
    }
    return *found->second;
}

std::uint32_t offsetOf(const Document& document, const Json& parameters) {
    return document.lines().offsetOf(positionFrom(parameters.at("position")));
}

Position positionFrom(const Json& json) {
    const auto numberOf = [&json](const char* name) {
        const Json& number = json.at(name);
        if (!number.is_number_unsigned()) {
            throw RequestError(ErrorCode::InvalidParams,
                               std::string{"a position's "} + name + " is no whole number");
        }
        return number.get<std::uint64_t>();
    };
    return {numberOf("line"), numberOf("character")};
}

Range rangeFrom(const Json& json) {
    return {positionFrom(json.at("start")), positionFrom(json.at("end"))};
}

Json toJson(const Position& position) {
    return {{"line", position.line}, {"character", position.character}};
}

Json toJson(const Document& document, SourceRange bytes) {
    const Range range = document.rangeOf(bytes);
    return {{"start", toJson(range.start)}, {"end", toJson(range.end)}};
}

Json toJson(const Document& document, const std::vector<Check::Edit>& edits) {
    Json list = Json::array();
    for (const Check::Edit& edit : edits) {
        list.push_back({{"range", toJson(document, edit.range)}, {"newText", edit.text}});
    }
    return list;
}

Json workspaceEdit(const Session& session, const Document& document,
                   const std::vector<Check::Edit>& edits) {
    Json list = toJson(document, edits);
    if (!session.client.versionedEdits) {
        return {{"changes", {{document.uri(), std::move(list)}}}};
    }
    const Json named = {{"uri", document.uri()}, {"version", document.version()}};
    return {
        {"documentChanges", Json::array({{{"textDocument", named}, {"edits", std::move(list)}}})}};
}

std::string pathOf(std::string_view uri) {
    constexpr std::string_view scheme = "file://";
    if (!uri.starts_with(scheme)) {
        return {};
    }
    uri.remove_prefix(std::min(uri.find('/', scheme.size()), uri.size()));
    std::string path;
    for (std::size_t at = 0; at < uri.size(); ++at) {
        unsigned byte = 0;
        const char* const digits = uri.data() + at + 1;
        const bool isEscape = uri[at] == '%' && at + 2 < uri.size() &&
                              std::from_chars(digits, digits + 2, byte, 16).ptr == digits + 2;
        path.push_back(isEscape ? static_cast<char>(byte) : uri[at]);
        at += isEscape ? 2 : 0;
    }
    return path;
}

std::string uriOf(std::string_view path) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string uri = "file://";
    for (const char character : path) {
        const auto byte = static_cast<unsigned char>(character);
        if (isUnreserved(byte)) {
            uri.push_back(character);
        } else {
            uri.append({'%', digits[byte / 16U], digits[byte % 16U]});
        }
    }
    return uri;
}

}  // namespace krel::Lsp
