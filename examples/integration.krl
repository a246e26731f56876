# Areas under curves: the trapezoid rule against Simpson's rule, for growing numbers of strips.

# Between 0 and 1 the area under this curve is pi.
double circle(double x) {
    double one = (double) 1;
    double four = (double) 4;
    return four / (one + x * x);
}

double trapezoids(int strips) {
    double zero = (double) 0;
    double one = (double) 1;
    double count = (double) strips;
    double sum = 0.5 * (circle(zero) + circle(one));
    for (int i = 1; i < strips; i++) {
        double place = (double) i;
        sum = sum + circle(place / count);    # "sum += circle(...)" is refused
    }
    return sum / count;
}

# Takes an even number of strips.
double simpson(int strips) {
    double zero = (double) 0;
    double one = (double) 1;
    double two = (double) 2;
    double three = (double) 3;
    double four = (double) 4;
    double count = (double) strips;
    double sum = circle(zero) + circle(one);
    for (int i = 1; i < strips; i++) {
        double place = (double) i;
        if (i == i / 2 * 2) {
            sum = sum + two * circle(place / count);
        } else {
            sum = sum + four * circle(place / count);
        }
    }
    return sum / (three * count);
}

void main() {
    double pi = 3.14159265358979;
    for (int strips = 2; strips <= 64; strips = strips * 2) {
        print("strips: ", strips, "\n");
        print("  trapezoids ", trapezoids(strips), "\n");
        print("  simpson    ", simpson(strips), "\n");
    }
    print("pi is nearly ", pi, "\n");
}
