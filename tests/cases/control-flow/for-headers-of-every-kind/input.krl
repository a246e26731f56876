void step() {
}

void main() {
    int i = 0;
    int list[1];
    for (i = 5; i > 3; i -= 2) {
    }
    for (i++; i < 9; list[0] = i) {
        i = 9;
    }
    for (--i; false; ++i) {
    }
    for (step(); true; step()) {
        break;
    }
}
