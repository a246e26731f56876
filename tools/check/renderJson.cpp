// Findings for programs. Comes in: checked files. Goes out: JSON and SARIF documents.

#include <map>
#include <nlohmann/json.hpp>
#include <set>

#include "tools/check/render.hpp"
#include "tools/check/ruleBook.hpp"

namespace krel::Check {

namespace {

using Json = nlohmann::ordered_json;

/// Bytes that are no UTF-8 are replaced.
std::string dumped(const Json& document) {
    return document.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

Json placeOf(const LineIndex& lines, SourceRange range) {
    const LineAndColumn begin = lines.positionOf(range.begin);
    const LineAndColumn end = lines.positionOf(range.end);
    return {{"line", begin.line},
            {"column", begin.column},
            {"endLine", end.line},
            {"endColumn", end.column}};
}

/// Lines and columns as SARIF counts them: in characters of UTF-8, however damaged.
class Characters {
public:
    explicit Characters(const std::string& text) : lines(text) {
        before.reserve(text.size() + 1);
        before.push_back(0);
        for (const char byte : text) {
            const bool continues = (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
            before.push_back(before.back() + (continues ? 0U : 1U));
        }
    }

    Json regionOf(SourceRange range) const {
        return {{"startLine", lines.positionOf(range.begin).line},
                {"startColumn", columnOf(range.begin)},
                {"endLine", lines.positionOf(range.end).line},
                {"endColumn", columnOf(range.end)}};
    }

private:
    std::uint32_t columnOf(std::uint32_t place) const {
        const std::uint32_t begin = lines.offsetOf({lines.positionOf(place).line, 1});
        return before[place] - before[begin] + 1;
    }

    LineIndex lines;
    std::vector<std::uint32_t> before;  // how many characters stand before each byte
};

/// A path as a reference: what has a meaning there is written as its code.
std::string uriOf(const std::string& path) {
    constexpr char digits[] = "0123456789ABCDEF";
    std::string uri;
    for (const char byte : path) {
        const auto code = static_cast<unsigned char>(byte);
        const bool isPlain = ('a' <= byte && byte <= 'z') || ('A' <= byte && byte <= 'Z') ||
                             ('0' <= byte && byte <= '9') ||
                             std::string_view{"-._~/"}.find(byte) != std::string_view::npos;
        if (isPlain) {
            uri += byte;
        } else {
            uri += {'%', digits[code >> 4U], digits[code & 15U]};
        }
    }
    return uri;
}

/// The edits that repair a finding.
Json fixOf(const CheckedFile& file, const Finding& finding, const Characters& characters) {
    Json replacements = Json::array();
    for (const std::size_t number : finding.edits) {
        const Edit& edit = file.report.edits[number];
        replacements.push_back({{"deletedRegion", characters.regionOf(edit.range)},
                                {"insertedContent", {{"text", edit.text}}}});
    }
    Json change = {{"artifactLocation", {{"uri", uriOf(file.path)}}},
                   {"replacements", std::move(replacements)}};
    return {{"description", {{"text", finding.help.empty() ? finding.message : finding.help}}},
            {"artifactChanges", Json::array({std::move(change)})}};
}

}  // namespace

std::string jsonOf(const std::vector<CheckedFile>& files) {
    Json all = Json::array();
    for (const CheckedFile& file : files) {
        const LineIndex lines{file.text};
        Json findings = Json::array();
        for (const Finding& finding : file.report.findings) {
            Json entry = {{"rule", finding.rule}, {"severity", nameOf(finding.severity)}};
            entry.update(placeOf(lines, finding.range));
            entry["message"] = finding.message;
            entry["help"] = finding.help;
            entry["edits"] = finding.edits;
            findings.push_back(std::move(entry));
        }
        Json edits = Json::array();
        for (const Edit& edit : file.report.edits) {
            Json entry = placeOf(lines, edit.range);
            entry["text"] = edit.text;
            edits.push_back(std::move(entry));
        }
        all.push_back({{"file", file.path},
                       {"accepted", file.report.accepted},
                       {"findings", std::move(findings)},
                       {"edits", std::move(edits)}});
    }
    return dumped({{"files", std::move(all)}});
}

std::string sarifOf(const std::vector<CheckedFile>& files) {
    Json rules = Json::array();
    std::map<std::string_view, std::size_t> numbers;
    for (const RulePage& page : allRules()) {
        numbers[page.name] = rules.size();
        rules.push_back({{"id", page.name}, {"shortDescription", {{"text", page.summary}}}});
    }
    Json results = Json::array();
    for (const CheckedFile& file : files) {
        const Characters characters{file.text};
        for (const Finding& finding : file.report.findings) {
            constexpr const char* levels[] = {"error", "warning", "note"};
            const std::string text =
                finding.help.empty() ? finding.message : finding.message + "; " + finding.help;
            Json result = {
                {"ruleId", finding.rule},
                {"level", levels[static_cast<std::size_t>(finding.severity)]},
                {"message", {{"text", text}}},
                {"locations", Json::array({{{"physicalLocation",
                                             {{"artifactLocation", {{"uri", uriOf(file.path)}}},
                                              {"region", characters.regionOf(finding.range)}}}}})}};
            if (!finding.edits.empty()) {
                result["fixes"] = Json::array({fixOf(file, finding, characters)});
            }
            const auto number = numbers.find(finding.rule);
            if (number != numbers.end()) {
                result["ruleIndex"] = number->second;
            }
            results.push_back(std::move(result));
        }
    }
    const Json tool = {
        {"driver", {{"name", "krel check"}, {"version", "0.1.0"}, {"rules", std::move(rules)}}}};
    return dumped({{"$schema", "https://json.schemastore.org/sarif-2.1.0.json"},
                   {"version", "2.1.0"},
                   {"runs", Json::array({{{"tool", tool},
                                          {"columnKind", "unicodeCodePoints"},
                                          {"results", std::move(results)}}})}});
}

}  // namespace krel::Check
