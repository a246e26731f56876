void main() {
    boolean a = true;
    boolean b = false;
    if (a) {
        if (b) {
        } else {
            a = b;
        }
    } else {
        b = a;
    }
}
