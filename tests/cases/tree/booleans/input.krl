void main() {
exit(true);
exit(false);
}
