void main() {
    int a[1] = {1.5};
    double b[1] = {true && false};
    string c[1] = {"s"};
    boolean d[1] = {true};
}
