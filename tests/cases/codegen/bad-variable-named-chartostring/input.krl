void main() {
    int chartostring = 5;
}
