void main() {
    int B = 1;
    int B7x = 2;
    int b7 = 3;
    int _B7 = 4;
    int B_7 = 5;
    print(B, B7x, b7, _B7, B_7, "\n");
}
