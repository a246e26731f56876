void main() {
    int booltostring = 5;
}
