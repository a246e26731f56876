#include "parse.hpp"

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <sstream>

#include "parser/facade.hpp"
#include "shared/ast/node.hpp"
#include "shared/symboltable/symbolTable.hpp"
#include "tests/unit/support/childProcess.hpp"
#include "tests/unit/support/sourceText.hpp"

namespace krel {

namespace {

void writeValue(std::ostream& out, const Node& node) {
    switch (node.getValueType()) {
        case Node::ValueType::String:
            out << '\'' << node.getStringValue() << '\'';
            break;
        case Node::ValueType::Int:
            out << node.getIntValue();
            break;
        case Node::ValueType::Double:
            out << node.getDoubleValue() << 'd';
            break;
        case Node::ValueType::Char:
            out << '%' << static_cast<int>(static_cast<unsigned char>(node.getCharValue()));
            break;
        case Node::ValueType::Bool:
            out << (node.getBoolValue() ? "true" : "false");
            break;
        case Node::ValueType::None:
            break;
    }
}

void writeTree(std::ostream& out, const Node& node) {
    out << node.getKind();
    writeValue(out, node);
    out << '@' << node.getLine();
    if (node.hasSemanticType()) {
        out << " <typed>";
    }
    if (!node.hasChildren()) {
        return;
    }
    char before = '(';
    for (const Node* child : node.getChildren()) {
        out << before;
        writeTree(out, *child);
        before = ' ';
    }
    out << ')';
}

void writeScopes(std::ostream& out, const Node& node) {
    if (node.getKind() == "FunctionDeclaration") {
        out << node.getStringValue() << ':';
        for (const auto& symbol : symbolTable.symbolsOf(node.stringValue())) {
            out << ' ' << symbol->getName() << '@' << symbol->getScope();
        }
        out << '\n';
    }
    for (const Node* child : node.getChildren()) {
        writeScopes(out, *child);
    }
}

/// Fields are told apart by this byte, which no text of a test contains.
constexpr char fieldEnd = '\x1f';

int parseAndDescribe(const std::string& text) {
    yyin = openSource(text);
    const int status = yyparse();
    std::fclose(yyin);
    std::cout << status << fieldEnd << (ast != nullptr) << fieldEnd << symbols.size() << fieldEnd;
    if (ast != nullptr) {
        writeTree(std::cout, *ast);
    }
    std::cout << fieldEnd;
    symbolTable.printSymbolTable();
    std::cout << fieldEnd;
    if (ast != nullptr) {
        writeScopes(std::cout, *ast);
    }
    return 0;
}

const std::string bodyEnd = ")))))";

}  // namespace

Parsed parse(const std::string& text) {
    const ChildResult child = runInChild([&] { return parseAndDescribe(text); });
    std::istringstream fields{child.out};
    const auto next = [&] {
        std::string field;
        std::getline(fields, field, fieldEnd);
        return field;
    };
    Parsed parsed{-1, false, 0, "", "", "", child.err};
    if (!child.hasExitedWith(0)) {
        return parsed;
    }
    parsed.status = std::stoi(next());
    parsed.hasTree = next() == "1";
    parsed.queued = std::stoul(next());
    parsed.tree = next();
    parsed.table = next();
    parsed.scopes = next();
    return parsed;
}

std::string withoutLines(const std::string& tree) {
    std::string text;
    for (std::size_t at = 0; at < tree.size();) {
        if (tree[at] == '@') {
            at = std::min(tree.find_first_not_of("0123456789", at + 1), tree.size());
        } else {
            text += tree[at++];
        }
    }
    return text;
}

std::string statementsWithLines(const std::string& text) {
    const Parsed parsed = parse("void f() {\n" + text + "\n}");
    if (parsed.status != 0 || !parsed.errors.empty()) {
        return parsed.errors;
    }
    const std::string marker = "StatementList@1(";
    const std::size_t begin = parsed.tree.find(marker) + marker.size();
    return parsed.tree.substr(begin, parsed.tree.size() - bodyEnd.size() - begin);
}

std::string statements(const std::string& text) {
    return withoutLines(statementsWithLines(text));
}

std::string expression(const std::string& text) {
    const std::string assignment = statements("x = " + text + ";");
    const std::string begin = "Assignment(Identifier'x' ";
    return assignment.starts_with(begin)
               ? assignment.substr(begin.size(), assignment.size() - begin.size() - 1)
               : assignment;
}

std::string errorsIn(const std::string& text) {
    return parse(text).errors;
}

std::string errorsInBody(const std::string& text) {
    return errorsIn("void f() {" + text + "\n}");
}

}  // namespace krel
