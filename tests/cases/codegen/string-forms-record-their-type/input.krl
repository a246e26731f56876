void f(int i, string s) {
    double _t0 = 0.5, _t1 = 0.5;
    string t = (string) i;
    string u = s + s;
}

void main() {
}
