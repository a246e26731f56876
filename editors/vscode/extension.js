// The extension for VS Code: starts `krel lsp` for programs in Krel and `krel debug` to debug them,
// and runs and checks them as tasks, so that what krel says becomes a list of problems.

"use strict";

const path = require("path");
const vscode = require("vscode");
const { LanguageClient } = require("vscode-languageclient/node");

// What krel does with a file, and what finds problems in its output (package.json has both).
const commands = {
    run: { title: "Run", problems: ["$krelcc"] },
    check: { title: "Check", problems: ["$krel-check", "$krel-hint"] },
    build: { title: "Build", problems: ["$krelcc"], group: vscode.TaskGroup.Build },
};

let client; // the connection with `krel lsp`; undefined while there is none

function krel() {
    return vscode.workspace.getConfiguration("krel").get("path", "krel");
}

async function startServer() {
    const server = { command: krel(), args: ["lsp"] };
    client = new LanguageClient("krel", "Krel", server, {
        documentSelector: [
            { language: "krel", scheme: "file" },
            { language: "krel", scheme: "untitled" },
        ],
    });
    try {
        await client.start();
    } catch (fault) {
        client = undefined;
        vscode.window.showErrorMessage(
            `Krel: "${server.command} lsp" does not start (${fault.message}). ` +
            'The setting "krel.path" names the command.');
    }
}

async function stopServer() {
    const stopped = client;
    client = undefined;
    await stopped?.stop();
}

/// A task that lets krel do something with a file. The compiler names files without their folder,
/// so krel works in the file's own.
function taskFor(command, file, scope, definition = { type: "krel", command, file }) {
    const { title, problems, group } = commands[command];
    const execution =
        new vscode.ProcessExecution(krel(), [command, file], { cwd: path.dirname(file) });
    const task = new vscode.Task(definition, scope ?? vscode.TaskScope.Workspace,
        `${title} ${path.basename(file)}`, "krel", execution, problems);
    task.group = group;
    return task;
}

function scopeOf(uri) {
    return vscode.workspace.getWorkspaceFolder(uri);
}

/// The program that is being edited; undefined when it is another kind of file, or none on disk.
function programOf(editor) {
    const document = editor?.document;
    return document?.languageId === "krel" && document.uri.scheme === "file" ? document : undefined;
}

/// Saves the program that is being edited, and hands its place on.
async function withProgram(action) {
    const program = programOf(vscode.window.activeTextEditor);
    if (program === undefined) {
        vscode.window.showErrorMessage("Krel: save this as a file that ends in .krl first.");
        return;
    }
    if (await program.save()) {
        await action(program.uri);
    }
}

/// Lets krel do something with the program that is being edited.
function execute(command) {
    return withProgram((uri) =>
        vscode.tasks.executeTask(taskFor(command, uri.fsPath, scopeOf(uri))));
}

function debugged(program) {
    return { type: "krel", request: "launch", name: "Debug", program };
}

function debug() {
    return withProgram((uri) => vscode.debug.startDebugging(scopeOf(uri), debugged(uri.fsPath)));
}

/// Where there is no launch.json, the program that is being edited is debugged.
const debugConfigurations = {
    resolveDebugConfiguration(folder, configuration) {
        if (configuration.type) {
            return configuration;
        }
        const program = programOf(vscode.window.activeTextEditor);
        return program === undefined ? undefined : debugged(program.uri.fsPath);
    },
};

/// What VS Code talks to while a program is debugged.
const debugAdapters = {
    createDebugAdapterDescriptor() {
        return new vscode.DebugAdapterExecutable(krel(), ["debug"]);
    },
};

const taskProvider = {
    provideTasks() {
        const program = programOf(vscode.window.activeTextEditor);
        return program === undefined ? [] : Object.keys(commands).map(
            (command) => taskFor(command, program.uri.fsPath, scopeOf(program.uri)));
    },
    /// Completes a task of a tasks.json.
    resolveTask(task) {
        const { command, file } = task.definition;
        if (!(command in commands) || typeof file !== "string") {
            return undefined;
        }
        const folder = task.scope?.uri?.fsPath ?? "";
        return taskFor(command, path.resolve(folder, file), task.scope, task.definition);
    },
};

async function activate(context) {
    context.subscriptions.push(
        vscode.commands.registerCommand("krel.runFile", () => execute("run")),
        vscode.commands.registerCommand("krel.debugFile", debug),
        vscode.commands.registerCommand("krel.checkFile", () => execute("check")),
        vscode.debug.registerDebugConfigurationProvider("krel", debugConfigurations),
        vscode.debug.registerDebugAdapterDescriptorFactory("krel", debugAdapters),
        vscode.tasks.registerTaskProvider("krel", taskProvider),
        vscode.workspace.onDidChangeConfiguration(async (change) => {
            if (change.affectsConfiguration("krel.path")) {
                await stopServer();
                await startServer();
            }
        }));
    await startServer();
}

module.exports = { activate, deactivate: stopServer };
