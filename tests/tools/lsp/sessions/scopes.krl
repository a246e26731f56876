# Each function is one scope: blocks that declare the same name mean one variable.
void main() {
    boolean shown = true;
    if (shown) {
        int size = 3;             #@ loc(one, "size")
        print(size, "\n");        #@ loc(first, "size")
    }
    if (shown) {
        int size = 4;             #@ loc(two, "size"); diagnostic("size", "redeclaration"); fix("size", "size", "        size = 4;")
        print(size, "\n");        #@ loc(second, "size")
    }
    late = 2;                     #@ loc(early, "late")
    int late = 1;                 #@ loc(late, "late"); references("la|te", early, late, printed); definition("la|te", late)
    print(late, "\n");            #@ loc(printed, "late"); highlight("la|te", read=[printed], write=[early, late])
    print(size, "\n");            #@ loc(third, "size"); diagnostic("size", "early-use", "hint")
    #@ definition("si|ze", one, two); references("siz|e", one, first, two, second, third)
    #@ highlight("siz|e", read=[first, second, third], write=[one, two])
    if (unknown > 0) {            #@ loc(unknown, "unknown"); diagnostic("unknown", "untyped-name", "warning"); hover("unk|nown", "not declared", "untyped-name"); definition("unk|nown"); references("unkn|own", unknown)
        print("?\n");
    }
}
