void main() {
x = !f();
}
