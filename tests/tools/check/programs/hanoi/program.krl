// Recursion: towers, numbers, and a walk.
static int gray(int n) {
    return n ^ (n >> 1);
}

int moves(int disks) {
    if (disks == 0) return 0;
    return 2 * moves(disks - 1) + 1;
}

void hanoi(int disks, char from, char to, char via) {
    if (disks == 0) return;
    hanoi(disks - 1, from, via, to);
    print("disk ", disks, ": ", from, " to ", to, "\n");
    hanoi(disks - 1, via, to, from);
}

int fibonacci(int n) {
    return n < 2 ? n : fibonacci(n - 1) + fibonacci(n - 2);
}

int ackermann(int m, int n) {
    if (m == 0) return n + 1;
    if (n == 0) return ackermann(m - 1, 1);
    return ackermann(m - 1, ackermann(m, n - 1));
}

int bits(int n) {
    int count = 0;
    while (n != 0) {
        count += n & 1;
        n >>= 1;
    }
    return count;
}

int collatz(int n) {
    int steps = 0;
    while (n != 1) {
        if (n % 2 == 0) n /= 2; else n = 3 * n + 1;
        ++steps;
    }
    return steps;
}

int main() {
    hanoi(3, 'A', 'C', 'B');
    print("moves of 10 disks: ", moves(10), "\n");
    for (int i = 0; i < 10; ++i) {
        print(fibonacci(i));
        if (i < 9) print(", ");
        else print("\n");
    }
    print("ackermann: ", ackermann(2, 3), "\n");
    print("bits of 255 and 1000: ", bits(255), " ", bits(1000), "\n");
    int longest = 1;
    for (int i = 1; i < 30; i++) {
        if (collatz(i) > collatz(longest)) longest = i;
    }
    print("longest: ", longest, " with ", collatz(longest), " steps\n");
    int i = 0;
    while (i < 8) print(gray(i++), " ");
    print("\n");
    int a = 5, b = 3;
    a ^= b; b ^= a; a ^= b;
    print("swapped: ", a, " ", b, ", or ", a | 8, ", shifted ", 1 << 4, "\n");
    return 0;
}
