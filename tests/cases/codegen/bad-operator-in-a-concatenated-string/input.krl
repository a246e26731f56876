void main() {
    string s = "x";
    s = s + "a <= b";
}
