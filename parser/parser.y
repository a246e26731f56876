/* The grammar of Krel, and the actions that build the tree and file its declarations.
 *
 * The language is deliberately narrower than it looks: an index is one name or one integer, a cast
 * is the whole initialiser of a scalar, bodies are blocks. Token names appear in the messages of
 * syntax errors, so they have no aliases.
 *
 * Nodes belong to the tree as soon as an action links them. Those that a failed parse leaves behind
 * stay in the memory that they were made in. A <text> value is a heap copy that the consuming
 * action frees; an identifier comes as a Name, which nobody has to free.
 */

%define parse.error detailed
%define api.pure full
%define api.prefix {krel_}
%define api.location.type {krel::TokenLocation}
%locations
%expect 0

%parse-param {krel::ParseContext& context} {void* scanner}
%lex-param {void* scanner}

%code requires {
#include "parser/tokenLocation.hpp"

namespace krel {
class Node;
class ParseContext;
}  // namespace krel

/* Lets the generated stacks grow: a location is copied like any other number of bytes. */
#define KREL_LTYPE_IS_TRIVIAL 1
}

%code provides {
/// Returns the next token, 0 at the end of the text; sets its value and location. The scanner is
/// the handle of one (lexer/scanner.hpp).
int krel_lex(KREL_STYPE* value, krel::TokenLocation* location, void* scanner);
}

%code {
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "parser/parseContext.hpp"
#include "shared/ast/node.hpp"
#include "shared/ast/textRuns.hpp"
#include "shared/error/error.hpp"

using namespace krel;

/* A phrase reaches from its first symbol to its last one. Most have one symbol: its location is
 * theirs. */
#define YYLLOC_DEFAULT(current, rhs, count)      \
    do {                                         \
        (current) = YYRHSLOC(rhs, count);        \
        if ((count) != 1) {                      \
            setBeginning(current, rhs, count);   \
        }                                        \
    } while (false)

static void setBeginning(TokenLocation& phrase, const TokenLocation* symbols, int count);
static void yyerror(const TokenLocation* location, ParseContext& context, void* scanner,
                    const char* message);
static std::string decodeQuotedLiteral(const char* text);
static char decodeCharacterLiteral(const char* text);
static Node* stringLiteral(char* text, Place place);
static Node* characterLiteral(char* text, Place place);
static Node* exitStatement(Node* arguments, Place place);
static Node* append(Node* list, Node* entry, const TokenLocation& location);
static Node* binary(Name op, Node* left, Node* right, Place place);
static Node* update(Name kind, Node* target, Place place);
static Node* checkedUpdate(Name kind, Node* target, Place place);
static void declareVariables(Node* declaration, ParseContext& context);
static void declareFunction(Node* function, ParseContext& context);
}

%union {
    int integer;
    double real;
    char* text;
    unsigned name; /* the index of a Name, which has a constructor and cannot stand in a union */
    krel::Node* node;
}

%destructor { free($$); } <text>

%token <integer> T_INT_LITERAL
%token <name> T_ID
%token <text> T_STRING_LITERAL T_CHARACTER_LITERAL
%token <real> T_DECIMAL_LITERAL
%token T_PLUS T_MINUS T_TIMES T_DIVIDE
%token T_LPAREN T_RPAREN T_LBRACE T_RBRACE T_LBRACKET T_RBRACKET
%token T_SEMICOLON T_COMMA T_ASSIGN T_PLUS_ASSIGN T_MINUS_ASSIGN T_INCREMENT T_DECREMENT
%token T_LESS T_GREATER T_LESS_EQUAL T_GREATER_EQUAL T_EQUAL T_NOT_EQUAL T_NOT T_AND T_OR
%token T_INT T_DOUBLE T_BOOLEAN T_CHARACTER T_VOID T_STRING
%token T_IF T_ELSE T_ELSEIF T_EXIT T_PRINT T_TRUE T_FALSE
%token T_FOR T_WHILE T_CONTINUE T_BREAK T_RETURN
/* Never scanned. Unary operators need no precedence: they take a primary, which binds tighter. */
%token UMINUS UPLUS

