int none() {
}

int sometimes(int x) {
    if (x > 0) {
        return 1;
    }
}

void main() {
}
