void main() {
    int inttochar = 5;
}
