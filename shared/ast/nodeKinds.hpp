#pragma once

#include "shared/ast/name.hpp"
#include "shared/ast/spelling.hpp"

namespace krel {

/// All kinds of node there are, with the value a node carries and its children in order.
namespace NodeKind {

// Built by the parser.
inline const Name Program{"Program"};            // root; ExternalList
inline const Name ExternalList{"ExternalList"};  // int 0 (kept: dumps show it); functions
inline const Name FunctionDeclaration{"FunctionDeclaration"};  // name; Type, ParameterList, Block
inline const Name Type{"Type"};                                // type name
inline const Name ParameterList{"ParameterList"};              // Parameter...
inline const Name Parameter{"Parameter"};                      // name; Type
inline const Name Block{"Block"};                              // StatementList
inline const Name StatementList{"StatementList"};              // statement...
inline const Name Declaration{"Declaration"};        // Type, DeclaratorList or ArrayDeclarator
inline const Name DeclaratorList{"DeclaratorList"};  // Declarator...
inline const Name Declarator{"Declarator"};          // name; Initializer
inline const Name ArrayDeclarator{
    "ArrayDeclarator"};                        // name; size, [InitializationList], Declarator...
inline const Name Initializer{"Initializer"};  // expression
inline const Name InitializationList{"InitializationList"};    // expression...
inline const Name Assignment{"Assignment"};                    // target, value
inline const Name CompoundAssignment{"CompoundAssignment"};    // "+=" or "-="; target, value
inline const Name PreIncrement{"PreIncrement"};                // "++"; target
inline const Name PostIncrement{"PostIncrement"};              // "++"; target
inline const Name PreDecrement{"PreDecrement"};                // "--"; target
inline const Name PostDecrement{"PostDecrement"};              // "--"; target
inline const Name CallStatement{"CallStatement"};              // Identifier, ArgumentList
inline const Name ArgumentList{"ArgumentList"};                // expression...
inline const Name PrintStatement{"PrintStatement"};            // ArgumentList
inline const Name ExitStatement{"ExitStatement"};              // ArgumentList of at most one
inline const Name ReturnStatement{"ReturnStatement"};          // [expression]
inline const Name IfStatement{"IfStatement"};                  // condition, Block, [ElseIfList],
                                                               // [ElseClause]
inline const Name ElseIfList{"ElseIfList"};                    // ElseIfClause...
inline const Name ElseIfClause{"ElseIfClause"};                // condition, Block
inline const Name ElseClause{"ElseClause"};                    // Block
inline const Name WhileStatement{"WhileStatement"};            // condition, Block
inline const Name ForStatement{"ForStatement"};                // ForInit, ForCondition, ForUpdate,
                                                               // Block
inline const Name ForInit{"ForInit"};                          // [statement or expression]
inline const Name ForCondition{"ForCondition"};                // [expression]
inline const Name ForUpdate{"ForUpdate"};                      // [statement or expression]
inline const Name BreakStatement{"BreakStatement"};            //
inline const Name ContinueStatement{"ContinueStatement"};      //
inline const Name ExpressionStatement{"ExpressionStatement"};  // expression; no rule builds it
inline const Name Identifier{"Identifier"};                    // name
inline const Name ArrayAccess{"ArrayAccess"};                  // Identifier, index
inline const Name BinaryOp{"BinaryOp"};                        // operator; left, right
inline const Name UnaryOp{"UnaryOp"};                          // operator; operand
inline const Name CastExpression{"CastExpression"};  // Type, operand; the analyser removes it
inline const Name ParenthesizedExpression{"ParenthesizedExpression"};  // expression
inline const Name IntLiteral{"IntLiteral"};                            // int
inline const Name DecimalLiteral{"DecimalLiteral"};                    // double
inline const Name CharacterLiteral{"CharacterLiteral"};                // char
inline const Name StringLiteral{"StringLiteral"};                      // decoded text
inline const Name BooleanLiteral{"BooleanLiteral"};                    // bool

// Made by semantic analysis, each with the operand as its only child. The names are also those of
// the conversions in the intermediate representation.
inline const Name IntToDouble{Spelling::IntToDouble};
inline const Name IntToChar{Spelling::IntToChar};
inline const Name CharToInt{Spelling::CharToInt};
inline const Name IntToString{Spelling::IntToString};
inline const Name DoubleToString{Spelling::DoubleToString};
inline const Name BoolToString{Spelling::BoolToString};
inline const Name CharToString{Spelling::CharToString};

}  // namespace NodeKind

/// The language's types, as the tree and the symbols name them. The empty name means that there is
/// no type, because a fault was already reported.
namespace TypeName {

inline const Name Int{Spelling::Int};
inline const Name Double{Spelling::Double};
inline const Name Boolean{Spelling::Boolean};
inline const Name Character{Spelling::Character};
inline const Name String{Spelling::String};
inline const Name Void{Spelling::Void};

}  // namespace TypeName

/// The operators that nodes carry as their value.
namespace Operator {

inline const Name Or{Spelling::Or};
inline const Name And{Spelling::And};
inline const Name Equal{Spelling::Equal};
inline const Name NotEqual{Spelling::NotEqual};
inline const Name Less{Spelling::Less};
inline const Name Greater{Spelling::Greater};
inline const Name LessEqual{Spelling::LessEqual};
inline const Name GreaterEqual{Spelling::GreaterEqual};
inline const Name Plus{Spelling::Plus};
inline const Name Minus{Spelling::Minus};
inline const Name Times{Spelling::Times};
inline const Name Divide{Spelling::Divide};
inline const Name Not{Spelling::Not};
inline const Name PlusAssign{"+="};
inline const Name MinusAssign{"-="};
inline const Name Increment{"++"};
inline const Name Decrement{"--"};

}  // namespace Operator

}  // namespace krel
