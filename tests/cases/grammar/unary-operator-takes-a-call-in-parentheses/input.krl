void f() { }
void main() { exit(-(f())); }
