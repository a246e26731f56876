// The command `krel explain`. Comes in: a rule or a message of krelcc. Goes out: the page about it,
// or the list of all rules.

#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include "tools/check/ruleBook.hpp"
#include "tools/krel/commands.hpp"
#include "tools/krel/options.hpp"
#include "tools/krel/report.hpp"
#include "tools/machine/rules.hpp"

namespace krel {

namespace {

/// The rules of krel check and those of checked runs, in the order of their names.
std::vector<Check::RulePage> everyRule() {
    std::vector<Check::RulePage> rules;
    std::ranges::merge(Check::allRules(), Execution::rulePages(), std::back_inserter(rules), {},
                       &Check::RulePage::name, &Check::RulePage::name);
    return rules;
}

const Check::RulePage* findPage(const std::string& topic) {
    const auto ofRuns = Execution::rulePages();
    const auto found = std::ranges::find(ofRuns, topic, &Check::RulePage::name);
    if (found != ofRuns.end()) {
        return &*found;
    }
    const Check::RulePage* const page = Check::findRule(topic);
    return page != nullptr ? page : Check::findRuleOfMessage(topic);
}

std::string listOfRules() {
    const std::vector<Check::RulePage> rules = everyRule();
    std::size_t width = 0;
    for (const Check::RulePage& page : rules) {
        width = std::max(width, page.name.size());
    }
    std::string list;
    for (const Check::RulePage& page : rules) {
        list += std::string{page.name} + std::string(width + 2 - page.name.size(), ' ') +
                std::string{page.summary} + "\n";
    }
    return list;
}

int explain(Words words) {
    CLI::App app;
    std::vector<std::string> topics;
    app.add_option("TOPIC", topics);
    if (!readWithoutRest(app, explainCommand, words)) {
        return succeeded;
    }
    if (topics.empty()) {
        print(listOfRules());
        return succeeded;
    }
    std::string topic;
    for (const std::string& word : topics) {
        topic += (topic.empty() ? "" : " ") + word;
    }
    const Check::RulePage* const page = findPage(topic);
    if (page == nullptr) {
        throw WrongUse("explain: there is no rule or message '" + topic + "'", "krel explain");
    }
    print(page->text);
    return succeeded;
}

}  // namespace

constexpr Command explainCommand = {
    "explain",
    "Tells more about a finding, a fault of a checked run or a message",
    "Tells more about a finding of krel check, a fault of a checked run, or a message of krelcc.\n"
    "\n"
    "Examples:\n"
    "  krel explain                       lists all rules\n"
    "  krel explain whole-double          the page about a rule\n"
    "  krel explain 'unknown array: i'    the page about a message\n"
    "\n"
    "Usage: krel explain [OPTIONS] [RULE | MESSAGE]\n",
    explain,
};

}  // namespace krel
