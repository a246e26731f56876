void big() {
    int a[200000000];
    int b[200000000];
    int c[200000000];
    a[0] = 1;
    b[0] = 1;
    c[0] = 1;
}

void main() {
}
