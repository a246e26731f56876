void f(int i) {
    int a[4];
    a[0] = i;
    a[i] = 5;
    int x = a[i];
    x = a[3] + a[i];
    double d[2];
    d[i] = 1.5;
    d[1] = d[i];
}

void main() {
}
