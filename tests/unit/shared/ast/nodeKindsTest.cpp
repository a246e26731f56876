#include "shared/ast/nodeKinds.hpp"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace krel {

namespace {

using Spelling = std::pair<Name, std::string>;

/// Every kind, type and operator is dispatched on and shown to users by its spelling.
void expectSpelled(const std::vector<Spelling>& spellings) {
    for (const auto& [name, text] : spellings) {
        EXPECT_EQ(name.text(), text);
    }
}

TEST(NodeKindsTest, KindsOfTheParser) {
    expectSpelled({
        {NodeKind::Program, "Program"},
        {NodeKind::ExternalList, "ExternalList"},
        {NodeKind::FunctionDeclaration, "FunctionDeclaration"},
        {NodeKind::Type, "Type"},
        {NodeKind::ParameterList, "ParameterList"},
        {NodeKind::Parameter, "Parameter"},
        {NodeKind::Block, "Block"},
        {NodeKind::StatementList, "StatementList"},
        {NodeKind::Declaration, "Declaration"},
        {NodeKind::DeclaratorList, "DeclaratorList"},
        {NodeKind::Declarator, "Declarator"},
        {NodeKind::ArrayDeclarator, "ArrayDeclarator"},
        {NodeKind::Initializer, "Initializer"},
        {NodeKind::InitializationList, "InitializationList"},
        {NodeKind::Assignment, "Assignment"},
        {NodeKind::CompoundAssignment, "CompoundAssignment"},
        {NodeKind::PreIncrement, "PreIncrement"},
        {NodeKind::PostIncrement, "PostIncrement"},
        {NodeKind::PreDecrement, "PreDecrement"},
        {NodeKind::PostDecrement, "PostDecrement"},
        {NodeKind::CallStatement, "CallStatement"},
        {NodeKind::ArgumentList, "ArgumentList"},
        {NodeKind::PrintStatement, "PrintStatement"},
        {NodeKind::ExitStatement, "ExitStatement"},
        {NodeKind::ReturnStatement, "ReturnStatement"},
        {NodeKind::IfStatement, "IfStatement"},
        {NodeKind::ElseIfList, "ElseIfList"},
        {NodeKind::ElseIfClause, "ElseIfClause"},
        {NodeKind::ElseClause, "ElseClause"},
        {NodeKind::WhileStatement, "WhileStatement"},
        {NodeKind::ForStatement, "ForStatement"},
        {NodeKind::ForInit, "ForInit"},
        {NodeKind::ForCondition, "ForCondition"},
        {NodeKind::ForUpdate, "ForUpdate"},
        {NodeKind::BreakStatement, "BreakStatement"},
        {NodeKind::ContinueStatement, "ContinueStatement"},
        {NodeKind::ExpressionStatement, "ExpressionStatement"},
        {NodeKind::Identifier, "Identifier"},
        {NodeKind::ArrayAccess, "ArrayAccess"},
        {NodeKind::BinaryOp, "BinaryOp"},
        {NodeKind::UnaryOp, "UnaryOp"},
        {NodeKind::CastExpression, "CastExpression"},
        {NodeKind::ParenthesizedExpression, "ParenthesizedExpression"},
        {NodeKind::IntLiteral, "IntLiteral"},
        {NodeKind::DecimalLiteral, "DecimalLiteral"},
        {NodeKind::CharacterLiteral, "CharacterLiteral"},
        {NodeKind::StringLiteral, "StringLiteral"},
        {NodeKind::BooleanLiteral, "BooleanLiteral"},
    });
}

TEST(NodeKindsTest, KindsOfTheAnalyser) {
    expectSpelled({
        {NodeKind::IntToDouble, "inttodouble"},
        {NodeKind::IntToChar, "inttochar"},
        {NodeKind::CharToInt, "chartoint"},
        {NodeKind::IntToString, "inttostring"},
        {NodeKind::DoubleToString, "doubletostring"},
        {NodeKind::BoolToString, "booltostring"},
        {NodeKind::CharToString, "chartostring"},
    });
}

TEST(NodeKindsTest, Types) {
    expectSpelled({
        {TypeName::Int, "int"},
        {TypeName::Double, "double"},
        {TypeName::Boolean, "boolean"},
        {TypeName::Character, "character"},
        {TypeName::String, "string"},
        {TypeName::Void, "void"},
    });
}

TEST(NodeKindsTest, Operators) {
    expectSpelled({
        {Operator::Or, "||"},
        {Operator::And, "&&"},
        {Operator::Equal, "=="},
        {Operator::NotEqual, "!="},
        {Operator::Less, "<"},
        {Operator::Greater, ">"},
        {Operator::LessEqual, "<="},
        {Operator::GreaterEqual, ">="},
        {Operator::Plus, "+"},
        {Operator::Minus, "-"},
        {Operator::Times, "*"},
        {Operator::Divide, "/"},
        {Operator::Not, "!"},
        {Operator::PlusAssign, "+="},
        {Operator::MinusAssign, "-="},
        {Operator::Increment, "++"},
        {Operator::Decrement, "--"},
    });
}

}  // namespace

}  // namespace krel
