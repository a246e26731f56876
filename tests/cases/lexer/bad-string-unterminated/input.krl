void main() {
exit(
"abc
); }
