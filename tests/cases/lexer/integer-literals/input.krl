void main() {
exit(0);
exit(007);
exit(2147483647);
}
