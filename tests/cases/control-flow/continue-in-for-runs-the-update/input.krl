void main() {
    for (int i = 0; i < 4; i++) {
        if (i == 2) {
            continue;
        }
        print(i);
    }
    print("\n");
}