%left T_OR
%left T_AND
%left T_EQUAL T_NOT_EQUAL
%left T_LESS T_GREATER T_LESS_EQUAL T_GREATER_EQUAL
%left T_PLUS T_MINUS
%left T_TIMES T_DIVIDE

%type <node> program external_list external_decl function_decl type param_list_opt param_list param
%type <node> block statement_list statement declaration declarator_list declarator init_var
%type <node> init_array expression_list assignment return_stmt print_stmt exit_stmt if_stmt
%type <node> elseif_list elseif_clause else_opt while_stmt for_stmt for_init_opt for_cond_opt
%type <node> for_update_opt call_stmt increment_stmt decrement_stmt opvalue bracket_value
%type <node> paren_expression expression cast_expression cast_value unary primary
%type <node> argument_list_opt argument_list

%start program

%%

program:
    external_list { context.root = $$ = new Node(NodeKind::Program, $1, @$); }
;

external_list:
    external_list external_decl { $$ = append($1, $2, @2); }
  | empty { $$ = new Node(NodeKind::ExternalList, 0, @$); }
;

external_decl:
    function_decl
  | statement {
        Error::semantic("all statements must be inside a function", @$);
        $$ = $1;
    }
;

function_decl:
    type T_ID T_LPAREN param_list_opt T_RPAREN block {
        $$ = new Node(NodeKind::FunctionDeclaration, Name::fromIndex($2), $1, @$);
        $$->addChild($4)->addChild($6);
        declareFunction($$, context);
    }
;

type:
    T_INT { $$ = new Node(NodeKind::Type, TypeName::Int, @$); }
  | T_DOUBLE { $$ = new Node(NodeKind::Type, TypeName::Double, @$); }
  | T_BOOLEAN { $$ = new Node(NodeKind::Type, TypeName::Boolean, @$); }
  | T_CHARACTER { $$ = new Node(NodeKind::Type, TypeName::Character, @$); }
  | T_VOID { $$ = new Node(NodeKind::Type, TypeName::Void, @$); }
  | T_STRING { $$ = new Node(NodeKind::Type, TypeName::String, @$); }
;

param_list_opt:
    param_list
  | empty { $$ = new Node(NodeKind::ParameterList, @$); }
;

param_list:
    param { $$ = new Node(NodeKind::ParameterList, $1, @$); }
  | param_list T_COMMA param { $$ = append($1, $3, @3); }
;

param:
    type T_ID { $$ = new Node(NodeKind::Parameter, Name::fromIndex($2), $1, @$); }
;

block:
    T_LBRACE statement_list T_RBRACE { $$ = new Node(NodeKind::Block, $2, @$); }
;

statement_list:
    statement_list statement { $$ = append($1, $2, @2); }
  | empty { $$ = new Node(NodeKind::StatementList, @$); }
;

statement:
    declaration T_SEMICOLON
  | assignment T_SEMICOLON
  | increment_stmt T_SEMICOLON
  | decrement_stmt T_SEMICOLON
  | call_stmt T_SEMICOLON
  | paren_expression T_SEMICOLON
  | return_stmt T_SEMICOLON
  | opvalue T_SEMICOLON {
        Error::parser("Standalone variable or array access.", @1);
        $$ = $1;
    }
  | if_stmt
  | while_stmt
  | for_stmt
  | print_stmt T_SEMICOLON
  | exit_stmt T_SEMICOLON
  | T_CONTINUE T_SEMICOLON { $$ = new Node(NodeKind::ContinueStatement, @$); }
  | T_BREAK T_SEMICOLON { $$ = new Node(NodeKind::BreakStatement, @$); }
  | block
;

declaration:
    type declarator_list {
        $$ = new Node(NodeKind::Declaration, $1, $2, @$);
        declareVariables($$, context);
    }
;

/* An array declarator stands for the whole list: declarators behind it become its children and
 * get no symbols (kept). */
declarator_list:
    declarator { $$ = new Node(NodeKind::DeclaratorList, $1, @$); }
  | declarator_list T_COMMA declarator { $$ = append($1, $3, @3); }
  | T_ID T_LBRACKET bracket_value T_RBRACKET init_array {
        $$ = new Node(NodeKind::ArrayDeclarator, Name::fromIndex($1), $3, @$);
        $$->addChild($5);
    }
;

