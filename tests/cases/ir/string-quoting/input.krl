void main() {
    string s = "quote \" backslash \\ feed \n return \r tab \t apostrophe \' other \q";
    print("");
    print("caf\xc3\xa9 # // é");
}
