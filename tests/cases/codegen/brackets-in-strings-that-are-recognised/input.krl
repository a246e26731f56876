void main() {
    string a[1];
    a[0] = "k [1] v = [2] ";
    string s = "x [0] = 1\n";
    print(a[0], s);
}
