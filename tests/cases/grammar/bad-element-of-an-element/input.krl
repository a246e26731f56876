void main() {
x = a[0][1];
}
