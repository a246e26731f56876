void main() {
    int x = 1;
    string s = "s";
    print("one");
    print(s);
    print(x + 2, s, 'c', "d");
    print(s + s);
}
