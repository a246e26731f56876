# SYNTAX TEST "source.krl" "reserved words, names, numbers and operators"

int twice(int number, double other) { return number * 2; }
# <--- storage.type.krel
#   ^^^^^ entity.name.function.krel
#        ^ punctuation.section.parens.krel
#         ^^^ storage.type.krel
#             ^^^^^^ variable.other.krel
#                   ^ punctuation.separator.krel
#                     ^^^^^^ storage.type.krel
#                                   ^ punctuation.section.block.krel
#                                     ^^^^^^ keyword.control.krel
#                                                   ^ keyword.operator.arithmetic.krel
#                                                     ^ constant.numeric.integer.krel
#                                                      ^ punctuation.terminator.krel

void main() {
# <---- storage.type.krel
#    ^^^^ entity.name.function.krel
    boolean iffy = true; character voidless = false;
#   ^^^^^^^ storage.type.krel
#           ^^^^ variable.other.krel
#                ^ keyword.operator.assignment.krel
#                  ^^^^ constant.language.krel
#                        ^^^^^^^^^ storage.type.krel
#                                  ^^^^^^^^ variable.other.krel
#                                             ^^^^^ constant.language.krel
    print(twice (3), _if, if1);
#   ^^^^^ support.function.krel
#         ^^^^^ entity.name.function.krel
#                    ^^^ variable.other.krel
#                         ^^^ variable.other.krel
    x1 = 12.75 + 007 - 1. - 12while;
#   ^^ variable.other.krel
#        ^^^^^ constant.numeric.float.krel
#              ^ keyword.operator.arithmetic.krel
#                ^^^ constant.numeric.integer.krel
#                      ^ constant.numeric.integer.krel
#                       ^ invalid.illegal.character.krel
#                           ^^ constant.numeric.integer.krel
#                             ^^^^^ keyword.control.krel
    if (a[i] <= 1 && !b || c == 2) { i++; j -= 1; } elseif (a != b) { exit(); }
#   ^^ keyword.control.krel
#        ^ punctuation.section.brackets.krel
#         ^ variable.other.krel
#            ^^ keyword.operator.comparison.krel
#                 ^^ keyword.operator.logical.krel
#                    ^ keyword.operator.logical.krel
#                       ^^ keyword.operator.logical.krel
#                            ^^ keyword.operator.comparison.krel
#                                     ^^ keyword.operator.increment.krel
#                                           ^^ keyword.operator.assignment.krel
#                                                   ^^^^^^ keyword.control.krel
#                                                             ^^ keyword.operator.comparison.krel
#                                                                     ^^^^ support.function.krel
    x % 2 & 3 é
#     ^ invalid.illegal.character.krel
#         ^ invalid.illegal.character.krel
#             ^ invalid.illegal.character.krel
}
