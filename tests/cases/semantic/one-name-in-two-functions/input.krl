int f() {
    int x = 1;
    return x;
}

void main() {
    string x = "main ";
    int y = f();
    print(x, y, "\n");
}
