void main() {
x = a[f()];
}
