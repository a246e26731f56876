void main() {
    int x = 1;
    double d = 1.5;
    print(1 + 2.5);
    d = d * 2;
    x = x < 1.5;
    print("n = " + x);
    print('a' == "a");
    print(true && 1);
    print(x +
        1 - d);
    print(x + 1.5 + nothing);
}
