void main() {
x;
}
