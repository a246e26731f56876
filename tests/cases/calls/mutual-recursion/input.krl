int even(int n) {
    if (n == 0) {
        return 1;
    }
    return odd(n - 1);
}

int odd(int n) {
    if (n == 0) {
        return 0;
    }
    return even(n - 1);
}

void main() {
    print(even(10), odd(10), even(7), odd(7), "\n");
}
