# Recursion: towers, numbers, and a walk.
int gray(int n) {
    return bitsInOne(n, (n / 2));
}

int moves(int disks) {
    if (disks == 0) { return 0; }
    return 2 * moves(disks - 1) + 1;
}

void hanoi(int disks, character from, character to, character via) {
    if (disks == 0) { return; }
    hanoi(disks - 1, from, via, to);
    print("disk ", disks, ": ", from, " to ", to, "\n");
    hanoi(disks - 1, via, to, from);
}

int fibonacci(int n) {
    if (n < 2) { return n; } else { return fibonacci(n - 1) + fibonacci(n - 2); }
}

int ackermann(int m, int n) {
    if (m == 0) { return n + 1; }
    if (n == 0) { return ackermann(m - 1, 1); }
    return ackermann(m - 1, ackermann(m, n - 1));
}

int bits(int n) {
    int count = 0;
    while (n != 0) {
        count += n - n / 2 * 2;
        n = n / 2;
    }
    return count;
}

int collatz(int n) {
    int steps = 0;
    while (n != 1) {
        if (n - n / 2 * 2 == 0) { n = n / 2; } else { n = 3 * n + 1; }
        ++steps;
    }
    return steps;
}

void main() {
    hanoi(3, 'A', 'C', 'B');
    print("moves of 10 disks: ", moves(10), "\n");
    for (int i = 0; i < 10; ++i) {
        print(fibonacci(i));
        if (i < 9) { print(", "); } else { print("\n"); }
    }
    print("ackermann: ", ackermann(2, 3), "\n");
    print("bits of 255 and 1000: ", bits(255), " ", bits(1000), "\n");
    int longest = 1;
    for (i = 1; i < 30; i++) {
        int collatzResult = collatz(i);
        int collatzResult2 = collatz(longest);
        if (collatzResult > collatzResult2) { longest = i; }
    }
    print("longest: ", longest, " with ", collatz(longest), " steps\n");
    i = 0;
    while (i < 8) {
        int before = i;
        i++;
        print(gray(before), " ");
    }
    print("\n");
    int a = 5, b = 3;
    a = bitsInOne(a, b);
    b = bitsInOne(b, a);
    a = bitsInOne(a, b);
    print("swapped: ", a, " ", b, ", or ", bitsInAny(a, 8), ", shifted ", 1 * 16, "\n");
    return;
}

int bitsInAny(int left, int right) {
    int result = 0;
    int bit = 1;
    for (int count = 0; count < 64; count++) {
        int leftHalf = left / 2;
        int leftBit = left - leftHalf * 2;
        if (leftBit < 0) {
            leftBit = 1;
            leftHalf = leftHalf - 1;
        }
        int rightHalf = right / 2;
        int rightBit = right - rightHalf * 2;
        if (rightBit < 0) {
            rightBit = 1;
            rightHalf = rightHalf - 1;
        }
        if (leftBit + rightBit > 0) { result = result + bit; }
        bit = bit + bit;
        left = leftHalf;
        right = rightHalf;
    }
    return result;
}

int bitsInOne(int left, int right) {
    int result = 0;
    int bit = 1;
    for (int count = 0; count < 64; count++) {
        int leftHalf = left / 2;
        int leftBit = left - leftHalf * 2;
        if (leftBit < 0) {
            leftBit = 1;
            leftHalf = leftHalf - 1;
        }
        int rightHalf = right / 2;
        int rightBit = right - rightHalf * 2;
        if (rightBit < 0) {
            rightBit = 1;
            rightHalf = rightHalf - 1;
        }
        if (leftBit + rightBit == 1) { result = result + bit; }
        bit = bit + bit;
        left = leftHalf;
        right = rightHalf;
    }
    return result;
}
