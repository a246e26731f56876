void main() {
    int inttostring = 5;
}
