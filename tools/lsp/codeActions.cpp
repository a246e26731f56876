// Repairs as code actions.

#include <algorithm>
#include <map>

#include "tools/lsp/features.hpp"
#include "tools/lsp/meanings.hpp"

namespace krel::Lsp {

namespace {

constexpr const char* quickFixKind = "quickfix";
constexpr const char* fixAllKind = "source.fixAll";

/// No more is tried for one request: so many repairs, and so many bytes of programs with repairs.
constexpr std::size_t mostRepairs = 100;
constexpr std::size_t bytesToTry = 20'000'000;

bool isWanted(const Json& context, std::string_view kind) {
    if (!context.contains("only")) {
        return true;
    }
    const Json& only = context.at("only");
    return std::any_of(only.begin(), only.end(), [kind](const Json& each) {
        const auto name = each.get<std::string>();
        return kind == name || kind.starts_with(name + ".");
    });
}

bool touches(SourceRange left, SourceRange right) {
    return left.begin <= right.end && right.begin <= left.end;
}

/// Where two texts differ, from the first byte that does to the last.
Check::Edit difference(std::string_view from, std::string_view to) {
    const auto differ = std::mismatch(from.begin(), from.end(), to.begin(), to.end());
    const auto begin = static_cast<std::size_t>(differ.first - from.begin());
    const std::size_t most = std::min(from.size(), to.size()) - begin;
    std::size_t behind = 0;
    while (behind < most && from[from.size() - behind - 1] == to[to.size() - behind - 1]) {
        ++behind;
    }
    const auto end = from.size() - behind;
    return {{static_cast<std::uint32_t>(begin), static_cast<std::uint32_t>(end)},
            std::string{to.substr(begin, to.size() - behind - begin)}};
}

/// Collects the actions for one request.
class Actions {
public:
    Actions(const Session& itsSession, Document& itsDocument)
        : session(itsSession), document(itsDocument) {}

    /// Adds the repair of each finding that touches a range, as far as there is time to try them.
    /// One that repairs several findings is added once. Where a repair would be a guess, all that
    /// may be meant is added instead.
    void addRepairs(SourceRange range) {
        const std::vector<Check::Finding>& findings = document.analysis().report().findings;
        std::size_t left =
            std::clamp<std::size_t>(bytesToTry / (document.text().size() + 1), 1, mostRepairs);
        for (std::size_t number = 0; number < findings.size() && left > 0; ++number) {
            if (touches(findings[number].range, range)) {
                if (!addMeanings(findings[number])) {
                    addRepair(findings[number], document.fixes().of(number));
                }
                --left;
            }
        }
    }

    /// Adds the repair of everything. Repairs of accepted programs may change what they do, so they
    /// are nothing that is to happen by itself.
    void addRepairOfAll(bool asQuickFix, bool asSource) {
        const Check::Report& report = document.analysis().report();
        if (report.edits.empty()) {
            return;
        }
        const Json edit =
            workspaceEdit(session, document, {difference(document.text(), report.fixed)});
        if (asSource && !report.accepted) {
            list.push_back({{"title", "Repair everything"}, {"kind", fixAllKind}, {"edit", edit}});
        } else if (asQuickFix && !list.empty()) {
            list.push_back(
                {{"title", report.accepted ? "Repair everything (may change what the program does)"
                                           : "Repair everything"},
                 {"kind", quickFixKind},
                 {"edit", edit}});
        }
    }

    Json take() { return std::move(list); }

private:
    void addRepair(const Check::Finding& finding, const std::vector<Check::Edit>& edits) {
        if (edits.empty()) {
            return;
        }
        const auto [known, isNew] = actionOf.emplace(&edits, list.size());
        if (!isNew) {
            list.at(known->second).at("diagnostics").push_back(toJson(document, finding));
            return;
        }
        const std::string& what = finding.help.empty() ? finding.message : finding.help;
        addQuickFix("Repair: " + what, finding, edits);
    }

    bool addMeanings(const Check::Finding& finding) {
        const std::vector<Meaning> meanings = meaningsOf(document.analysis(), finding);
        for (const Meaning& meaning : meanings) {
            addQuickFix(meaning.title, finding, meaning.edits);
        }
        return !meanings.empty();
    }

    void addQuickFix(const std::string& title, const Check::Finding& finding,
                     const std::vector<Check::Edit>& edits) {
        list.push_back({{"title", title},
                        {"kind", quickFixKind},
                        {"diagnostics", Json::array({toJson(document, finding)})},
                        {"edit", workspaceEdit(session, document, edits)}});
    }

    const Session& session;
    Document& document;
    Json list = Json::array();
    std::map<const std::vector<Check::Edit>*, std::size_t> actionOf;  // by the edits of a repair
};

}  // namespace

Json codeActions(Session& session, const Json& parameters) {
    Document& document = documentOf(session, parameters);
    const SourceRange range = document.bytesOf(rangeFrom(parameters.at("range")));
    const Json& context = parameters.at("context");
    if (!session.client.codeActionObjects) {
        return Json::array();
    }
    Actions actions{session, document};
    const bool quickFixes = isWanted(context, quickFixKind);
    if (quickFixes) {
        actions.addRepairs(range);
    }
    actions.addRepairOfAll(quickFixes, isWanted(context, fixAllKind));
    return actions.take();
}

}  // namespace krel::Lsp
