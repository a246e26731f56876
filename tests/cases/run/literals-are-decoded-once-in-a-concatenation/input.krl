void main() {
    string s = "a\\\\b" + "";
    string t = "" + "\\\\";
    print(s, t, "\t|\n");
}
