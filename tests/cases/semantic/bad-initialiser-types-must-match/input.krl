void main() {
    int i2 = 1.5;
    int i3 = true;
    int i4 = 'c';
    int i5 = "s";
    double d1 = 1;
    double d3 = true;
    double d4 = 'c';
    double d5 = "s";
    boolean b1 = 1;
    boolean b2 = 1.5;
    boolean b4 = 'c';
    boolean b5 = "s";
    character c1 = 1;
    character c2 = 1.5;
    character c3 = true;
    character c5 = "s";
    string s1 = 1;
    string s2 = 1.5;
    string s3 = true;
    string s4 = 'c';
    void v = 1;
}
