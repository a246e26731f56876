#include <iostream>
using namespace std;

bool isPrime(int n);
int gcd(int a, int b);

int main() {
    const int limit = 50;
    bool sieve[limit + 1];
    for (int i = 0; i <= limit; i++) sieve[i] = true;
    for (int i = 2; i * i <= limit; i++)
        if (sieve[i])
            for (int j = i * i; j <= limit; j += i) sieve[j] = false;

    int count = 0;
    for (int i = 2; i <= limit; i++) {
        if (!sieve[i]) continue;
        cout << i << " ";
        count++;
    }
    cout << endl << count << " primes" << endl;

    // the same by division
    int other = 0;
    int n = 2;
    do {
        if (isPrime(n)) other++;
        n++;
    } while (n <= limit);
    cout << (count == other ? "equal" : "different") << endl;

    // Euler's function
    for (int m = 10; m <= 12; m++) {
        int coprime = 0;
        for (int k = 1; k < m; k++) {
            if (gcd(m, k) == 1) coprime += 1;
        }
        cout << "phi(" << m << ") = " << coprime << endl;
    }

    int number = 360, factor = 2;
    cout << number << " =";
    while (number > 1) {
        while (number % factor == 0) {
            cout << " " << factor;
            number /= factor;
        }
        factor++;
    }
    cout << endl;
    double ratio = (double) count / limit;
    cout << "ratio " << ratio << endl;
    return 0;
}

bool isPrime(int n) {
    if (n < 2) return false;
    for (int d = 2; d * d <= n; d++)
        if (n % d == 0) return false;
    return true;
}

int gcd(int a, int b) {
    return b == 0 ? a : gcd(b, a % b);
}
