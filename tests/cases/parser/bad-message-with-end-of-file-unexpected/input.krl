void main() {
exit(1