void main() {
    string s = "a - b";
}
