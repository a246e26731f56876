void main() {
    string s = "s0";
    s = "s1";
    s = "s2";
    s = "s3";
    s = "s4";
    s = "s5";
    s = "s6";
    s = "s7";
    s = "s8";
    s = "s9";
    s = "s10";
    s = "s11";
    double d = 0.5;
    d = 1.5;
    d = 2.5;
    d = 3.5;
    d = 4.5;
    d = 5.5;
    d = 6.5;
    d = 7.5;
    d = 8.5;
    d = 9.5;
    d = 10.5;
}
