void main() {
    int a[3];
    character c = 'a';
}
