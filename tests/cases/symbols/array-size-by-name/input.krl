void main() {
int n = 2;
int a[n] = {3, 4};
print(a[0], a[1]);
}
