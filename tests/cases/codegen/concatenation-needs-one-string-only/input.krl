void f(string s, int n) {
    s += 5;
    n += s;
}

void main() {
}
