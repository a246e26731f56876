# SYNTAX TEST "source.krl" "texts and characters"

string s = "a # b \n \" \q c"; # c
#          ^ string.quoted.double.krel punctuation.definition.string.begin.krel
#           ^^^^^^ string.quoted.double.krel - comment
#                 ^^ constant.character.escape.krel
#                    ^^ constant.character.escape.krel
#                       ^^ constant.character.escape.other.krel
#                           ^ string.quoted.double.krel punctuation.definition.string.end.krel
#                            ^ punctuation.terminator.krel - string
#                              ^^^ comment.line.number-sign.krel
character c = 'x' + '\'' + '' + '#';
#             ^^^ string.quoted.single.krel
#                 ^ keyword.operator.arithmetic.krel - string
#                    ^^ constant.character.escape.krel
#                          ^^ string.quoted.single.krel
#                               ^^^ string.quoted.single.krel - comment
string t = "not closed; int i = 1;
#          ^ invalid.illegal.quote.krel
#                       ^^^ storage.type.krel
character d = 'ab';
#             ^ invalid.illegal.quote.krel
#              ^^ variable.other.krel
#                ^ invalid.illegal.quote.krel
int next;
# <--- storage.type.krel
