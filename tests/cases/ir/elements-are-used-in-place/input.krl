void main() {
    int list[4];
    int i = 1;
    int x = list[0] + list[i];
    x = -list[i];
}
