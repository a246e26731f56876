void main() {
f() = 1;
}
