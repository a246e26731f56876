void g() {
}

void main() {
    void v = g();
}
