void main() {
    double d = (double) 3;
    character c = (character) 300;
    int j = (int) 'c';
    print(7, 2.5, true, 'x');
}
