void main() {
    int a[1] = {1.5};
    int b[2] = {nothing, "s"};
}
