void choose(int x) {
    if (x < 10) {
        print("a");
    } elseif (x < 20) {
        print("b");
    } elseif (x < 30) {
        print("c");
    } else {
        print("d");
    }
}

void main() {
    choose(5);
    choose(10);
    choose(25);
    choose(30);
    print("\n");
}
