// Options on the command line, read by CLI11. Comes in: the words behind a command's name. Goes
// out: the variables that its options are bound to, the words that are left, or the help.

#include "tools/krel/options.hpp"

#include <utility>

#include "tools/krel/report.hpp"

namespace krel {

namespace {

std::string helpOn(const Command& command) {
    return "krel help " + std::string{command.name};
}

WrongUse wrongUseOf(const Command& command, const std::string& fault) {
    return {std::string{command.name} + ": " + fault, helpOn(command)};
}

/// CLI11 takes the words from the end of a list.
void parse(CLI::App& app, Words words) {
    std::vector<std::string> list(words.rbegin(), words.rend());
    app.parse(std::move(list));
}

std::string helpText(const CLI::App& app, const Command& command) {
    CLI::Formatter formatter;
    formatter.column_width(22);
    return std::string{command.help} + formatter.make_groups(&app, CLI::AppFormatMode::Normal);
}

bool looksLikeOption(const std::string& word) {
    return word.size() > 1 && word.starts_with('-');
}

}  // namespace

std::optional<std::vector<std::string>> readOptions(CLI::App& app, const Command& command,
                                                    Words words) {
    app.allow_extras();
    app.set_help_flag("-h,--help", "Show this help");
    try {
        parse(app, words);
    } catch (const CLI::CallForHelp&) {
        print(helpText(app, command));
        return std::nullopt;
    } catch (const CLI::ParseError& error) {
        throw wrongUseOf(command, error.what());
    }
    std::vector<std::string> rest = app.remaining();
    if (!rest.empty() && rest.front() == "--") {
        rest.erase(rest.begin());
    } else if (!rest.empty() && looksLikeOption(rest.front())) {
        throw wrongUseOf(command, "there is no option '" + rest.front() + "'");
    }
    return rest;
}

bool readWithoutRest(CLI::App& app, const Command& command, Words words) {
    const auto rest = readOptions(app, command, words);
    if (rest && !rest->empty()) {
        throw wrongUseOf(command, "'" + rest->front() + "' is one argument too many");
    }
    return rest.has_value();
}

void addNativeOption(CLI::App& app, NativeCompiler& native) {
    const auto take = [&native](const std::string& value) {
        native = value == "own" ? NativeCompiler::own : NativeCompiler::system;
    };
    app.add_option_function<std::string>(
           "--native", take, "Assemble and link by krel's own tools (the default), or gcc or clang")
        ->type_name("own|system")
        ->check(CLI::IsMember({"own", "system"}).description(""));
}

}  // namespace krel
