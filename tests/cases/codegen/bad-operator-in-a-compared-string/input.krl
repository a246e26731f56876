void main() {
    string s = "x";
    if (s == "a && b") {
    }
}
