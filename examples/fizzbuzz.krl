# The children's game: count, but say "Fizz" for the multiples of 3 and "Buzz" for those of 5.

boolean divides(int divisor, int n) {
    if (n - n / divisor * divisor == 0) {
        return true;
    }
    return false;    # "return remainder == 0;" would return an int: comparisons have no own type
}

void main() {
    for (int n = 1; n <= 30; n++) {
        boolean fizz = divides(3, n);
        boolean buzz = divides(5, n);
        if (fizz && buzz) {
            print("FizzBuzz\n");
        } elseif (fizz) {
            print("Fizz\n");
        } elseif (buzz) {
            print("Buzz\n");
        } else {
            print(n, "\n");
        }
    }
}
