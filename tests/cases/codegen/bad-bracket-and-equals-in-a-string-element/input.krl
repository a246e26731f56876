void main() {
    string a[1];
    a[0] = "k [1] = v";
}
