void main() {
x = 2;
print(x);
int x = 1;
print(x);
}
