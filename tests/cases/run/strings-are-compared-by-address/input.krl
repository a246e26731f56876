void main() {
    string a = "same";
    string b = "same";
    string c = "sa" + "me";
    if (a == b) {
        print("literal ");
    }
    if (a == c) {
        print("made ");
    }
    if (c != a) {
        print("differs ");
    }
    string d = c;
    if (c == d) {
        print("copied");
    }
    print("\n");
}
