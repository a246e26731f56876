void main() {
    nothing = other;
    nothing[0] = other;
    nothing
        = 1;
}
