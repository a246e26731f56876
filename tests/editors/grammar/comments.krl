# SYNTAX TEST "source.krl" "comments: of a line, and blocks"

int a; # to the end: "no text" int
#^^^^^ - comment
#      ^^^^^^^^^^^^^^^^^^^^^^^^^^^ comment.line.number-sign.krel
#              ^^^^^^^^^ - string

int b; #{ A block
#      ^^^^^^^^^^ comment.block.krel
    int c; # }}# two braces are no end
#   ^^^^^^^^^^^ comment.block.krel
#                 ^^^^^^^^^^^^^^^^^^^^ comment.block.krel
    ends }# int d;
#   ^^^^^^^ comment.block.krel
#           ^^^ storage.type.krel - comment

#{ on one line: the rest of it, too }# int e;
#                                      ^^^ comment.line.number-sign.krel
int f;
# <--- storage.type.krel - comment

#{ } }# int g;
#       ^^^ comment.line.number-sign.krel
#{ }}# not an end: }
#      ^^^ comment.block.krel
#{ a second one is nothing new, and this ends both
# <-- comment.block.krel
}# int h;
#  ^^^ storage.type.krel - comment
