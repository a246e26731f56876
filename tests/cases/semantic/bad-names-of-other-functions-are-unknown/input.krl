void f(int parameter) {
    int local = 1;
}

void main() {
    print(local);
    print(parameter);
    print(f);
}
