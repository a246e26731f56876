boolean f() {
    return true;
}

void main() {
    boolean b = f() && f() || f();
}
