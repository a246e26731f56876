#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "tools/check/finding.hpp"
#include "tools/lsp/analysis.hpp"

namespace krel::Lsp {

/// Takes the repairs of a program apart, so that one finding at a time can be repaired. The
/// analysis must outlive the object.
class QuickFixes {
public:
    explicit QuickFixes(Analysis& itsAnalysis) : analysis(itsAnalysis) {}

    /// The edits that repair one finding of the report, in order; empty when there are none, or
    /// none that leave fewer findings when they are carried out alone. That is tried, so it takes
    /// the time of a check; once for each statement. Findings with the same repair get the same
    /// object, which belongs to this one.
    const std::vector<Check::Edit>& of(std::size_t finding);

private:
    using EditNumbers = std::set<std::size_t>;
    class Group;

    void prepare();
    void listWords();
    NodeId ownerOf(SourceRange range);
    NodeId ownerOf(std::size_t edit);
    bool isAddition(std::size_t edit) const;
    bool isFresh(std::string_view word) const;
    EditNumbers groupOf(const Check::Finding& finding);
    std::vector<Check::Edit> tried(const EditNumbers& group);

    Analysis& analysis;
    bool isPrepared = false;
    std::set<std::string_view> usedWords;                     // of the text
    std::unordered_map<NodeId, EditNumbers> editsOf;          // by the statement they change
    std::vector<NodeId> owners;                               // of the edits
    std::map<std::string_view, EditNumbers> mentions;         // of words that the text lacks
    std::map<std::string_view, EditNumbers> declarations;     // of the same
    std::vector<std::vector<std::string_view>> freshWords;    // of the edits
    std::map<EditNumbers, std::vector<Check::Edit>> results;  // of what was tried
};

/// A text with edits carried out, which are in order and do not overlap.
std::string edited(std::string_view text, const std::vector<Check::Edit>& edits);

}  // namespace krel::Lsp
