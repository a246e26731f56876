# Prints the prime numbers below 100, one per line.

# Tries the divisors up to the square root of n.
boolean isPrime(int n) {
    if (n < 2) {
        return false;
    }
    for (int divisor = 2; divisor * divisor <= n; divisor++) {
        if (n - n / divisor * divisor == 0) {    # the remainder: there is no % operator
            return false;
        }
    }
    return true;
}

void main() {
    for (int n = 2; n < 100; n++) {
        boolean prime = isPrime(n);    # a condition cannot hold a call, a variable can
        if (prime) {
            print(n, "\n");
        }
    }
}
