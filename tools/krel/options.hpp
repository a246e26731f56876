#pragma once

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <optional>
#include <string>
#include <vector>

#include "tools/krel/commands.hpp"
#include "tools/krel/installation.hpp"

namespace krel {

/// Reads the words of a command into the options and arguments that `app` has been given, and
/// returns the words that belong to none of them; without value when the user has asked for help,
/// which has then been printed. The mark "--" ends the options and is not among the words. Throws
/// WrongUse for an unknown option, and for what CLI11 finds wrong.
std::optional<std::vector<std::string>> readOptions(CLI::App& app, const Command& command,
                                                    Words words);

/// The same for a command that takes no other words: throws WrongUse for any. False when the user
/// has asked for help.
bool readWithoutRest(CLI::App& app, const Command& command, Words words);

/// The option --native, which goes into `native`. That has to live as long as the options are read.
void addNativeOption(CLI::App& app, NativeCompiler& native);

}  // namespace krel
