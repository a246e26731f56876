void main() {
int a[3], n = 5;
print(n);
}
