# Doubles with all their digits, one per line.
void main() {
    int count = 10000000;
    double value = 0.7;
    for (int i = 0; i < count; i++) {
        print(value, "\n");
        value = value * 1.0000013;
    }
}
