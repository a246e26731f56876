void main() { }
void main() { }
