void main() {
    double zero = (double) 0;
    double one = (double) 1;
    double minus = zero - one;
    print(zero, " ", zero * minus, " ", -zero, "\n");
    print(one / zero, " ", minus / zero, " ", zero / zero, " ", -(zero / zero), "\n");
}
