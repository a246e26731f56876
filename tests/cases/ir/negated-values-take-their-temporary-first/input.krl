void main() {
    boolean flag = true;
    int x = 1;
    int list[1];
    if (flag) {
    }
    if (x - 1) {
    }
    if (flag && x < 2) {
    }
    if (flag || !flag) {
    }
    if (-x) {
    }
    if (list[0]) {
    }
    if (2.5) {
    }
    if (((flag))) {
    }
}
