void main() {
    int a[1];
    double d = 1.5;
    int x = a[d];
}
