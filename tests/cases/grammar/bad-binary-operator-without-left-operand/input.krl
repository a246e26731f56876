void main() {
x = * b;
}
