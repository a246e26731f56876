void main() {
    string list[4];
    string s = "";
    for (int i = 0; i < 4; i++) {
        s = s + "ab";
        list[i] = s;
    }
    print(list[0], " ", list[1], " ", list[2], " ", list[3], "\n");
}
