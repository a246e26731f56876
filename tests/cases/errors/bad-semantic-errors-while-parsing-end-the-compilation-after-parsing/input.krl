print(y);
void main() { int x = true; }
