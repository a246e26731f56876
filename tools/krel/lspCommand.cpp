// The command `krel lsp`. Comes in: the messages of an editor, on standard input. Goes out: the
// answers, on standard output.

#include <unistd.h>

#include <csignal>

#include "tools/krel/commands.hpp"
#include "tools/krel/options.hpp"
#include "tools/krel/report.hpp"
#include "tools/lsp/server.hpp"

namespace krel {

namespace {

int serveEditor(Words words) {
    CLI::App app;
    if (!readWithoutRest(app, lspCommand, words)) {
        return succeeded;
    }
    // An editor that has gone is a failure like others, which is told.
    std::signal(SIGPIPE, SIG_IGN);
    return Lsp::serve(STDIN_FILENO, STDOUT_FILENO) == Lsp::End::Orderly ? succeeded : failed;
}

}  // namespace

constexpr Command lspCommand = {
    "lsp",
    "Serves an editor: findings, repairs, names, completion, layout",
    "Serves an editor by the Language Server Protocol: messages come on standard input, answers "
    "go\n"
    "to standard output.\n"
    "\n"
    "Examples:\n"
    "  krel lsp           the command that an editor is told to start for programs in Krel\n"
    "\n"
    "Usage: krel lsp\n"
    "\n"
    "The exit status is 0 when the editor has ended the session, and 1 when it has gone.\n",
    serveEditor,
};

}  // namespace krel
