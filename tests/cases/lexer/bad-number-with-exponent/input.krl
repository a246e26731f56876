void main() { exit(1e5); }
