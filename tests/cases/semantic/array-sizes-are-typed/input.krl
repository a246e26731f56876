void main() {
    int n = 3;
    double a[n];
    string b[1];
}
