void main() {
x = --y;
}
