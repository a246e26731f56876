void main() {
    double one = (double) 1;
    double ten = (double) 10;
    double three = one + one + one;
    print(2.5, " ", three, " ", 0.1 + 0.2, " ", one / three, " ", -0.5, "\n");
    print(three * ten, " ", 100000.25, " ", 0.0001, " ", 1.5 / 100000.5, "\n");
}