declarator:
    T_ID init_var { $$ = new Node(NodeKind::Declarator, Name::fromIndex($1), $2, @$); }
;

init_var:
    T_ASSIGN expression { $$ = new Node(NodeKind::Initializer, $2, @$); }
  | T_ASSIGN cast_expression { $$ = new Node(NodeKind::Initializer, $2, @$); }
;

init_array:
    T_ASSIGN T_LBRACE expression_list T_RBRACE { $$ = $3; }
  | empty { $$ = nullptr; }
;

expression_list:
    expression { $$ = new Node(NodeKind::InitializationList, $1, @$); }
  | expression_list T_COMMA expression { $$ = append($1, $3, @3); }
;

assignment:
    opvalue T_ASSIGN expression {
        $$ = new Node(NodeKind::Assignment, $1, $3, @$);
    }
  | opvalue T_PLUS_ASSIGN expression {
        $$ = new Node(NodeKind::CompoundAssignment, Operator::PlusAssign, $1, @$);
        $$->addChild($3);
    }
  | opvalue T_MINUS_ASSIGN expression {
        $$ = new Node(NodeKind::CompoundAssignment, Operator::MinusAssign, $1, @$);
        $$->addChild($3);
    }
;

return_stmt:
    T_RETURN expression { $$ = new Node(NodeKind::ReturnStatement, $2, @$); }
  | T_RETURN { $$ = new Node(NodeKind::ReturnStatement, @$); }
;

print_stmt:
    T_PRINT T_LPAREN argument_list_opt T_RPAREN {
        $$ = new Node(NodeKind::PrintStatement, $3, @$);
    }
;

exit_stmt:
    T_EXIT T_LPAREN argument_list_opt T_RPAREN { $$ = exitStatement($3, @$); }
;

if_stmt:
    T_IF T_LPAREN expression T_RPAREN block elseif_list else_opt {
        $$ = new Node(NodeKind::IfStatement, $3, $5, $6, @$);
        $$->addChild($7);
    }
;

elseif_list:
    elseif_list elseif_clause {
        Node* list = $1 == nullptr ? new Node(NodeKind::ElseIfList, @1.first_line) : $1;
        $$ = append(list, $2, @2);
    }
  | empty { $$ = nullptr; }
;

elseif_clause:
    T_ELSEIF T_LPAREN expression T_RPAREN block {
        $$ = new Node(NodeKind::ElseIfClause, $3, $5, @$);
    }
;

else_opt:
    T_ELSE block { $$ = new Node(NodeKind::ElseClause, $2, @$); }
  | empty { $$ = nullptr; }
;

while_stmt:
    T_WHILE T_LPAREN expression T_RPAREN block {
        $$ = new Node(NodeKind::WhileStatement, $3, $5, @$);
    }
;

for_stmt:
    T_FOR T_LPAREN for_init_opt T_SEMICOLON for_cond_opt T_SEMICOLON for_update_opt T_RPAREN block {
        $$ = new Node(NodeKind::ForStatement, $3, $5, $7, @$);
        $$->addChild($9);
    }
;

for_init_opt:
    declaration { $$ = new Node(NodeKind::ForInit, $1, @$); }
  | assignment { $$ = new Node(NodeKind::ForInit, $1, @$); }
  | increment_stmt { $$ = new Node(NodeKind::ForInit, $1, @$); }
  | decrement_stmt { $$ = new Node(NodeKind::ForInit, $1, @$); }
  | expression { $$ = new Node(NodeKind::ForInit, $1, @$); }
  | empty { $$ = new Node(NodeKind::ForInit, @$); }
;

for_cond_opt:
    expression { $$ = new Node(NodeKind::ForCondition, $1, @$); }
  | empty { $$ = new Node(NodeKind::ForCondition, @$); }
;

for_update_opt:
    assignment { $$ = new Node(NodeKind::ForUpdate, $1, @$); }
  | increment_stmt { $$ = new Node(NodeKind::ForUpdate, $1, @$); }
  | decrement_stmt { $$ = new Node(NodeKind::ForUpdate, $1, @$); }
  | expression { $$ = new Node(NodeKind::ForUpdate, $1, @$); }
  | empty { $$ = new Node(NodeKind::ForUpdate, @$); }
;

