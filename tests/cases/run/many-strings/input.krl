void main() {
    string s = "";
    int n = 0;
    for (int i = 0; i < 20000; i++) {
        string piece = (string) i;
        string line = piece + ", ";
        n += 1;
        s = line + piece;
    }
    print(s, " ", n, "\n");
}
