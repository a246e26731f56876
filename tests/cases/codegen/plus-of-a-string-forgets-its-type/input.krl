void f(string s) {
    string t = +s;
    t = t + t;
    t = s + t;
}

void main() {
}
