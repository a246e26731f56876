// Reads texts by the TextMate grammar. Comes in: a JSON array of texts on standard input, the
// grammar's file as argument. Goes out: for each text its tokens, [text, innermost scope].

"use strict";

const fs = require("fs");
const oniguruma = require("vscode-oniguruma");
const textmate = require("vscode-textmate");

async function grammarOf(file) {
    const wasm = require.resolve("vscode-oniguruma/release/onig.wasm");
    await oniguruma.loadWASM(fs.readFileSync(wasm).buffer);
    const registry = new textmate.Registry({
        onigLib: Promise.resolve({
            createOnigScanner: (patterns) => new oniguruma.OnigScanner(patterns),
            createOnigString: (text) => new oniguruma.OnigString(text),
        }),
        loadGrammar: async () =>
            textmate.parseRawGrammar(fs.readFileSync(file, "utf8"), "krel.json"),
    });
    return registry.loadGrammar("source.krl");
}

function tokensOf(grammar, text) {
    const tokens = [];
    let state = textmate.INITIAL;
    for (const line of text.split("\n")) {
        const result = grammar.tokenizeLine(line, state);
        state = result.ruleStack;
        tokens.push(...result.tokens.map((token) => [
            line.slice(token.startIndex, token.endIndex), token.scopes[token.scopes.length - 1]]));
    }
    return tokens;
}

grammarOf(process.argv[2]).then((grammar) => {
    const texts = JSON.parse(fs.readFileSync(0, "utf8"));
    console.log(JSON.stringify(texts.map((text) => tokensOf(grammar, text))));
});
