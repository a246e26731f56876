void main() {
int a[3], n = 5;
int n = 6;
print(n);
}
