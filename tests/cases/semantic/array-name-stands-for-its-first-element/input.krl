void main() {
    int a[3];
    a = 7;
    a[1] = 8;
    int copy = a;
    print(a[0], copy, "\n");
}
