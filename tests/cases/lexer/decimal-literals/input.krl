void main() {
exit(0.5);
exit(00.50);
exit(12.25);
}
