void main() {
    int x = 5;
    boolean b = true;
    b = false;
    x = 2147483648;
    x = x + 2147483648;
    int list[2];
    x = list[2147483648];
}
