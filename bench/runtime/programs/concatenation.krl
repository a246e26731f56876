# Strings that grow by ten characters at a time.
void main() {
    int rounds = 100000;
    int steps = 100;
    string text = "";
    for (int round = 0; round < rounds; round++) {
        text = "";
        for (int step = 0; step < steps; step++) {
            text = text + "0123456789";
        }
    }
    print(text, "\n");
}
