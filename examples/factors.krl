# Prime factors of whole numbers, in the form 360 = 2^3 * 3^2 * 5.

# A literal with an operator between blanks can only stand alone, first, as an argument or, as
# here, in a return. A function that returns it makes it usable everywhere.
string times() {
    return " * ";
}

string power(int base, int exponent) {
    string text = (string) base;
    if (exponent > 1) {
        string raised = (string) exponent;
        text = text + "^" + raised;
    }
    return text;
}

# Takes numbers from 2 up.
string factors(int number) {
    string result = "";
    boolean first = true;
    for (int divisor = 2; divisor * divisor <= number; divisor++) {
        int exponent = 0;
        while (number == number / divisor * divisor) {
            number = number / divisor;
            exponent++;
        }
        if (exponent > 0) {
            if (!first) {
                result = result + times();
            }
            result = result + power(divisor, exponent);
            first = false;
        }
    }
    if (number > 1) {    # what is left has no divisor up to its root: it is a prime
        if (!first) {
            result = result + times();
        }
        result = result + power(number, 1);
    }
    return result;
}

void main() {
    int numbers[10] = {2, 12, 97, 360, 1001, 1024, 30030, 65537, 999999, 2147483647};
    for (int i = 0; i < 10; i++) {
        print(numbers[i], " = ", factors(numbers[i]), "\n");
    }
}
