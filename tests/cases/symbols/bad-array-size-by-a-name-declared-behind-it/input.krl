void main() {
int a[n];
int n = 3;
a[0] = 1;
}
