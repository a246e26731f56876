void main() { @ int x = true; }
