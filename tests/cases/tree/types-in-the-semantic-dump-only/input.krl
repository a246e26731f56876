void main() {
int x = 2 + 3;
print(x);
}
