void main() {
exit x;
}
