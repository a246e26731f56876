void main() { exit(.5); }
