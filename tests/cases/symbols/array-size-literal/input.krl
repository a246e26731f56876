void main() {
int a[2];
a[1] = 7;
print(a[1]);
}
