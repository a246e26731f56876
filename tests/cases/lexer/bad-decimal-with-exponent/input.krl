void main() { exit(1.5e5); }
