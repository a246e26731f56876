void main() {
    int doubletostring = 5;
}
