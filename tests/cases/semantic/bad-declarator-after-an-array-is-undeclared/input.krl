void main() {
    int a[2], n = 5;
    print(n);
}
