void main() {
    string s = -"text";
    int i = !3;
    boolean b = + - true;
    character c = !'c';
}
