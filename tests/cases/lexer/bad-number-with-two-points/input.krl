void main() { exit(1.5.2); }
