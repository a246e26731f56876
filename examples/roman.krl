# Writes numbers in Roman numerals.

string roman(int number) {
    int values[13] = {1000, 900, 500, 400, 100, 90, 50, 40, 10, 9, 5, 4, 1};
    string letters[13] = {"M", "CM", "D", "CD", "C", "XC", "L", "XL", "X", "IX", "V", "IV", "I"};
    string result = "";
    for (int i = 0; i < 13; i++) {
        while (number >= values[i]) {
            result += letters[i];
            number -= values[i];
        }
    }
    return result;
}

void main() {
    for (int number = 1; number <= 12; number++) {
        print(number, " is ", roman(number), "\n");
    }
    int years[6] = {1492, 1776, 1888, 1999, 2024, 3999};
    for (int i = 0; i < 6; i++) {
        print(years[i], " is ", roman(years[i]), "\n");
    }
}
