void main() {
int a[3] = {1, 2, 3}, n = 0;
print(a[0], a[1], a[2]);
}
