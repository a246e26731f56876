void g() { }
void g(int g) {
int x = 1;
int y = 2;
int x = 3;
int g = 4;
}
void main() { }
