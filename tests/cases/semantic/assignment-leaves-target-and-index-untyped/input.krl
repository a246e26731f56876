void main() {
    int a[2];
    a[nothing] = 1;
    a = 2;
}
