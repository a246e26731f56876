// The command `krel explain`. Comes in: a rule or a message of krelcc. Goes out: the page about it,
// or the list of all rules.

#include <algorithm>
#include <string>
#include <vector>

#include "tools/check/ruleBook.hpp"
#include "tools/krel/commands.hpp"
#include "tools/krel/options.hpp"
#include "tools/krel/report.hpp"

namespace krel {

namespace {

std::string listOfRules() {
    std::size_t width = 0;
    for (const Check::RulePage& page : Check::allRules()) {
        width = std::max(width, page.name.size());
    }
    std::string list;
    for (const Check::RulePage& page : Check::allRules()) {
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
    const Check::RulePage* page = Check::findRule(topic);
    page = page == nullptr ? Check::findRuleOfMessage(topic) : page;
    if (page == nullptr) {
        throw WrongUse("explain: there is no rule or message '" + topic + "'", "krel explain");
    }
    print(page->text);
    return succeeded;
}

}  // namespace

constexpr Command explainCommand = {
    "explain",
    "Tells more about a finding of krel check or a message of krelcc",
    "Tells more about a finding of krel check or a message of krelcc.\n"
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
