void main() {
    int a[1] = {1, 2};
    print(a[0], a[1], "\n");
}
