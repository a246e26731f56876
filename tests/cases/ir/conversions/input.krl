void main() {
    int i = 1;
    double d = (double) i;
    character c = (character) 65;
    int j = (int) 'c';
    string s1 = (string) i;
    string s2 = (string) 2.5;
    boolean b = true;
    string s3 = (string) b;
    string s4 = (string) c;
}
