void f(double d) {
    if (!d) {
    }
    if (d) {
    }
}

void main() {
}
