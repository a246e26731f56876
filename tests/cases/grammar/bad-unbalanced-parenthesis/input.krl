void main() {
x = (a + b;
}
