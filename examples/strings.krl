# Building text: strings can be joined, returned and printed, but not taken apart.

# The text, written the given number of times.
string repeat(string text, int times) {
    string result = "";
    for (int i = 0; i < times; i++) {
        result = result + text;
    }
    return result;
}

# The number with blanks before it, so that it fills the width.
string rightAligned(int number, int width) {
    string text = (string) number;
    int length = 1;
    int rest = number / 10;
    while (rest != 0) {
        length++;
        rest = rest / 10;
    }
    if (number < 0) {
        length++;
    }
    return repeat(" ", width - length) + text;
}

string binary(int number) {
    string digits = "";
    while (number > 1) {
        int half = number / 2;
        if (number == half * 2) {
            digits = "0" + digits;
        } else {
            digits = "1" + digits;
        }
        number = half;
    }
    string first = (string) number;    # a cast is the whole initialiser of a declaration
    return first + digits;
}

void triangle(int rows) {
    for (int row = 1; row <= rows; row++) {
        print(repeat(" ", rows - row), repeat("*", 2 * row - 1), "\n");
    }
}

void timesTable(int size) {
    for (int row = 1; row <= size; row++) {
        string line = "";
        for (int column = 1; column <= size; column++) {
            line = line + rightAligned(row * column, 4);    # "line += f()" is refused
        }
        print(line, "\n");
    }
}

void main() {
    print("\"Krel\"\tbuilds\\joins text\n");
    triangle(5);
    timesTable(6);
    for (int number = 0; number <= 10; number += 5) {
        print(rightAligned(number, 3), " in binary is ", binary(number), "\n");
    }
    print(rightAligned(-42, 6), "|", rightAligned(12345, 6), "|\n");
}
