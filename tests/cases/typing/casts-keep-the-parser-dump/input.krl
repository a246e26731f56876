void main() {
    double d = (double) 3;
}
