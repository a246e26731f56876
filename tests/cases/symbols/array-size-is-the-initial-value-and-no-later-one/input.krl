void main() {
int n = 1;
n = 0;
int a[n];
a[0] = 5;
print(a[0]);
}
