#{ Hover, hints and colours:
   größer als 😀 }#
int same(int first, int b) {        #@ token("int", "type"); token("same", "function", "declaration"); token("first", "parameter", "declaration")
    return first == b;              #@ hint("== b|", ": int"); token("return", "keyword"); token("first", "parameter"); token("==", "operator"); hover("=|=", "```krel\nint\n```", "not `boolean`")
}

void main() {                       #@ token("void", "type"); token("main", "function", "declaration"); hover("vo|id", "return nothing")
    int count = 1;                  #@ token("count", "variable", "declaration"); token("1", "number")
    string text = "größe 😀";       #@ token("\"größe 😀\"", "string"); token("string", "type"); hover("|string", "compares addresses")
    character c = 'c';              #@ token("'c'", "string"); token("=", "operator")
    boolean flag = true;            #@ token("true", "keyword"); hover("boo|lean", "true"); hover("t|rue", "holds")
    int less = (count < 2) - 1;     #@ hint("< 2|", ": int")
    boolean off = flag == false;    #@ hover("=|=", "```krel\nboolean\n```")
    if (count == 1 && !(less > 2)) {  #@ hover("&|&", "Both sides are evaluated"); hover("|if", "The braces are always needed")
        print("😀", text, c, off, "\n");  #@ token("print", "function", "defaultLibrary"); token("text", "variable"); hover("te|xt", "string text"); token("\"😀\"", "string")
    }
    int table[4] = {1, 2, 3, 4};    #@ hover("tab|le", "int table[4]")
    for (; count < 3; count++) {    #@ hover("f|or", "belongs to the whole function")
        print(table[count], same(count, 3), "\n");  #@ token("same", "function"); hover("sa|me", "int same(int first, int b)")
    }
    while (count < 5 || flag) {     #@ hover("|while", "as long as")
        count += 2;                 #@ hover("+|=", "not checked")
        break;                      #@ hover("bre|ak", "innermost loop")
    }
    exit(3);                        #@ diagnostic("exit(3)", "exit-status", "warning"); hover("ex|it", "status 0", "exit-status"); token("exit", "function", "defaultLibrary")
}
