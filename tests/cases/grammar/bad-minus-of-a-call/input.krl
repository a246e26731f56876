void main() {
x = -f();
}
