# The end of a string of 128 KB, which of which nothing is held but an address near that end.
string end(int length) {
    string text = "0123456789abcdef";
    for (int i = 0; i < 13; i++) {
        text = text + text;
    }
    int start = 131072 - length;
    text -= -start;
    return text;
}

# Makes and drops strings of 64 KB and of a few bytes.
void waste(int rounds) {
    string long = "................";
    for (int i = 0; i < 12; i++) {
        long = long + long;
    }
    for (int j = 0; j < rounds; j++) {
        string spoilt = (string) j;
        spoilt = long + spoilt;
    }
}

void main() {
    string place = end(20);
    string middle = end(70000);
    waste(200);
    for (int step = 0; step < 21; step++) {
        print(place, "\n");
        waste(2);
        place -= -1;
    }
    place -= 2;
    string joined = place + middle;
    joined -= -70000;
    print(joined, "\n");
    middle -= -69990;
    joined = middle + middle;
    print(joined, "\n");
    waste(200);
    print(middle, "\n");
}
