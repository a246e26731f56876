# Builds lines of words and numbers, and a text that grows.
string pad(int number) {
    string text = (string) number;
    int limit = 10;
    while (limit < 100000) {
        if (number < limit) {
            text = "0" + text;
        }
        limit = limit * 10;
    }
    return text;
}

void main() {
    int lines = 0;
    string page = "";
    for (int i = 0; i < 200000; i++) {
        string line = "line " + pad(i) + ": ";
        line = line + "value " + pad(i * 7 - i / 3) + "\n";
        page = page + "x";
        lines++;
        if (lines == 1000) {
            print(line, page, "\n");
            page = "";
            lines = 0;
        }
    }
}
