void main() {
x = +f();
}
