void main() {
    nothing = 1;
    double d = (double) x;
    other = 1;
}
