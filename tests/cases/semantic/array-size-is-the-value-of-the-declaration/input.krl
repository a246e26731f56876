void main() {
    int n = 2;
    n = 100;
    int a[n];
    int last = 9;
    a[0] = 1;
    a[1] = 2;
    print(a[0], a[1], last, "\n");
}
