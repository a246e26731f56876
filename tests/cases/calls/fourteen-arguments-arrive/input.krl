void f(int i1, double d1, int i2, double d2, int i3, double d3, int i4, double d4, int i5,
       double d5, int i6, double d6, double d7, double d8) {
    print(i1, i2, i3, i4, i5, i6, " ", d1, d2, d3, d4, d5, d6, d7, d8, "\n");
}

void main() {
    f(1, 0.5, 2, 1.5, 3, 2.5, 4, 3.5, 5, 4.5, 6, 5.5, 6.5, 7.5);
}
