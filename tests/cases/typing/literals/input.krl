void main() {
    int i = 7;
    double d = 2.5;
    character c = 'x';
    string s = "text";
    boolean b = false;
}
