void main() {
int n = 3;
int n = 0;
int a[n];
}
