void main() {
    character c = 'a';
    int code = (int) c;
    character wide = (character) 321;
    int back = (int) wide;
    character nothing = '\0';
    character low = (character) 256;
    print(c, " ", code, " ", wide, " ", back, " [", nothing, low, "]", '\n');
}
