void main() {
    boolean done = false;
    int x = 1;
    while (!done) {
    }
    if (!(x < 2)) {
    }
    if (!!done) {
    }
    if (!true) {
    }
}
