void main() { } @