call_stmt:
    T_ID T_LPAREN argument_list_opt T_RPAREN {
        Node* callee = new Node(NodeKind::Identifier, Name::fromIndex($1), @1);
        $$ = new Node(NodeKind::CallStatement, callee, $3, @$);
    }
;

increment_stmt:
    T_INCREMENT opvalue { $$ = update(NodeKind::PreIncrement, $2, @$); }
  | opvalue T_INCREMENT { $$ = update(NodeKind::PostIncrement, $1, @$); }
  | T_INCREMENT paren_expression {
        $$ = checkedUpdate(NodeKind::PreIncrement, $2, @$);
    }
  | paren_expression T_INCREMENT {
        $$ = checkedUpdate(NodeKind::PostIncrement, $1, @$);
    }
  | T_LPAREN T_INCREMENT opvalue T_RPAREN {
        $$ = update(NodeKind::PreIncrement, $3, @$);
    }
  | T_LPAREN opvalue T_INCREMENT T_RPAREN {
        $$ = update(NodeKind::PostIncrement, $2, @$);
    }
;

decrement_stmt:
    T_DECREMENT opvalue { $$ = update(NodeKind::PreDecrement, $2, @$); }
  | opvalue T_DECREMENT { $$ = update(NodeKind::PostDecrement, $1, @$); }
  | T_DECREMENT paren_expression {
        $$ = checkedUpdate(NodeKind::PreDecrement, $2, @$);
    }
  | paren_expression T_DECREMENT {
        $$ = checkedUpdate(NodeKind::PostDecrement, $1, @$);
    }
  | T_LPAREN T_DECREMENT opvalue T_RPAREN {
        $$ = update(NodeKind::PreDecrement, $3, @$);
    }
  | T_LPAREN opvalue T_DECREMENT T_RPAREN {
        $$ = update(NodeKind::PostDecrement, $2, @$);
    }
;

opvalue:
    T_ID { $$ = new Node(NodeKind::Identifier, Name::fromIndex($1), @$); }
  | T_ID T_LBRACKET bracket_value T_RBRACKET {
        Node* array = new Node(NodeKind::Identifier, Name::fromIndex($1), @1);
        $$ = new Node(NodeKind::ArrayAccess, array, $3, @$);
    }
;

bracket_value:
    T_ID { $$ = new Node(NodeKind::Identifier, Name::fromIndex($1), @$); }
  | T_INT_LITERAL { $$ = new Node(NodeKind::IntLiteral, $1, @$); }
;

paren_expression:
    T_LPAREN expression T_RPAREN {
        $$ = new Node(NodeKind::ParenthesizedExpression, $2, @$);
    }
  | T_LPAREN assignment T_RPAREN { $$ = $2; }
;

expression:
    expression T_OR expression { $$ = binary(Operator::Or, $1, $3, @$); }
  | expression T_AND expression { $$ = binary(Operator::And, $1, $3, @$); }
  | expression T_EQUAL expression { $$ = binary(Operator::Equal, $1, $3, @$); }
  | expression T_NOT_EQUAL expression { $$ = binary(Operator::NotEqual, $1, $3, @$); }
  | expression T_LESS expression { $$ = binary(Operator::Less, $1, $3, @$); }
  | expression T_GREATER expression { $$ = binary(Operator::Greater, $1, $3, @$); }
  | expression T_LESS_EQUAL expression { $$ = binary(Operator::LessEqual, $1, $3, @$); }
  | expression T_GREATER_EQUAL expression { $$ = binary(Operator::GreaterEqual, $1, $3, @$); }
  | expression T_PLUS expression { $$ = binary(Operator::Plus, $1, $3, @$); }
  | expression T_MINUS expression { $$ = binary(Operator::Minus, $1, $3, @$); }
  | expression T_TIMES expression { $$ = binary(Operator::Times, $1, $3, @$); }
  | expression T_DIVIDE expression { $$ = binary(Operator::Divide, $1, $3, @$); }
  | unary
  | call_stmt
;

cast_expression:
    T_LPAREN type T_RPAREN cast_value {
        $$ = new Node(NodeKind::CastExpression, $2, $4, @$);
    }
;

