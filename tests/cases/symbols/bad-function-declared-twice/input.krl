void g() { }
void main() { }

int
g() { return 1; }
