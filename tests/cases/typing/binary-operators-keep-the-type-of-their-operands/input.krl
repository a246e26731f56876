void main() {
    int i = 1 < 2;
    double d = 1.5 == 2.5;
    string s = "a" - "b";
    boolean b = true || false;
    character c = 'a' * 'b';
    int k = 1 && 2 + 3;
}
