# Counts the primes below 800,000, five times.
int countPrimes() {
    boolean composite[800000];
    int limit = 800000;
    for (int i = 0; i < limit; i++) {
        composite[i] = false;
    }
    int count = 0;
    for (int number = 2; number < limit; number++) {
        if (!composite[number]) {
            count++;
            int multiple = number + number;
            while (multiple < limit) {
                composite[multiple] = true;
                multiple += number;
            }
        }
    }
    return count;
}

void main() {
    for (int round = 0; round < 5; round++) {
        print(countPrimes(), "\n");
    }
}
