# A string is the address of its first byte, and `-=` takes from an address what it is told to.
void main() {
    string left = "ab\\n";
    string right = "cd\\\\";
    string made = left + right;
    print(made, "\n");
    made -= -1;
    print(made, "\n");
    made -= -1;
    print(made);
    print("\n", made, "|", made, "\n");
    string joined = left + made;
    print(joined, "\n");
    joined = made + made;
    joined -= -3;
    print(joined, "\n");

    # Forth to the NUL, and back to the first byte.
    for (int forth = 0; forth < 6; forth++) {
        made -= -1;
        print("[", made, "]");
    }
    print(made);
    string same = left + made;
    print("\n", same, "\n");
    for (int back = 0; back < 8; back++) {
        made -= 1;
        print("[", made, "]");
    }
    print("\n");

    # The texts of numbers, and a minus before what is left of one.
    int n = -12345;
    string number = (string) n;
    number -= -3;
    double d = 0.625;
    string fraction = (string) d;
    fraction -= -1;
    string hidden = -number;
    print(number, fraction, -hidden, "\n");

    # A literal, too, whose rest is still decoded.
    string literal = "x\ty\n";
    literal -= -1;
    print(literal, literal);
}
