void main() {
a 1;
}
