void f(int a) {
    print(a, " ");
}

void main() {
    f(1);
    f(2);
    exit();
}
