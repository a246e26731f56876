void main() {
    int x = 1;
    int y = (double) x;
    string s = (int) 'c';
}
