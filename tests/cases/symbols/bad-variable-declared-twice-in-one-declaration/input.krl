void main() {
int x = 1,
y = 2,
x = 3;
}
