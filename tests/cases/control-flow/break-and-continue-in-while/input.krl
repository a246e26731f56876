void main() {
    int x = 0;
    while (true) {
        x++;
        if (x == 2) {
            continue;
        }
        if (x == 5) {
            break;
        }
        print(x);
    }
    print("\n");
}
