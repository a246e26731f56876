void main() {
    int a[1] = {1, 2, 3};
    int b[3] = {1};
}
