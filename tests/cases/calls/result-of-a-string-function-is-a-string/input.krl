string text() {
    return "t";
}

void main() {
    string s = text() + text();
    print(s, "\n");
}
