boolean positive(int x) {
    return x > 0;
}

void main() {
    boolean b = 1 < 2;
    boolean both = b && (1 < 2);
}
