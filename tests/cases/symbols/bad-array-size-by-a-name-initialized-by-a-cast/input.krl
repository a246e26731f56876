void main() {
int n = (int) 'a';
int a[n];
}