cast_value:
    T_ID { $$ = new Node(NodeKind::Identifier, Name::fromIndex($1), @$); }
  | T_INT_LITERAL { $$ = new Node(NodeKind::IntLiteral, $1, @$); }
  | T_DECIMAL_LITERAL { $$ = new Node(NodeKind::DecimalLiteral, $1, @$); }
  | T_CHARACTER_LITERAL { $$ = characterLiteral($1, @$); }
;

unary:
    T_NOT unary { $$ = new Node(NodeKind::UnaryOp, Operator::Not, $2, @$); }
  | T_MINUS unary { $$ = new Node(NodeKind::UnaryOp, Operator::Minus, $2, @$); }
  | T_PLUS unary { $$ = new Node(NodeKind::UnaryOp, Operator::Plus, $2, @$); }
  | primary
;

primary:
    opvalue
  | T_INT_LITERAL { $$ = new Node(NodeKind::IntLiteral, $1, @$); }
  | T_DECIMAL_LITERAL { $$ = new Node(NodeKind::DecimalLiteral, $1, @$); }
  | T_STRING_LITERAL { $$ = stringLiteral($1, @$); }
  | T_CHARACTER_LITERAL { $$ = characterLiteral($1, @$); }
  | T_TRUE { $$ = new Node(NodeKind::BooleanLiteral, true, @$); }
  | T_FALSE { $$ = new Node(NodeKind::BooleanLiteral, false, @$); }
  | T_LPAREN expression T_RPAREN { $$ = $2; }
;

argument_list_opt:
    argument_list
  | empty { $$ = new Node(NodeKind::ArgumentList, @$); }
;

argument_list:
    expression { $$ = new Node(NodeKind::ArgumentList, $1, @$); }
  | argument_list T_COMMA expression { $$ = append($1, $3, @3); }
;

empty:
    %empty
;

%%

/// Called with the location of the token that the parser was looking at.
static void yyerror(const TokenLocation* location, ParseContext& /*context*/, void* /*scanner*/,
                    const char* message) {
    Error::parser(message, *location);
}

/// Sets the beginning of a phrase that has the location of its last symbol; the symbols count from
/// 1. An empty phrase has that of the token before it, symbol 0, and stands where this ends. Not
/// inlined: the generated parser would keep each number of its current location apart, and put them
/// together again whenever it copies one.
[[gnu::noinline]] static void setBeginning(TokenLocation& phrase, const TokenLocation* symbols,
                                           int count) {
    if (count == 0) {
        phrase.first_line = phrase.last_line;
        phrase.begin = phrase.end;
    } else {
        phrase.first_line = symbols[1].first_line;
        phrase.begin = symbols[1].begin;
    }
}

/// The character that a backslash and `escaped` stand for; any other character is itself.
static char decodeEscape(char escaped) {
    switch (escaped) {
        case 'n':
            return '\n';
        case 't':
            return '\t';
        case 'r':
            return '\r';
        case 'b':
            return '\b';
        case 'f':
            return '\f';
        case '0':
            return '\0';
        default:
            return escaped;
    }
}

/// The text of a string or character literal as it was scanned, without its quotes (if it has both)
/// and with its escapes decoded. Null gives the empty text.
static std::string decodeQuotedLiteral(const char* text) {
    std::string_view raw = text == nullptr ? std::string_view{} : std::string_view{text};
    const bool isQuoted = raw.size() >= 2 && raw.front() == raw.back() &&
                          (raw.front() == '"' || raw.front() == '\'');
    if (isQuoted) {
        raw = raw.substr(1, raw.size() - 2);
    }
    std::string decoded;
    decoded.reserve(raw.size());
    for (std::size_t at = 0; at < raw.size();) {
        const std::string_view plain =
            plainRun(raw, at, [](char character) { return character == '\\'; });
        decoded += plain;
        at += plain.size();
        if (at + 1 < raw.size()) {
            decoded += decodeEscape(raw[at + 1]);
        } else if (at < raw.size()) {
            decoded += raw[at];  // a backslash with nothing behind it
        }
        at += 2;
    }
    return decoded;
}

/// The first character of the decoded literal; NUL when there is none.
static char decodeCharacterLiteral(const char* text) {
    const std::string decoded = decodeQuotedLiteral(text);
    return decoded.empty() ? '\0' : decoded.front();
}

