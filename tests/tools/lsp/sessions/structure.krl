# Folding and selecting. The lines      #@ loc(comment, "# Fold")
# of one comment                        #@ not_folded("# of")
# fold together.                        #@ fold(comment, "# fold"); not_folded("# fold")

#{ So do the lines of
   a block comment. }#
int sum(int a, int b) {                 #@ loc(sum, "int sum("); loc(open, "{")
    int total = a + b * (a - 1);        #@ not_folded("total"); select("|- 1", "-", "a - 1", "(a - 1)", "b * (a - 1)", "a + b * (a - 1)", "total = a + b * (a - 1)", "int total = a + b * (a - 1);")
    if (total > 2) {                    #@ loc(if_, "if")
        total = 0;                      #@ fold(if_, "total")
    } else {                            #@ loc(else_, "else")
        print("less\n");                #@ fold(else_, "print"); select("le|ss", "\"less\\n\"", "print(\"less\\n\")", "print(\"less\\n\");")
    }
    while (total > 3) { total--; }      #@ not_folded("while")
    return total;                       #@ fold(sum, "return")
}

void main() { print(sum(1, 2), "\n"); } #@ not_folded("main"); select("1|,", "1", "sum(1, 2)", "print(sum(1, 2), \"\\n\")")
