void main() {
    double d = half(3);
    note("text", d + half(4));
}

double half(int n) {
    return 0.5;
}

void note(string s, double d) {
}
