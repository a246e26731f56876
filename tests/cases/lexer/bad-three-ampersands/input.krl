void main() { exit(a&&&b); }