static Node* stringLiteral(char* text, Place place) {
    Node* literal = new Node(NodeKind::StringLiteral, Name{decodeQuotedLiteral(text)}, place);
    free(text);
    return literal;
}

static Node* characterLiteral(char* text, Place place) {
    Node* literal = new Node(NodeKind::CharacterLiteral, decodeCharacterLiteral(text), place);
    free(text);
    return literal;
}

/// Reports an error and returns null when there are too many arguments.
static Node* exitStatement(Node* arguments, Place place) {
    if (arguments->getChildren().size() > 1) {
        Error::parser("> 1 arguments passed to exit().", place);
        return nullptr;
    }
    return new Node(NodeKind::ExitStatement, arguments, place);
}

/// Adds an entry to a list, which then reaches from its first entry to this one.
static Node* append(Node* list, Node* entry, const TokenLocation& location) {
    list->extendOver(location.range());
    return list->addChild(entry);
}

static Node* binary(Name op, Node* left, Node* right, Place place) {
    return (new Node(NodeKind::BinaryOp, op, left, place))->addChild(right);
}

static Name updateOperator(Name kind) {
    const bool increments = kind == NodeKind::PreIncrement || kind == NodeKind::PostIncrement;
    return increments ? Operator::Increment : Operator::Decrement;
}

static Node* update(Name kind, Node* target, Place place) {
    return new Node(kind, updateOperator(kind), target, place);
}

/// Whether a parenthesised operand is, below its parentheses, a variable or an array element.
static bool isIncrementDecrementTarget(Node* node) {
    if (node == nullptr) {
        return false;
    }
    if (node->kindName() == NodeKind::ParenthesizedExpression && node->getChildren().size() == 1) {
        node = node->getChildren()[0];
    }
    return node->kindName() == NodeKind::Identifier || node->kindName() == NodeKind::ArrayAccess;
}

/// Reports an error and returns null when the operand cannot be updated.
static Node* checkedUpdate(Name kind, Node* target, Place place) {
    if (!isIncrementDecrementTarget(target)) {
        const std::string& op = updateOperator(kind).text();
        Error::parser("Invalid increment/decrement target: expressions like " + op +
                          "(x + 1) or (x + 1)" + op + " are not allowed.",
                      place);
        return nullptr;
    }
    return update(kind, target, place);
}

/// Queues a symbol for each variable of a declaration.
static void declareVariables(Node* declaration, ParseContext& context) {
    const NodeList& children = declaration->getChildren();
    if (children[1]->kindName() == NodeKind::ArrayDeclarator) {
        context.symbols.push(new Symbol(children[0], children[1]));
        return;
    }
    for (Node* declarator : children[1]->getChildren()) {
        context.symbols.push(new Symbol(children[0], declarator));
    }
}

/// Files a symbol of `function`. Returns it when its name is taken; null when it was filed.
static std::unique_ptr<Symbol> file(Name function, std::unique_ptr<Symbol> symbol,
                                    ParseContext& context) {
    symbol->updateScope(function);
    if (context.symbolTable.insertSymbol(function, symbol.get())) {
        symbol.release();
    }
    return symbol;
}

/// Files a complete function: its symbol, its parameters, then the declarations queued since the
/// function before it.
static void declareFunction(Node* function, ParseContext& context) {
    const Name name = function->stringValue();
    const Place place = function->getPlace();
    auto symbol = std::make_unique<Symbol>(function->getChildren()[0], function);
    const std::vector<Symbol*> parameters = symbol->getParameters();
    if (context.symbolTable.insertSymbol(name, place, symbol.get())) {
        symbol.release();
    }
    for (Symbol* parameter : parameters) {
        if (auto refused = file(name, std::unique_ptr<Symbol>{parameter}, context)) {
            context.keep(std::move(refused));  // the function goes on listing it
        }
    }
    for (; !context.symbols.empty(); context.symbols.pop()) {
        std::unique_ptr<Symbol> variable{context.symbols.front()};
        if (variable->isArraySymbol()) {
            variable->updateArraySizeSymbol(
                context.symbolTable.lookup(name, variable->sizeSymbolName(), place.line));
        }
        file(name, std::move(variable), context);
    }
}
