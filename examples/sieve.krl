# The sieve of Eratosthenes: counts the primes in every hundred below 1000.

void main() {
    int limit = 1000;
    boolean composite[limit];
    int n = 0;
    for (n = 0; n < limit; n++) {
        composite[n] = false;
    }
    composite[0] = true;
    composite[1] = true;
    for (n = 2; n * n < limit; n++) {
        if (composite[n]) {
            continue;
        }
        for (int multiple = n * n; multiple < limit; multiple += n) {
            composite[multiple] = true;
        }
    }

    int total = 0;
    int largest = 0;
    for (int start = 0; start < limit; start += 100) {
        int count = 0;
        string bar = "";
        for (n = start; n < start + 100; n++) {
            if (!composite[n]) {
                count++;
                largest = n;
                bar += "#";
            }
        }
        total += count;
        print("from ", start, ":\t", bar, " ", count, "\n");
    }
    print(total, " primes below ", limit, ", the largest is ", largest, "\n");
}
