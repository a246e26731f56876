# Where a repair would be a guess, all that may be meant is offered.
int f() { return 1; }

void main() {                       #@ unmarked_diagnostics()
    int x = 1;
    if (x = 5) { }                  #@ fix("=", "Compare", "    if (x == 5) { }"); fix("=", "Assign before the `if`", "    x = 5;", "    if (x) { }")
    x++; if (x = 5) { }             #@ fix("=", "Assign before", "    x++; x = 5; if (x) { }")
    if (x = f()) x++;               #@ fix("=", "Compare", "    if (x == f()) x++;"); fix("=", "Assign before", "    x = f();", "    if (x) x++;")
    if (x == 1) {
    } elseif (x = 2) { }            #@ fix("=", "Compare", "    } elseif (x == 2) { }"); one_meaning("=")
    while (x = 3) { }               #@ fix("=", "Compare", "    while (x == 3) { }"); one_meaning("=")
    if (x > 3) if (x = 4) { }       #@ one_meaning("=")
}
