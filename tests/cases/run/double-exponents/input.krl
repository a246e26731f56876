double power(double base, int times) {
    double result = (double) 1;
    for (int i = 0; i < times; i++) {
        result = result * base;
    }
    return result;
}

void main() {
    double ten = (double) 10;
    double one = (double) 1;
    print(power(ten, 15), " ", power(ten, 16), " ", power(ten, 22), "\n");
    print(one / power(ten, 4), " ", one / power(ten, 5), " ", 1.5 * power(ten, 20), "\n");
    print(power(ten, 16) - (one + one), "\n");
}
