string f(string s) {
    return "r * s, ";
}

void main() {
    string list[1];
    list[0] = "a - b, ";
    print("c + d, ", list[0]);
    print("e / f, ");
    print(f("g < h"));
    string s = "i-j, -k";
    s = s + "-l, ";
    print(s, "m ==n\n");
}
