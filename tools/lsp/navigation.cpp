// Where names stand: definition, references, highlights, rename.

#include <algorithm>
#include <stdexcept>

#include "tools/lsp/features.hpp"
#include "tools/lsp/names.hpp"

namespace krel::Lsp {

namespace {

struct Asked {
    Document& document;
    std::optional<Entity> entity;
};

Asked entityIn(Session& session, const Json& parameters) {
    Document& document = documentOf(session, parameters);
    return {document, entityAt(document.analysis(), offsetOf(document, parameters))};
}

/// The Locations of an entity's occurrences.
Json locations(const Asked& asked, bool declarations, bool others) {
    Json list = Json::array();
    if (!asked.entity) {
        return list;
    }
    for (const Occurrence& occurrence : occurrencesOf(asked.document.analysis(), *asked.entity)) {
        if (occurrence.use == Use::Declaration ? declarations : others) {
            list.push_back({{"uri", asked.document.uri()},
                            {"range", toJson(asked.document, occurrence.range)}});
        }
    }
    return list;
}

/// The number of a DocumentHighlightKind.
int kindOf(Use use) {
    constexpr int read = 2;
    constexpr int write = 3;
    return use == Use::Read ? read : write;
}

}  // namespace

Json definition(Session& session, const Json& parameters) {
    return locations(entityIn(session, parameters), true, false);
}

Json references(Session& session, const Json& parameters) {
    const bool declarations = parameters.at("context").at("includeDeclaration").get<bool>();
    return locations(entityIn(session, parameters), declarations, true);
}

Json highlights(Session& session, const Json& parameters) {
    const Asked asked = entityIn(session, parameters);
    Json list = Json::array();
    if (!asked.entity) {
        return list;
    }
    for (const Occurrence& occurrence : occurrencesOf(asked.document.analysis(), *asked.entity)) {
        list.push_back({{"range", toJson(asked.document, occurrence.range)},
                        {"kind", kindOf(occurrence.use)}});
    }
    return list;
}

Json prepareRename(Session& session, const Json& parameters) {
    const Asked asked = entityIn(session, parameters);
    const bool isMain = asked.entity && asked.entity->isFunction && asked.entity->name == "main";
    if (!asked.entity || isMain) {
        return nullptr;
    }
    return {{"range", toJson(asked.document, asked.entity->range)},
            {"placeholder", asked.entity->name}};
}

Json rename(Session& session, const Json& parameters) {
    const Asked asked = entityIn(session, parameters);
    const auto name = parameters.at("newName").get<std::string>();
    if (!asked.entity) {
        throw RequestError(ErrorCode::RequestFailed, "there is no name to change here");
    }
    try {
        return workspaceEdit(session, asked.document,
                             renamed(asked.document.analysis(), *asked.entity, name));
    } catch (const std::invalid_argument& fault) {
        throw RequestError(ErrorCode::RequestFailed, fault.what());
    }
}

}  // namespace krel::Lsp
