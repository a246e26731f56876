void main() {
int n = ((3));
int a[n];
a[2] = 1;
print(a[2]);
}
