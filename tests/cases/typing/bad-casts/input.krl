void g() {
}

void main() {
    int i = 1;
    double d = 1.5;
    boolean b = true;
    character c = 'c';
    string s = "s";
    void v = g();
    int i1 = (int) i;
    int i2 = (int) d;
    int i3 = (int) b;
    int i5 = (int) s;
    int i6 = (int) v;
    double d2 = (double) d;
    double d3 = (double) b;
    double d4 = (double) c;
    double d5 = (double) s;
    double d6 = (double) v;
    boolean b1 = (boolean) i;
    boolean b2 = (boolean) d;
    boolean b3 = (boolean) b;
    boolean b4 = (boolean) c;
    boolean b5 = (boolean) s;
    boolean b6 = (boolean) v;
    character c2 = (character) d;
    character c3 = (character) b;
    character c4 = (character) c;
    character c5 = (character) s;
    character c6 = (character) v;
    string s5 = (string) s;
    string s6 = (string) v;
    void v1 = (void) i;
    void v6 = (void) v;
    int i7 = (int) 2.5;
    int i8 = (int) 3;
    int i9 =
        (int)
        d;
}
