void main() {
x = a[i + 1];
}
