void main() {
x++++;
}
