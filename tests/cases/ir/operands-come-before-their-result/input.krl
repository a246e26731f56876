void main() {
    int a = 1;
    int b = 2;
    int x = a * b + 3;
    x = 1 + (a - b) * (a + b);
    x = -a - +b;
    x = a - b - 4;
    x = a < b == a > 4;
}
