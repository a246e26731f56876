void main() {
    string s = "\b\f";
    character c = '\b';
    character d = '\0';
    character e = '';
}
