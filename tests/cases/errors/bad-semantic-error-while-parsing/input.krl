print(1);
void main() { }
