void f(string s) {
    s++;
}

void main() {
}
