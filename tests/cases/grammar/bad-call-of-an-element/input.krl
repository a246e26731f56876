void main() {
a[0]();
}
