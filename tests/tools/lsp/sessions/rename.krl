# Renaming: what may be renamed to what.
int half(int number) {            #@ loc(half, "half"); loc(number, "number")
    int result = number / 2;      #@ loc(result, "result"); loc(read, "number")
    return result;                #@ loc(returned, "result")
}

void show(double half) {          #@ loc(parameter, "half")
    print(half, "\n");            #@ loc(printed, "half"); rename("ha|lf", "share", parameter, printed)
}

void main() {
    int kept = half(8);           #@ loc(call, "half"); loc(kept, "kept")
    show(0.5);
    print(kept, half(2), "\n");   #@ loc(second, "half"); loc(printedKept, "kept")
    #@ rename("ha|lf", "halved", half, call, second)
    #@ rename("kep|t", "number", kept, printedKept)
    #@ not_renamed("ke|pt", "while", "`while` is a reserved word")
    #@ not_renamed("ke|pt", "print", "`print` is a reserved word")
    #@ not_renamed("ke|pt", "two words", "not a name")
    #@ not_renamed("ke|pt", "", "not a name")
    #@ not_renamed("ke|pt", "2nd", "not a name")
    #@ not_renamed("ke|pt", "kept;", "not a name")
    #@ not_renamed("ke|pt", "größe", "not a name")
    #@ not_renamed("ke|pt", "call", "the compiler would refuse")
    #@ not_renamed("ke|pt", "main", "the compiler would refuse")
    #@ not_renamed("ha|lf", "show", "there is a function `show` already")
    #@ not_renamed("ha|lf", "krel_print", "the compiler would refuse")
    #@ not_renamed("pri|nt", "write", "no name")
}

int unchanged(int taken) {        #@ diagnostic("unchanged", "unused-function", "warning"); loc(taken, "taken")
    int other = taken;            #@ loc(use, "taken"); not_renamed("oth|er", "taken", "there is a variable `taken` already")
    return other;
}
