void main() { exit(1, 2) @ ; }
