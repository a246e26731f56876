void main() {
    int a[n];
    int n = 3;
    character c = 'a';
}
