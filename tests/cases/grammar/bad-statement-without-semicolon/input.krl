void main() {
x = 1 y = 2;
}
