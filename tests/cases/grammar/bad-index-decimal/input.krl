void main() {
x = a[1.5];
}
