#include <iostream>

void main() {
    int limit = 50;
    boolean sieve[51];
    for (int i = 0; i <= limit; i++) { sieve[i] = true; }
    for (i = 2; i * i <= limit; i++) {
        if (sieve[i]) {
            for (int j = i * i; j <= limit; j += i) { sieve[j] = false; }
        }
    }

    int count = 0;
    for (i = 2; i <= limit; i++) {
        if (!sieve[i]) { continue; }
        print(i, " ");
        count++;
    }
    print("\n", count, " primes", "\n");

    # the same by division
    int other = 0;
    int n = 2;
    while (true) {
        boolean isPrimeResult = isPrime(n);
        if (isPrimeResult) { other++; }
        n++;
        if (!(n <= limit)) { break; }
    }
    string chosen = "";
    if (count == other) { chosen = "equal"; } else { chosen = "different"; }
    print(chosen, "\n");

    # Euler's function
    for (int m = 10; m <= 12; m++) {
        int coprime = 0;
        for (int k = 1; k < m; k++) {
            int gcdResult = gcd(m, k);
            if (gcdResult == 1) { coprime += 1; }
        }
        print("phi(", m, ") = ", coprime, "\n");
    }

    int number = 360, factor = 2;
    print(number, " =");
    while (number > 1) {
        while (number - number / factor * factor == 0) {
            print(" ", factor);
            number = number / factor;
        }
        factor++;
    }
    print("\n");
    double countDouble = (double) count;
    double limitDouble = (double) limit;
    double ratio = countDouble / limitDouble;
    print("ratio ", ratio, "\n");
    return;
}

boolean isPrime(int n) {
    if (n < 2) { return false; }
    for (int d = 2; d * d <= n; d++) {
        if (n - n / d * d == 0) { return false; }
    }
    return true;
}

int gcd(int a, int b) {
    if (b == 0) { return a; } else { return gcd(b, a - a / b * b); }
}
