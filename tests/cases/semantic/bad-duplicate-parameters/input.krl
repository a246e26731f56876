void f(int a, double a) {
    string a = "s";
}

void g(int g) {
}
