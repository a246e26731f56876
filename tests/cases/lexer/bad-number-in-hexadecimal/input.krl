void main() { exit(0x10); }
