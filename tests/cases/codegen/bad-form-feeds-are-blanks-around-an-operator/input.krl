void main() {
    string s = "a\f-\fb";
}
