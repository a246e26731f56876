// Findings as diagnostics. Comes in: a document. Goes out: what the client shows in it.

#include "tools/lsp/features.hpp"

namespace krel::Lsp {

namespace {

/// The numbers of the protocol.
enum Level : int { errorLevel = 1, warningLevel = 2, hintLevel = 4 };
constexpr int unnecessaryTag = 1;

Level levelOf(Check::Severity severity) {
    switch (severity) {
        case Check::Severity::Error:
            return errorLevel;
        case Check::Severity::Warning:
            return warningLevel;
        default:
            return hintLevel;
    }
}

bool isUnnecessary(std::string_view rule) {
    return rule == "unused-variable" || rule == "unused-function" || rule == "unreachable-code";
}

/// What an editor underlines. Where something is missing, that is the place and not all up to the
/// next word, which may lie lines below.
SourceRange underlined(const Check::Finding& finding) {
    if (finding.rule == "missing-token") {
        return {finding.range.begin, finding.range.begin};
    }
    return finding.range;
}

}  // namespace

Json toJson(const Document& document, const Check::Finding& finding) {
    Json diagnostic = {
        {"range", toJson(document, underlined(finding))},
        {"severity", levelOf(finding.severity)},
        {"code", finding.rule},
        {"source", "krel"},
        {"message", finding.message},
    };
    if (!finding.help.empty()) {
        diagnostic["message"] = finding.message + "\nhelp: " + finding.help;
    }
    if (isUnnecessary(finding.rule)) {
        diagnostic["tags"] = {unnecessaryTag};
    }
    return diagnostic;
}

Json diagnosticsOf(Document& document) {
    Json list = Json::array();
    for (const Check::Finding& finding : document.analysis().report().findings) {
        list.push_back(toJson(document, finding));
    }
    return {
        {"uri", document.uri()}, {"version", document.version()}, {"diagnostics", std::move(list)}};
}

}  // namespace krel::Lsp
