void main() {
    int _t0 = 5;
    int x = 1 + 2;
    print(_t0, "\n");
}
