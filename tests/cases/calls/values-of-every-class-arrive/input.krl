boolean f(boolean b, character c, string s, int list, double d) {
    print(b, " ", c, " ", s, " ", list, " ", d, "\n");
    return b;
}

void main() {
    int list[2] = {7, 8};
    boolean b = f(false, 'x', "text", list[1], 0.25);
    b = f(true, 'y', "more", list, 0.5);
    print(b, "\n");
}
