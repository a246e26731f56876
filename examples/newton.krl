# Square and cube roots by Newton's method.

double absolute(double x) {
    double zero = (double) 0;
    if (x < zero) {
        return -x;
    }
    return x;
}

# 1e-10. Neither an exponent nor a literal this small can be written, but a product can.
double tolerance() {
    double hundredThousandth = 0.001 * 0.01;
    return hundredThousandth * hundredThousandth;
}

# Prints the way to the square root of n. A call cannot stand in a condition, so each step's
# change is kept in a variable.
void showSquareRoot(double n) {
    double x = n;
    double change = n;
    double smallest = tolerance();
    int steps = 0;
    while (change > smallest) {
        double better = 0.5 * (x + n / x);
        change = absolute(better - x);
        x = better;
        steps++;
        print("step ", steps, ": ", x, "\n");
    }
}

double cubeRoot(double n) {
    double two = (double) 2;
    double three = (double) 3;
    double x = n;
    double change = n;
    double smallest = tolerance();
    while (change > smallest) {
        double better = (two * x + n / (x * x)) / three;
        change = absolute(better - x);
        x = better;
    }
    return x;
}

# The largest whole number whose square is at most n, in whole numbers only.
int integerRoot(int n) {
    int x = n;
    int better = (n + 1) / 2;
    while (better < x) {
        x = better;
        better = (x + n / x) / 2;
    }
    return x;
}

void main() {
    double two = (double) 2;
    print("the square root of ", two, "\n");
    showSquareRoot(two);

    for (int n = 1; n <= 4; n++) {
        double cube = (double) n;
        print("the cube root of ", cube, " is ", cubeRoot(cube), "\n");
    }
    print("the cube root of ", 0.001, " is ", cubeRoot(0.001), "\n");

    print("whole square roots: ", integerRoot(99), " ", integerRoot(100), " ",
          integerRoot(1000000), "\n");
}
