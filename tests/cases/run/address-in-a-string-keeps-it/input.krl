# Strings of which nothing is held but an address behind their first byte, while others come and go.
string tail(int from) {
    string number = (string) from;
    string made = "number " + number;
    made -= -7;
    return made;
}

string waste(int rounds) {
    string piece = "0123456789abcdef";
    string long = "";
    for (int i = 0; i < 600; i++) {
        long = long + piece;
    }
    string spoilt = "";
    for (int j = 0; j < rounds; j++) {
        string number = (string) j;
        spoilt = "spoilt " + number;
        spoilt = long + spoilt;
    }
    return spoilt;
}

void main() {
    string kept[100];
    for (int i = 0; i < 100; i++) {
        kept[i] = tail(i);
    }
    string hidden = tail(123456789);
    hidden = -hidden;
    string spoilt = waste(2000);
    spoilt -= -9600;
    print(spoilt, "\n");
    for (int j = 0; j < 100; j++) {
        print(" ", kept[j]);
    }
    print("\n");

    # Walks through a string, and wastes memory at every step.
    string place = -hidden;
    for (int step = 0; step < 10; step++) {
        print(place, "\n");
        spoilt = waste(10);
        place -= -1;
    }
    place -= 9;
    print(place, "\n");
}
