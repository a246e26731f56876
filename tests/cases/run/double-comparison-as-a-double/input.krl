void main() {
    double yes = 0.5 < 1.5;
    double no = 0.5 > 1.5;
    print(yes, " ", no, "\n");
}
