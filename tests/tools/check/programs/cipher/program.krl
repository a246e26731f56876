// Letters as numbers: a cipher, a check digit, Roman numerals.
char shifted(char letter, int by) {
    int code = (int) letter;
    if (letter >= 'a' && letter <= 'z') {
        code = (code - 'a' + by) % 26 + 'a';
    }
    return (char) code;
}

bool isVowel(char letter) {
    switch (letter) {
        case 'a': case 'e': case 'i': case 'o': case 'u':
            return true;
    }
    return false;
}

void roman(int n) {
    const int values[] = {1000, 900, 500, 400, 100, 90, 50, 40, 10, 9, 5, 4, 1};
    const string names[] = {"M", "CM", "D", "CD", "C", "XC", "L", "XL", "X", "IX", "V", "IV", "I"};
    string result = "";
    for (int i = 0; i < 13; i++) {
        while (n >= values[i]) {
            result += names[i];
            n -= values[i];
        }
    }
    print(result, "\n");
}

int checkDigit(long number) {
    int sum = 0;
    bool twice = true;
    while (number > 0) {
        int digit = number % 10;
        if (twice) {
            digit *= 2;
            if (digit > 9) digit -= 9;
        }
        sum += digit;
        twice = !twice;
        number /= 10;
    }
    return (10 - sum % 10) % 10;
}

int main() {
    char message[11] = {'h', 'e', 'l', 'l', 'o', ' ', 'w', 'o', 'r', 'l', 'd'};
    int vowels = 0;
    for (int i = 0; i < 11; i++) {
        if (isVowel(message[i])) vowels++;
        message[i] = shifted(message[i], 3);
    }
    for (char letter : message) print(letter);
    print("\n", vowels, " vowels\n");
    for (int i = 0; i < 11; i++) print(shifted(message[i], 23));
    print("\n");
    roman(1994);
    roman(2026);
    print("check digit ", checkDigit(7992739871), "\n");
    string quote = "say \"a - b\"";
    print(quote, " + ", '"', "\n");
    char tab = '\t';
    print("[", tab, "]\n");
    for (char c = 'a'; c < 'f'; c++) print(c, c == 'e' ? "\n" : "-");
}
