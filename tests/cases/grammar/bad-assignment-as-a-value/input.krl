void main() {
a = b = c;
}
