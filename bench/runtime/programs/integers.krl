# Integers, one per line.
void main() {
    int count = 10000000;
    for (int i = 0; i < count; i++) {
        print(i, "\n");
    }
}
