# Text art, as somebody writes it who knows JavaScript.
string repeat(string text, int count) {
    string result = "";
    for (int i = 0; i < count; i++) {
        result += text;
    }
    return result;
}

string pad(int value, int width) {
    int digits = 1;
    int rest = value;
    while (rest >= 10) {
        rest = rest / 10;
        digits++;
    }
    string valueText = (string) value;
    return repeat(" ", width - digits) + valueText;
}

void box(string text, int length) {
    string line = "+" + repeat("-", length + 2) + "+";
    print(line, "\n");
    print("| " + text + " |", "\n");
    print(line, "\n");
}

void table(int rows) {
    for (int i = 1; i <= rows; i++) {
        string line = "";
        for (int j = 1; j <= rows; j++) {
            string padResult = pad(i * j, 4);
            line += padResult;
        }
        print(line, "\n");
    }
}

void main() {
    box("hello", 5);
    table(4);

    int days = 3;
    string names[3] = {"one", "two", "three"};
    for (int nameIndex = 0; nameIndex < 3; nameIndex++) {
        string name = names[nameIndex];
        print("day", " ", name, "\n");
    }
    int total = 0;
    int step = 1;
    while (true) {
        total += step;
        step = step * 2;
        if (!(total < 100)) { break; }
    }
    print("total", " ", total, " ", "step", " ", step, "\n");

    boolean even = false;
    if (total - total / 2 * 2 == 0) { even = true; }
    if (even != true) { print("odd -", " as it should be", "\n"); }
    string word = "";
    if (days > 2) { word = "many"; } elseif (days == 2) { word = "two"; } else { word = "few"; }
    print(word + " days", "\n");
    string stars = "";
    int size = 5;
    while (true) {
        int before = size;
        size--;
        if (!(before > 0)) { break; }
        string chosen = "";
        if (size - size / 2 * 2 == 0) { chosen = "*"; } else { chosen = " "; }
        stars += chosen;
    }
    print("[" + stars + "]", "\n");
    character c = 'x';
    string letters = "";
    for (int i = 0; i < 3; i++) {
        string cText = (string) c;
        letters += cText;
    }
    print(letters, "\n");
}
