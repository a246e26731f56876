void main() {
f(1 2);
}
