void main() {
    int i = 1;
    double d = 1.5;
    boolean b = true;
    character c = 'c';
    string s = "s";
    i = d;
    d = i;
    b = i;
    c = i;
    s = c;
    d =
        1;
}
