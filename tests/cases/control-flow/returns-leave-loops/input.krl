int find(int wanted) {
    for (int i = 0; ; i++) {
        while (true) {
            if (i * i >= wanted) {
                return i;
            }
            break;
        }
    }
}

void main() {
    print(find(50), "\n");
}
