# Letters as numbers: a cipher, a check digit, Roman numerals.
character shifted(character letter, int by) {
    int codeOfa = (int) 'a';
    int code = (int) letter;
    if (letter >= 'a' && letter <= 'z') {
        int dividend = code - codeOfa + by;
        code = (dividend - dividend / 26 * 26) + codeOfa;
    }
    character codeCharacter = (character) code;
    return codeCharacter;
}

boolean isVowel(character letter) {
    if (letter == 'a' || letter == 'e' || letter == 'i' || letter == 'o' || letter == 'u') {
        return true;
    }
    return false;
}

void roman(int n) {
    int values[13] = {1000, 900, 500, 400, 100, 90, 50, 40, 10, 9, 5, 4, 1};
    string names[13] = {"M", "CM", "D", "CD", "C", "XC", "L", "XL", "X", "IX", "V", "IV", "I"};
    string result = "";
    for (int i = 0; i < 13; i++) {
        while (n >= values[i]) {
            result += names[i];
            n -= values[i];
        }
    }
    print(result, "\n");
}

int checkDigit(int number) {
    int sum = 0;
    boolean twice = true;
    while (number > 0) {
        int digit = number - number / 10 * 10;
        if (twice) {
            digit = digit * 2;
            if (digit > 9) { digit -= 9; }
        }
        sum += digit;
        twice = !twice;
        number = number / 10;
    }
    int dividend = 10 - (sum - sum / 10 * 10);
    return dividend - dividend / 10 * 10;
}

void main() {
    character tab2 = (character) 9;
    character message[11] = {'h', 'e', 'l', 'l', 'o', ' ', 'w', 'o', 'r', 'l', 'd'};
    int vowels = 0;
    for (int i = 0; i < 11; i++) {
        boolean isVowelResult = isVowel(message[i]);
        if (isVowelResult) { vowels++; }
        message[i] = shifted(message[i], 3);
    }
    for (int letterIndex = 0; letterIndex < 11; letterIndex++) {
        character letter = message[letterIndex];
        print(letter);
    }
    print("\n", vowels, " vowels\n");
    for (i = 0; i < 11; i++) { print(shifted(message[i], 23)); }
    print("\n");
    roman(1994);
    roman(2026);
    print("check digit ", checkDigit(7 * 1000000000 + 992739871), "\n");
    string quote = "say \"a -" + " b\"";
    print(quote, " +", " ", "\"", "\n");
    character tab = tab2;
    print("[", tab, "]\n");
    for (character c = 'a'; c < 'f'; c++) {
        string chosen = "";
        if (c == 'e') { chosen = "\n"; } else { chosen = "-"; }
        print(c, chosen);
    }
}
