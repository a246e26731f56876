void main() {
    double a[2];
    a[0] = 1;
    a[nothing] = "s";
}
