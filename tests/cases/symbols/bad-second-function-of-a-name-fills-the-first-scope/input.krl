void g(int a) {
int b = 1;
}
void g(int a,
int c) {
int b = 2;
int c = 3;
int d = 4;
}
void main() { }
