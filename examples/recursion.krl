# Functions that call themselves and each other. Every function sees every other, whichever of
# them comes first in the file.

# Moves a tower of disks, printing each move, and gives back the number of moves.
int hanoi(int disks, character from, character to, character spare) {
    if (disks == 0) {
        return 0;
    }
    int before = hanoi(disks - 1, from, spare, to);
    print("disk ", disks, " from ", from, " to ", to, "\n");
    return before + 1 + hanoi(disks - 1, spare, to, from);
}

int ackermann(int m, int n) {
    if (m == 0) {
        return n + 1;
    }
    if (n == 0) {
        return ackermann(m - 1, 1);
    }
    return ackermann(m - 1, ackermann(m, n - 1));
}

int fibonacci(int n) {
    if (n < 2) {
        return n;
    }
    return fibonacci(n - 1) + fibonacci(n - 2);
}

boolean isEven(int n) {
    if (n == 0) {
        return true;
    }
    return isOdd(n - 1);
}

boolean isOdd(int n) {
    if (n == 0) {
        return false;
    }
    return isEven(n - 1);
}

void main() {
    print("moves: ", hanoi(3, 'A', 'C', 'B'), "\n");
    for (int m = 0; m <= 3; m++) {
        print("ackermann(", m, ", 3) is ", ackermann(m, 3), "\n");
    }
    print("fibonacci:");
    for (int n = 0; n <= 20; n++) {
        print(" ", fibonacci(n));
    }
    print("\n");
    print("10 is even: ", isEven(10), "; 7 is even: ", isEven(7), "\n");
}
