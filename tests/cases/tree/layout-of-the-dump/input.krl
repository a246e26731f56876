void main() { }
