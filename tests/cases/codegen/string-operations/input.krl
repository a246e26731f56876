void f(string a, string b) {
    string s = a + "x";
    s = "x" + b;
    int n = 0;
    if (a == b) {
    }
    s = a - b;
}

void main() {
}
