void main() {
    int i = 3;
    double d = (double) i;
    character c = (character) 65;
    string s1 = (string) 'x';
    string s2 = (string) i;
    string s3 = (string) 2.5;
    boolean b = true;
    string s4 = (string) b;
    int j = (int) c;
}
