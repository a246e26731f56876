void f(int i1, double d1, int i2, double d2, int i3, double d3, int i4, double d4, int i5,
       double d5, int i6, double d6, double d7, double d8) {
}

void main() {
    f(1, 0.5, 2, 1.5, 3, 2.5, 4, 3.5, 5, 4.5, 6, 5.5, 6.5, 7.5);
}
