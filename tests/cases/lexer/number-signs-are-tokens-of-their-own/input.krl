void main() {
exit(-5);
exit(+5.5);
exit(3-2);
}
