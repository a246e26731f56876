# Greatest common divisors, least common multiples, and exact sums of fractions.

int gcd(int a, int b) {
    while (b != 0) {
        int rest = a - a / b * b;
        a = b;
        b = rest;
    }
    return a;
}

int lcm(int a, int b) {
    return a / gcd(a, b) * b;
}

void describe(int a, int b) {
    print(a, " and ", b, ": gcd ", gcd(a, b), ", lcm ", lcm(a, b), "\n");
}

# Prints the sums 1/1 + 1/2 + ... + 1/n in lowest terms.
void harmonicNumbers(int last) {
    int numerator = 0;
    int denominator = 1;
    for (int n = 1; n <= last; n++) {
        numerator = numerator * n + denominator;
        denominator = denominator * n;
        int common = gcd(numerator, denominator);
        numerator = numerator / common;
        denominator = denominator / common;
        print("H", n, " = ", numerator, "/", denominator, "\n");
    }
}

void main() {
    describe(12, 18);
    describe(1071, 462);
    describe(17, 5);
    describe(1000000, 1000);
    harmonicNumbers(20);
}
