# The 32nd number of Fibonacci, by its definition.
int fibonacci(int n) {
    if (n < 2) {
        return n;
    }
    return fibonacci(n - 1) + fibonacci(n - 2);
}

void main() {
    print(fibonacci(32), "\n");
}
