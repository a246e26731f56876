# Matrices live in one-dimensional arrays, row after row: the element of row r and column c of
# a matrix with n columns has the index r * n + c.

# Multiplies a 2 x 3 matrix by a 3 x 4 matrix and prints the product and its transpose.
void multiply() {
    int rows = 2;
    int inner = 3;
    int columns = 4;
    int a[6] = {1, 2, 3,
                4, 5, 6};
    int b[12] = {1, 0, 2, 0,
                 0, 1, 0, 2,
                 1, 1, 1, 1};
    int product[8];
    int row = 0;
    int column = 0;
    int at = 0;

    for (row = 0; row < rows; row++) {
        for (column = 0; column < columns; column++) {
            int sum = 0;
            for (int k = 0; k < inner; k++) {
                int atA = row * inner + k;    # an index is one name, so it is computed first
                int atB = k * columns + column;
                sum += a[atA] * b[atB];
            }
            at = row * columns + column;
            product[at] = sum;
        }
    }

    print("product:\n");
    for (row = 0; row < rows; row++) {
        for (column = 0; column < columns; column++) {
            at = row * columns + column;
            print(product[at], " ");
        }
        print("\n");
    }

    print("transpose:\n");
    for (column = 0; column < columns; column++) {
        for (row = 0; row < rows; row++) {
            at = row * columns + column;
            print(product[at], " ");
        }
        print("\n");
    }
}

# The n-th Fibonacci number as an element of {{1, 1}, {1, 0}} to the n-th power, by repeated
# squaring.
int fibonacci(int n) {
    int power[4] = {1, 0, 0, 1};
    int base[4] = {1, 1, 1, 0};
    int next[4];
    int i = 0;

    while (n > 0) {
        int half = n / 2;
        if (n != half * 2) {
            next[0] = power[0] * base[0] + power[1] * base[2];
            next[1] = power[0] * base[1] + power[1] * base[3];
            next[2] = power[2] * base[0] + power[3] * base[2];
            next[3] = power[2] * base[1] + power[3] * base[3];
            for (i = 0; i < 4; i++) {
                power[i] = next[i];
            }
        }
        next[0] = base[0] * base[0] + base[1] * base[2];
        next[1] = base[0] * base[1] + base[1] * base[3];
        next[2] = base[2] * base[0] + base[3] * base[2];
        next[3] = base[2] * base[1] + base[3] * base[3];
        for (i = 0; i < 4; i++) {
            base[i] = next[i];
        }
        n = half;
    }
    return power[1];
}

void main() {
    multiply();
    print("fibonacci(10) is ", fibonacci(10), "\n");
    print("fibonacci(90) is ", fibonacci(90), "\n");    # past 32 bits: an int has 64
}
