// Plays VS Code for the extension. Comes in: the extension's folder, the command krel and a program
// as arguments. Goes out: a JSON object with what the extension has done.

"use strict";

const { spawnSync } = require("child_process");
const Module = require("module");
const path = require("path");

const [folder, krel, program] = process.argv.slice(2);
const seen = { commands: [], errors: [], tasks: [], saved: 0 };
const registered = {};
let provider;
let settingsChanged;
let configurations;
let adapters;

const document = {
    languageId: "krel",
    uri: { scheme: "file", fsPath: program },
    save: async () => { seen.saved += 1; return true; },
};

const vscode = {
    window: {
        activeTextEditor: { document },
        showErrorMessage: (text) => { seen.errors.push(text); },
    },
    workspace: {
        getConfiguration: () => ({ get: () => krel }),
        getWorkspaceFolder: () => undefined,
        onDidChangeConfiguration: (listener) => { settingsChanged = listener; },
    },
    commands: {
        registerCommand: (name, action) => { registered[name] = action; },
    },
    tasks: {
        registerTaskProvider: (type, itsProvider) => { provider = itsProvider; },
        executeTask: async (task) => { seen.tasks.push(outcomeOf(task)); },
    },
    debug: {
        registerDebugConfigurationProvider: (type, provided) => { configurations = provided; },
        registerDebugAdapterDescriptorFactory: (type, factory) => { adapters = factory; },
        startDebugging: async (folder, configuration) => { seen.debugged = sessionOf(configuration); },
    },
    DebugAdapterExecutable: class {
        constructor(command, args) { Object.assign(this, { command, args }); }
    },
    TaskGroup: { Build: "build" },
    TaskScope: { Workspace: 2 },
    ProcessExecution: class {
        constructor(command, args, options) { Object.assign(this, { command, args, options }); }
    },
    Task: class {
        constructor(definition, scope, name, source, execution, problems) {
            Object.assign(this, { definition, scope, name, source, execution, problems });
        }
    },
};

// What the connection with the server is told; the server itself is started once, for its version.
class LanguageClient {
    constructor(id, name, server, client) {
        this.server = server;
        seen.languages = client.documentSelector.map(({ language, scheme }) => [language, scheme]);
    }

    async start() {
        const done = spawnSync(this.server.command, this.server.args, { input: "" });
        seen.serverStatus = done.error ? null : done.status;
        if (done.error) {
            throw done.error;
        }
        seen.running = (seen.running ?? 0) + 1;
    }

    async stop() {
        seen.running -= 1;
    }
}

/// Runs a task as VS Code would.
function outcomeOf(task) {
    const { command, args, options } = task.execution;
    const done = spawnSync(command, args, { ...options, encoding: "utf8" });
    return { name: task.name, problems: task.problems, output: done.stdout + done.stderr };
}

/// Plays a client of the debug adapter: launches what VS Code would, and takes down what comes.
function sessionOf(configuration) {
    const resolved = configurations.resolveDebugConfiguration(undefined, configuration);
    const { command, args } = adapters.createDebugAdapterDescriptor();
    const requests = [["initialize", { adapterID: "krel" }], ["launch", resolved],
        ["configurationDone", {}]];
    const input = requests.map(([name, itsArguments], index) => {
        const body = JSON.stringify(
            { seq: index + 1, type: "request", command: name, arguments: itsArguments });
        return `Content-Length: ${Buffer.byteLength(body)}\r\n\r\n${body}`;
    }).join("");
    const { stdout } = spawnSync(command, args, { input, encoding: "utf8" });
    return { resolved, messages: stdout };
}

const load = Module._load;
Module._load = function (request, ...others) {
    return request === "vscode" ? vscode
        : request === "vscode-languageclient/node" ? { LanguageClient }
            : load.call(this, request, ...others);
};

async function play() {
    const extension = require(path.join(folder, "extension.js"));
    await extension.activate({ subscriptions: [] });
    seen.commands = Object.keys(registered).sort();
    await registered["krel.checkFile"]();
    await registered["krel.runFile"]();
    await registered["krel.debugFile"]();
    seen.withoutConfiguration = configurations.resolveDebugConfiguration(undefined, {});
    seen.provided = provider.provideTasks().map((task) => task.definition.command);
    const definition = { type: "krel", command: "check", file: path.basename(program) };
    const resolved = provider.resolveTask(
        { definition, scope: { uri: { fsPath: path.dirname(program) } } });
    seen.resolved = [resolved.definition === definition, ...resolved.execution.args];
    seen.refused = provider.resolveTask({ definition: { type: "krel", command: "eat" } }) ?? null;
    await settingsChanged({ affectsConfiguration: (name) => name === "krel.path" });
    vscode.window.activeTextEditor = undefined;
    await registered["krel.runFile"]();
    seen.providedWithoutProgram = provider.provideTasks();
    seen.debuggedWithoutProgram = configurations.resolveDebugConfiguration(undefined, {}) ?? null;
    await extension.deactivate();
    console.log(JSON.stringify(seen));
}

play();
