void main() {
((x++));
}
