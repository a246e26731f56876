void main() {
    int i = 300;
    double d = (double) i;
    character c = (character) i;
    int j = (int) c;
    string s = (string) i;
    s = "";
    string s2 = (string) d;
    boolean b = true;
    string s3 = (string) b;
    string s4 = (string) c;
}
