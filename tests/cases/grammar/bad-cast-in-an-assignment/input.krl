void main() {
x = (int) y;
}
