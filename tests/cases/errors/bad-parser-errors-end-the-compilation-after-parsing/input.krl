void main() { x; int y = true; }
