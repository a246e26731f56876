double f(double p, string a) {
    double list[3];
    p = p;
    p = list[0];
    p = list[nothing];
    return p;
}

void main() {
}
