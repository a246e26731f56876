void main() {
    int x = 5;
    boolean yes = true;
    if (x > 3 && x < 9) {
        print("and ");
    }
    if (x < 3 || x == 5) {
        print("or ");
    }
    if (!(x < 3) && !!yes) {
        print("not ");
    }
    if (x && 2) {
        print("ints ");
    }
    print("end\n");
}
