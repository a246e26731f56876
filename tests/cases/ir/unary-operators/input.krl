void main() {
    int x = 1;
    boolean b = true;
    x = -x;
    x = +x;
    b = !b;
    x = - - x;
    x = -7;
    b = !!b;
}
