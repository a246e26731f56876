void main() {
x = a[b[0]];
}
